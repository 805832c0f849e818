/** @file
 *  Loads a driver's communication library, and wraps each of its entry points.
 *
 *  A wrapper passes its arguments to the entry point of its name without "Bidi_" (see
 *  communication_library.h for what each does). When the context is NULL or the entry point is not
 *  bound, the wrapper calls nothing and returns its failure value. A context of Bidi_Create() has
 *  all entry points bound. */
#ifndef INFO_ANALYZE_BIDI_H_
#define INFO_ANALYZE_BIDI_H_

#include <stdint.h>

#include "info_analyze/communication_library.h"
#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** A loaded communication library with its 36 entry points. */
typedef struct BidiLibrary BidiLibrary;

/** A communication library bound for one driver folder. */
typedef struct BidiContext {
  BidiLibrary* library; /**< owned */
  void* socket;         /**< handle of the last Bidi_qvsktwrapNew(), or NULL */
  char* driver_folder;  /**< owned copy */
  int32_t port;         /**< TCP port of the driver family, 0 when it has none */
} BidiContext;

/** Loads the communication library of a driver folder, "<folder>/Bidi/libmqpd_util.so".
 *  @param driver_folder  folder, copied; NULL is refused
 *  @return new context, released with Bidi_Destroy(); NULL when the argument is NULL, the library
 *          cannot be loaded (dlerror() then returns the reason) or lacks an entry point, or an
 *          allocation fails */
IA_EXPORT BidiContext* Bidi_Create(const char* driver_folder) IA_NOEXCEPT;

/** Unloads a communication library and releases the context. An open socket is not closed:
 *  call Bidi_qvsktwrapDestroy() first.
 *  @param context  context; NULL does nothing */
IA_EXPORT void Bidi_Destroy(BidiContext* context) IA_NOEXCEPT;

/** Returns the name of an entry point that a communication library must have.
 *  @param index  number from 0 to 35, in the order in which they are bound
 *  @return borrowed name; NULL when the number is out of range */
IA_EXPORT const char* Bidi_GetEntryPointName(int32_t index) IA_NOEXCEPT;

/** Loads a communication library and binds its entry points, all of them or none.
 *  @param library_path  path for dlopen(); NULL is refused
 *  @return new binding, released with z_FreeBidiLibrary(); NULL on failure */
IA_EXPORT BidiLibrary* z_LoadBidiLibrary(const char* library_path) IA_NOEXCEPT;

/** Calls the library's qvxmlwrapCleanup() when it is bound, unloads the library and releases the
 *  binding.
 *  @param library  binding; NULL does nothing */
IA_EXPORT void z_FreeBidiLibrary(BidiLibrary* library) IA_NOEXCEPT;

/** @name Sockets
 *  @{ */

/** Calls qvsktwrapQueueListNew() with the context's driver folder.
 *  @param context  context
 *  @param word1,word2,word3,word4  words of the communication library
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvsktwrapQueueListNew(BidiContext* context, intptr_t word1, intptr_t word2,
                                             intptr_t word3, intptr_t word4) IA_NOEXCEPT;

/** Calls qvsktwrapQueueListDestroy().
 *  @param context  context
 *  @param word1,word2,word3,word4  words of the communication library
 *  @return the call's result; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvsktwrapQueueListDestroy(BidiContext* context, intptr_t word1,
                                                 intptr_t word2, intptr_t word3,
                                                 intptr_t word4) IA_NOEXCEPT;

/** Calls qvsktwrapNew() with the context's driver folder and port, and keeps the handle.
 *  @param context      context
 *  @param word1,word2  words of the communication library
 *  @return 0; -1 when the handle is NULL or nothing was called */
IA_EXPORT int32_t Bidi_qvsktwrapNew(BidiContext* context, intptr_t word1,
                                    intptr_t word2) IA_NOEXCEPT;

/** Calls qvsktwrapControl() with the context's socket handle.
 *  @param context  context
 *  @param word1,word2,word3,word4,word5  words of the communication library
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvsktwrapControl(BidiContext* context, intptr_t word1, intptr_t word2,
                                        intptr_t word3, intptr_t word4, intptr_t word5) IA_NOEXCEPT;

/** Calls qvsktwrapDestroy() with the context's socket handle, which the context keeps.
 *  @param context  context
 *  @return the call's result; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvsktwrapDestroy(BidiContext* context) IA_NOEXCEPT;

/** @}
 *  @name Document writer
 *  @{ */

/** Calls qvxmlwrapSet_New().
 *  @param context  context
 *  @return new writer; NULL when nothing was called */
IA_EXPORT QvXmlWriter* Bidi_qvxmlwrapSet_New(BidiContext* context) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_OpenDict().
 *  @param context  context
 *  @param writer  writer
 *  @param key  key
 *  @param word  word of the communication library
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_OpenDict(BidiContext* context, QvXmlWriter* writer,
                                             const char* key, intptr_t word) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_Long().
 *  @param context  context
 *  @param writer  writer
 *  @param key  key
 *  @param value  number
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_Long(BidiContext* context, QvXmlWriter* writer, const char* key,
                                         int32_t value) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_Double().
 *  @param context  context
 *  @param writer  writer
 *  @param key  key
 *  @param value  number
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_Double(BidiContext* context, QvXmlWriter* writer,
                                           const char* key, double value) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_String().
 *  @param context  context
 *  @param writer  writer
 *  @param key  key
 *  @param text  text
 *  @param word1,word2  words of the communication library
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_String(BidiContext* context, QvXmlWriter* writer,
                                           const char* key, const char* text, intptr_t word1,
                                           intptr_t word2) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_Binary().
 *  @param context  context
 *  @param writer  writer
 *  @param key  key
 *  @param data  bytes
 *  @param length  number of bytes
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_Binary(BidiContext* context, QvXmlWriter* writer,
                                           const char* key, const void* data,
                                           int32_t length) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_OpenArray().
 *  @param context  context
 *  @param writer  writer
 *  @param key  key
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_OpenArray(BidiContext* context, QvXmlWriter* writer,
                                              const char* key) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_LongToArray().
 *  @param context  context
 *  @param writer  writer
 *  @param value  number
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_LongToArray(BidiContext* context, QvXmlWriter* writer,
                                                int32_t value) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_DoubleToArray().
 *  @param context  context
 *  @param writer  writer
 *  @param value  number
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_DoubleToArray(BidiContext* context, QvXmlWriter* writer,
                                                  double value) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_StringToArray().
 *  @param context  context
 *  @param writer  writer
 *  @param text  text
 *  @param word1,word2  words of the communication library
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_StringToArray(BidiContext* context, QvXmlWriter* writer,
                                                  const char* text, intptr_t word1,
                                                  intptr_t word2) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_BinaryToArray().
 *  @param context  context
 *  @param writer  writer
 *  @param data  bytes
 *  @param length  number of bytes
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_BinaryToArray(BidiContext* context, QvXmlWriter* writer,
                                                  const void* data, int32_t length) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_CloseArray().
 *  @param context  context
 *  @param writer  writer
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_CloseArray(BidiContext* context,
                                               QvXmlWriter* writer) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_CloseDict().
 *  @param context  context
 *  @param writer  writer
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_CloseDict(BidiContext* context,
                                              QvXmlWriter* writer) IA_NOEXCEPT;

/** Calls qvxmlwrapSet_Destroy().
 *  @param context  context
 *  @param writer  writer
 *  @param word1,word2,word3  words of the communication library
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapSet_Destroy(BidiContext* context, QvXmlWriter* writer,
                                            intptr_t word1, intptr_t word2,
                                            intptr_t word3) IA_NOEXCEPT;

/** @}
 *  @name Document reader
 *  @{ */

/** Calls qvxmlwrapGet_New().
 *  @param context  context
 *  @param data  document
 *  @param length  number of bytes
 *  @return new reader; NULL when the call failed or nothing was called */
IA_EXPORT QvXmlReader* Bidi_qvxmlwrapGet_New(BidiContext* context, const void* data,
                                             int32_t length) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_DictCount().
 *  @param context  context
 *  @param reader  reader
 *  @param key  key
 *  @param count  receives the number
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_DictCount(BidiContext* context, QvXmlReader* reader,
                                              const char* key, int32_t* count) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_OpenDict().
 *  @param context  context
 *  @param reader  reader
 *  @param key  key
 *  @param index  which of the dictionaries, from 0
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_OpenDict(BidiContext* context, QvXmlReader* reader,
                                             const char* key, int32_t index) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_Long().
 *  @param context  context
 *  @param reader  reader
 *  @param key  key
 *  @param value  receives the number
 *  @param word  word of the communication library
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_Long(BidiContext* context, QvXmlReader* reader, const char* key,
                                         int32_t* value, intptr_t word) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_Double().
 *  @param context  context
 *  @param reader  reader
 *  @param key  key
 *  @param value  receives the number
 *  @param default_value  number of the communication library's own use
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_Double(BidiContext* context, QvXmlReader* reader,
                                           const char* key, double* value,
                                           double default_value) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_String().
 *  @param context  context
 *  @param reader  reader
 *  @param key  key
 *  @param text  receives a malloc'd text
 *  @param auxiliary  word of the communication library
 *  @param encoding  name of the encoding wanted
 *  @param word  word of the communication library
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_String(BidiContext* context, QvXmlReader* reader,
                                           const char* key, char** text, void* auxiliary,
                                           const char* encoding, intptr_t word) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_Binary().
 *  @param context  context
 *  @param reader  reader
 *  @param key  key
 *  @param data  receives malloc'd bytes
 *  @param length  receives the number of bytes
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_Binary(BidiContext* context, QvXmlReader* reader,
                                           const char* key, void** data,
                                           int32_t* length) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_ArrayCount().
 *  @param context  context
 *  @param reader  reader
 *  @param key  key
 *  @param count  receives the number
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_ArrayCount(BidiContext* context, QvXmlReader* reader,
                                               const char* key, int32_t* count) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_OpenArray().
 *  @param context  context
 *  @param reader  reader
 *  @param key  key
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_OpenArray(BidiContext* context, QvXmlReader* reader,
                                              const char* key) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_LongFromArray().
 *  @param context  context
 *  @param reader  reader
 *  @param index  position, from 0
 *  @param value  receives the number
 *  @param word  word of the communication library
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_LongFromArray(BidiContext* context, QvXmlReader* reader,
                                                  int32_t index, int32_t* value,
                                                  intptr_t word) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_DoubleFromArray().
 *  @param context  context
 *  @param reader  reader
 *  @param index  position, from 0
 *  @param value  receives the number
 *  @param default_value  number of the communication library's own use
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_DoubleFromArray(BidiContext* context, QvXmlReader* reader,
                                                    int32_t index, double* value,
                                                    double default_value) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_StringFromArray().
 *  @param context  context
 *  @param reader  reader
 *  @param index  position, from 0
 *  @param text  receives a malloc'd text
 *  @param auxiliary  word of the communication library
 *  @param encoding  name of the encoding wanted
 *  @param word  word of the communication library
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_StringFromArray(BidiContext* context, QvXmlReader* reader,
                                                    int32_t index, char** text, void* auxiliary,
                                                    const char* encoding,
                                                    intptr_t word) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_BinaryFromArray().
 *  @param context  context
 *  @param reader  reader
 *  @param index  position, from 0
 *  @param data  receives malloc'd bytes
 *  @param length  receives the number of bytes
 *  @return 1 when the call returned non-zero, else 0; 0 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_BinaryFromArray(BidiContext* context, QvXmlReader* reader,
                                                    int32_t index, void** data,
                                                    int32_t* length) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_CloseArray().
 *  @param context  context
 *  @param reader  reader
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_CloseArray(BidiContext* context,
                                               QvXmlReader* reader) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_CloseDict().
 *  @param context  context
 *  @param reader  reader
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_CloseDict(BidiContext* context,
                                              QvXmlReader* reader) IA_NOEXCEPT;

/** Calls qvxmlwrapGet_Destroy().
 *  @param context  context
 *  @param reader  reader
 *  @return the call's result; -1 when nothing was called */
IA_EXPORT int32_t Bidi_qvxmlwrapGet_Destroy(BidiContext* context, QvXmlReader* reader) IA_NOEXCEPT;

/** @} */

IA_END_DECLS

#endif /* INFO_ANALYZE_BIDI_H_ */

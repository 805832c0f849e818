/** @file
 *  The 36 entry points of a communication library (libmqpd_util.so). This library of a driver
 *  package talks to printers (qvsktwrap), and parses and builds device documents (qvxmlwrap).
 *  libinfo_analyze loads it at run time and calls it through these types. A communication library
 *  includes this header to define them.
 *
 *  Unless an entry point says otherwise, a "Get" of the document family returns non-zero when it
 *  has stored a value; else it returns 0 and leaves the output unchanged. Every other function
 *  returns 0 for success and -1 for failure. Arguments called "word" are pointer-sized, and only
 *  the communication library defines their meaning.
 *
 *  Documents are trees: a dictionary holds values under keys, an array holds values by position.
 *  Several dictionaries under one key are numbered from 0. A writer or reader has one current
 *  dictionary or array at a time, at first the outermost dictionary. */
#ifndef INFO_ANALYZE_COMMUNICATION_LIBRARY_H_
#define INFO_ANALYZE_COMMUNICATION_LIBRARY_H_

#include <stdint.h>

#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** A document being built. */
typedef struct QvXmlWriter QvXmlWriter;
/** A parsed document and the place in it that is being read. */
typedef struct QvXmlReader QvXmlReader;

/** @name Sockets
 *  @{ */

/** Lists the queues of a driver folder.
 *  @param driver_folder  driver folder
 *  @param word1,word2,word3,word4  words of the communication library
 *  @return the communication library's status */
IA_EXPORT int32_t qvsktwrapQueueListNew(const char* driver_folder, intptr_t word1, intptr_t word2,
                                        intptr_t word3, intptr_t word4);

/** Releases what qvsktwrapQueueListNew() made.
 *  @param word1,word2,word3,word4  the words given there
 *  @return the communication library's status */
IA_EXPORT int32_t qvsktwrapQueueListDestroy(intptr_t word1, intptr_t word2, intptr_t word3,
                                            intptr_t word4);

/** Opens a connection to a printer.
 *  @param word1,word2    words of the communication library
 *  @param driver_folder  driver folder
 *  @param port           TCP port of the driver family
 *  @return socket handle, or NULL on failure */
IA_EXPORT void* qvsktwrapNew(intptr_t word1, intptr_t word2, const char* driver_folder,
                             int32_t port);

/** Exchanges data over a connection.
 *  @param socket  handle of qvsktwrapNew()
 *  @param word1,word2,word3,word4,word5  words of the communication library
 *  @return the communication library's status */
IA_EXPORT int32_t qvsktwrapControl(void* socket, intptr_t word1, intptr_t word2, intptr_t word3,
                                   intptr_t word4, intptr_t word5);

/** Closes a connection.
 *  @param socket  handle of qvsktwrapNew()
 *  @return the communication library's status */
IA_EXPORT int32_t qvsktwrapDestroy(void* socket);

/** @}
 *  @name Documents
 *  @{ */

/** Releases what the document family holds for the whole process; called before the library is
 *  unloaded. */
IA_EXPORT void qvxmlwrapCleanup(void);

/** @}
 *  @name Document writer
 *  @{ */

/** Starts a document.
 *  @return new writer, released with qvxmlwrapSet_Destroy(); NULL on failure */
IA_EXPORT QvXmlWriter* qvxmlwrapSet_New(void);

/** Opens a dictionary in the current one, or in the current array.
 *  @param writer  writer
 *  @param key     key; ignored in an array
 *  @param word    word of the communication library
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_OpenDict(QvXmlWriter* writer, const char* key, intptr_t word);

/** Writes a number into the current dictionary.
 *  @param writer  writer
 *  @param key     key
 *  @param value   number
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_Long(QvXmlWriter* writer, const char* key, int32_t value);

/** Writes a floating-point number into the current dictionary.
 *  @param writer  writer
 *  @param key     key
 *  @param value   number
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_Double(QvXmlWriter* writer, const char* key, double value);

/** Writes a text into the current dictionary.
 *  @param writer       writer
 *  @param key          key
 *  @param text         text
 *  @param word1,word2  words of the communication library
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_String(QvXmlWriter* writer, const char* key, const char* text,
                                      intptr_t word1, intptr_t word2);

/** Writes bytes into the current dictionary.
 *  @param writer  writer
 *  @param key     key
 *  @param data    bytes
 *  @param length  number of bytes
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_Binary(QvXmlWriter* writer, const char* key, const void* data,
                                      int32_t length);

/** Opens an array in the current dictionary.
 *  @param writer  writer
 *  @param key     key
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_OpenArray(QvXmlWriter* writer, const char* key);

/** Appends a number to the current array.
 *  @param writer  writer
 *  @param value   number
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_LongToArray(QvXmlWriter* writer, int32_t value);

/** Appends a floating-point number to the current array.
 *  @param writer  writer
 *  @param value   number
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_DoubleToArray(QvXmlWriter* writer, double value);

/** Appends a text to the current array.
 *  @param writer       writer
 *  @param text         text
 *  @param word1,word2  words of the communication library
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_StringToArray(QvXmlWriter* writer, const char* text, intptr_t word1,
                                             intptr_t word2);

/** Appends bytes to the current array.
 *  @param writer  writer
 *  @param data    bytes
 *  @param length  number of bytes
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_BinaryToArray(QvXmlWriter* writer, const void* data, int32_t length);

/** Closes the current array.
 *  @param writer  writer
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_CloseArray(QvXmlWriter* writer);

/** Closes the current dictionary.
 *  @param writer  writer
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_CloseDict(QvXmlWriter* writer);

/** Ends a document and releases its writer. The words specify where the document goes.
 *  @param writer             writer
 *  @param word1,word2,word3  words of the communication library
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_Destroy(QvXmlWriter* writer, intptr_t word1, intptr_t word2,
                                       intptr_t word3);

/** @}
 *  @name Document reader
 *  @{ */

/** Parses a document.
 *  @param data    document; the caller may release it as soon as the call returns
 *  @param length  bytes of the document
 *  @return new reader, released with qvxmlwrapGet_Destroy(); NULL when the data are not a valid
 *  document */
IA_EXPORT QvXmlReader* qvxmlwrapGet_New(const void* data, int32_t length);

/** Counts the dictionaries under a key of the current dictionary.
 *  @param reader  reader
 *  @param key     key
 *  @param count   receives the number
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char* key, int32_t* count);

/** Enters a dictionary of the current dictionary. Each call needs a
 *  qvxmlwrapGet_CloseDict(), even after a failure; until then the current dictionary is an empty
 *  one.
 *  @param reader  reader
 *  @param key     key
 *  @param index   which of the dictionaries under the key, from 0
 *  @return non-zero when it was entered */
IA_EXPORT int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char* key, int32_t index);

/** Reads a number of the current dictionary.
 *  @param reader  reader
 *  @param key     key
 *  @param value   receives the number
 *  @param word    word of the communication library
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, int32_t* value,
                                    intptr_t word);

/** Reads a floating-point number of the current dictionary.
 *  @param reader         reader
 *  @param key            key
 *  @param value          receives the number
 *  @param default_value  number that only the communication library interprets
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_Double(QvXmlReader* reader, const char* key, double* value,
                                      double default_value);

/** Reads a text of the current dictionary.
 *  @param reader     reader
 *  @param key        key
 *  @param text       receives a malloc'd text that the caller releases with free()
 *  @param auxiliary  word of the communication library
 *  @param encoding   name of the encoding wanted, such as "UTF-8"
 *  @param word       word of the communication library
 *  @return non-zero when the text was stored */
IA_EXPORT int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text,
                                      void* auxiliary, const char* encoding, intptr_t word);

/** Reads bytes of the current dictionary.
 *  @param reader  reader
 *  @param key     key
 *  @param data    receives malloc'd bytes that the caller releases with free()
 *  @param length  receives the number of bytes
 *  @return non-zero when the bytes were stored */
IA_EXPORT int32_t qvxmlwrapGet_Binary(QvXmlReader* reader, const char* key, void** data,
                                      int32_t* length);

/** Counts the elements of an array of the current dictionary.
 *  @param reader  reader
 *  @param key     key
 *  @param count   receives the number
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, int32_t* count);

/** Enters an array of the current dictionary. Each call needs a
 *  qvxmlwrapGet_CloseArray(), even after a failure; until then the current array is an empty one.
 *  @param reader  reader
 *  @param key     key
 *  @return non-zero when it was entered */
IA_EXPORT int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key);

/** Reads a number of the current array.
 *  @param reader  reader
 *  @param index   position, from 0
 *  @param value   receives the number
 *  @param word    word of the communication library
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, int32_t index, int32_t* value,
                                             intptr_t word);

/** Reads a floating-point number of the current array.
 *  @param reader         reader
 *  @param index          position, from 0
 *  @param value          receives the number
 *  @param default_value  number that only the communication library interprets
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_DoubleFromArray(QvXmlReader* reader, int32_t index, double* value,
                                               double default_value);

/** Reads a text of the current array.
 *  @param reader     reader
 *  @param index      position, from 0
 *  @param text       receives a malloc'd text that the caller releases with free()
 *  @param auxiliary  word of the communication library
 *  @param encoding   name of the encoding wanted, such as "UTF-8"
 *  @param word       word of the communication library
 *  @return non-zero when the text was stored */
IA_EXPORT int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, int32_t index, char** text,
                                               void* auxiliary, const char* encoding,
                                               intptr_t word);

/** Reads bytes of the current array.
 *  @param reader  reader
 *  @param index   position, from 0
 *  @param data    receives malloc'd bytes that the caller releases with free()
 *  @param length  receives the number of bytes
 *  @return non-zero when the bytes were stored */
IA_EXPORT int32_t qvxmlwrapGet_BinaryFromArray(QvXmlReader* reader, int32_t index, void** data,
                                               int32_t* length);

/** Leaves the current array.
 *  @param reader  reader
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader);

/** Leaves the current dictionary.
 *  @param reader  reader
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader);

/** Releases a reader.
 *  @param reader  reader
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader);

/** @} */

IA_END_DECLS

#endif /* INFO_ANALYZE_COMMUNICATION_LIBRARY_H_ */

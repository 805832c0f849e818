/** @file
 *  The 36 entry points of a communication library (libmqpd_util.so). This library of a driver
 *  package talks to printers (qvsktwrap), and parses and builds device documents (qvxmlwrap).
 *  libinfo_analyze loads it at run time and calls it through these types. A communication library
 *  includes this header to define them. `info-analyze commlib check` tries a communication library
 *  against this contract.
 *
 *  Unless an entry point says otherwise, a "Get" of the document family returns non-zero when it
 *  has stored a value; else it returns 0 and leaves the output unchanged. Every other function
 *  returns 0 for success and -1 for failure. Arguments called "word" are pointer-sized, and only
 *  the communication library defines their meaning.
 *
 *  Documents are trees: a dictionary holds values under keys, an array holds values by position.
 *  Several dictionaries under one key are numbered from 0. A writer or reader has one current
 *  dictionary or array at a time, at first the outermost dictionary.
 *
 *  Loading: Bidi_Create() loads "<folder>/Bidi/libmqpd_util.so" with dlopen(RTLD_NOW) and
 *  looks up all 36 names with dlsym(). If one is missing, it fails. Bidi_Destroy() calls
 *  qvxmlwrapCleanup() and dlclose(). Nothing else is called at either time.
 *
 *  Who calls what: an entry point that is "called by queries" is called by
 *  Analyze_Info_FromPrinter(), the functions of device_documents.h and
 *  Analyze_Provenance_RunUpdate(), with the values described there. Callers of device_documents.h
 *  can read keys of their own in the same way.
 *
 *  One that is "called by its wrapper only" is called when a program calls the function of the same
 *  name with the prefix "Bidi_" (bidi.h), with the program's values, and never otherwise. The tool
 *  info-analyze is such a program; where it calls an entry point, the description says so.
 *
 *  Wrappers return the entry point's result. Those of "Get" functions that store a value or enter
 *  a level return 1 for any result but 0.
 *
 *  Unused words: queries pass 0 for each word and NULL for each auxiliary. Wrappers pass
 *  what the program gives them. libinfo_analyze never interprets a word.
 *
 *  Threads: libinfo_analyze calls the communication library in the thread of its caller.
 *  Several threads can query at once, each with its own readers. No reader or writer is used by two
 *  threads at once. Lock what these share. */
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
 *
 *  Called by its wrapper only. The driver folder is the one given to Bidi_Create(). The result is
 *  returned to the program.
 *  @param driver_folder  driver folder, never NULL
 *  @param word1,word2,word3,word4  words of the communication library
 *  @return the communication library's status */
IA_EXPORT int32_t qvsktwrapQueueListNew(const char* driver_folder, intptr_t word1, intptr_t word2,
                                        intptr_t word3, intptr_t word4);

/** Releases what qvsktwrapQueueListNew() made.
 *
 *  Called by its wrapper only. The result is returned to the program.
 *  @param word1,word2,word3,word4  the words given there
 *  @return the communication library's status */
IA_EXPORT int32_t qvsktwrapQueueListDestroy(intptr_t word1, intptr_t word2, intptr_t word3,
                                            intptr_t word4);

/** Opens a connection to a printer.
 *
 *  Called by its wrapper only. The driver folder is the one given to Bidi_Create(), and the port is
 *  the one of FolderPathToPortNumber() for it. The result replaces the handle that the context
 *  holds; the handle before it is not closed. For NULL the wrapper returns -1.
 *  @param word1,word2    words of the communication library
 *  @param driver_folder  driver folder, never NULL
 *  @param port           TCP port of the driver family; 0 when it has none
 *  @return socket handle, or NULL on failure */
IA_EXPORT void* qvsktwrapNew(intptr_t word1, intptr_t word2, const char* driver_folder,
                             int32_t port);

/** Exchanges data over a connection.
 *
 *  Called by its wrapper only, also when there is no connection. The result is returned to the
 *  program.
 *  @param socket  the last result of qvsktwrapNew() in this context, even after
 *                 qvsktwrapDestroy(); NULL when it failed or was not called
 *  @param word1,word2,word3,word4,word5  words of the communication library
 *  @return the communication library's status */
IA_EXPORT int32_t qvsktwrapControl(void* socket, intptr_t word1, intptr_t word2, intptr_t word3,
                                   intptr_t word4, intptr_t word5);

/** Closes a connection.
 *
 *  Called by its wrapper only, also when there is no connection. Bidi_Destroy() does not call it.
 *  The context keeps the handle. The result is returned to the program.
 *  @param socket  the last result of qvsktwrapNew() in this context, even after
 *                 qvsktwrapDestroy(); NULL when it failed or was not called
 *  @return the communication library's status */
IA_EXPORT int32_t qvsktwrapDestroy(void* socket);

/** @}
 *  @name Documents
 *  @{ */

/** Releases what the document family holds for the whole process.
 *
 *  Called by Bidi_Destroy() before it unloads the library, whether or not a document was read. It
 *  is also called when Bidi_Create() fails because an entry point after this one is missing. When a
 *  process has several contexts of one library, it is called once for each. So readers and writers
 *  of the other contexts must stay valid, and the library must stay usable. */
IA_EXPORT void qvxmlwrapCleanup(void);

/** @}
 *  @name Document writer
 *  @{ */

/** Starts a document.
 *
 *  Called by its wrapper only; `info-analyze acquire` starts each document with it.
 *  @return new writer, released with qvxmlwrapSet_Destroy(); NULL on failure */
IA_EXPORT QvXmlWriter* qvxmlwrapSet_New(void);

/** Opens a dictionary in the current one, or in the current array.
 *
 *  Called by its wrapper only; `info-analyze acquire` opens each item of a list with the key "list"
 *  and the word 0.
 *  @param writer  writer
 *  @param key     key; ignored in an array
 *  @param word    word of the communication library
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_OpenDict(QvXmlWriter* writer, const char* key, intptr_t word);

/** Writes a number into the current dictionary.
 *
 *  Called by its wrapper only; `info-analyze acquire` writes numbers with it.
 *  @param writer  writer
 *  @param key     key
 *  @param value   number
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_Long(QvXmlWriter* writer, const char* key, int32_t value);

/** Writes a floating-point number into the current dictionary.
 *
 *  Called by its wrapper only.
 *  @param writer  writer
 *  @param key     key
 *  @param value   number
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_Double(QvXmlWriter* writer, const char* key, double value);

/** Writes a text into the current dictionary.
 *
 *  Called by its wrapper only; `info-analyze acquire` writes texts in UTF-8 with it, and passes 0
 *  for both words.
 *  @param writer       writer
 *  @param key          key
 *  @param text         text
 *  @param word1,word2  words of the communication library
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_String(QvXmlWriter* writer, const char* key, const char* text,
                                      intptr_t word1, intptr_t word2);

/** Writes bytes into the current dictionary.
 *
 *  Called by its wrapper only.
 *  @param writer  writer
 *  @param key     key
 *  @param data    bytes
 *  @param length  number of bytes
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_Binary(QvXmlWriter* writer, const char* key, const void* data,
                                      int32_t length);

/** Opens an array in the current dictionary.
 *
 *  Called by its wrapper only; `info-analyze acquire` writes arrays of numbers and of texts.
 *  @param writer  writer
 *  @param key     key
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_OpenArray(QvXmlWriter* writer, const char* key);

/** Appends a number to the current array.
 *
 *  Called by its wrapper only; `info-analyze acquire` writes arrays of numbers with it.
 *  @param writer  writer
 *  @param value   number
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_LongToArray(QvXmlWriter* writer, int32_t value);

/** Appends a floating-point number to the current array.
 *
 *  Called by its wrapper only.
 *  @param writer  writer
 *  @param value   number
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_DoubleToArray(QvXmlWriter* writer, double value);

/** Appends a text to the current array.
 *
 *  Called by its wrapper only; `info-analyze acquire` writes arrays of texts in UTF-8 with it, and
 *  passes 0 for both words.
 *  @param writer       writer
 *  @param text         text
 *  @param word1,word2  words of the communication library
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_StringToArray(QvXmlWriter* writer, const char* text, intptr_t word1,
                                             intptr_t word2);

/** Appends bytes to the current array.
 *
 *  Called by its wrapper only.
 *  @param writer  writer
 *  @param data    bytes
 *  @param length  number of bytes
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_BinaryToArray(QvXmlWriter* writer, const void* data, int32_t length);

/** Closes the current array.
 *
 *  Called by its wrapper only; `info-analyze acquire` calls it once for each array.
 *  @param writer  writer
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_CloseArray(QvXmlWriter* writer);

/** Closes the current dictionary.
 *
 *  Called by its wrapper only; `info-analyze acquire` calls it once for each item of a list.
 *  @param writer  writer
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_CloseDict(QvXmlWriter* writer);

/** Ends a document and releases its writer, whatever it returns. The words specify where the
 *  document goes.
 *
 *  Called by its wrapper only. `info-analyze acquire` passes the address of a char* as word1, the
 *  address of an int32_t as word2, and 0 as word3. It expects 0, the document in a block of
 *  malloc() that it releases with free(), and the document's length. When it gives up a document,
 *  it passes 0 for all three words and ignores the result.
 *  @param writer             writer
 *  @param word1,word2,word3  words of the communication library
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapSet_Destroy(QvXmlWriter* writer, intptr_t word1, intptr_t word2,
                                       intptr_t word3);

/** @}
 *  @name Document reader
 *  @{ */

/** Parses a document.
 *
 *  Called by queries for each of the nine documents that is not open yet. Open documents stay open
 *  together until the analyser is destroyed or a query reloads them. NULL means that the document
 *  counts as absent: the query goes on without it. A file has at most 16 MiB and can be empty. Its
 *  bytes are released when the call returns.
 *  @param data    document, from a query never NULL; nothing beyond its length may be read
 *  @param length  bytes of the document, 0 or more
 *  @return new reader, released with qvxmlwrapGet_Destroy(); NULL when the data are not a valid
 *  document */
IA_EXPORT QvXmlReader* qvxmlwrapGet_New(const void* data, int32_t length);

/** Counts the dictionaries under a key of the current dictionary.
 *
 *  Called by queries with the key "list", once for each of Finisher_list.xml, Bin_list.xml,
 *  Tray_list.xml and Fax_line_list.xml, directly after qvxmlwrapGet_New(). The count is 0 before
 *  the call. Afterwards it is used whatever the result was, a negative one as 0, and one over
 *  1048576 as 1048576.
 *  @param reader  reader
 *  @param key     key
 *  @param count   receives the number
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char* key, int32_t* count);

/** Enters a dictionary of the current dictionary. Each call needs a
 *  qvxmlwrapGet_CloseDict(), even after a failure; until then the current dictionary is an empty
 *  one.
 *
 *  Called by queries with the key "list" and each index below the count of the list, in rising
 *  order, as often as update handlers read the list. The result is ignored: values are read, and
 *  the dictionary is closed, after a failure too.
 *  @param reader  reader
 *  @param key     key
 *  @param index   which of the dictionaries under the key, from 0
 *  @return non-zero when it was entered */
IA_EXPORT int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char* key, int32_t index);

/** Reads a number of the current dictionary.
 *
 *  Called by queries, with the word 0. The result is ignored: the number holds a default before the
 *  call, and is used as it is afterwards. So leave it unchanged when the key is missing.
 *  @param reader  reader
 *  @param key     key
 *  @param value   receives the number
 *  @param word    word of the communication library
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, int32_t* value,
                                    intptr_t word);

/** Reads a floating-point number of the current dictionary.
 *
 *  Called by its wrapper only; `info-analyze explain` and `doctor` call it, with the default value
 *  0, to find out whether a key that lacks the expected type has this one. They use the result
 *  only.
 *  @param reader         reader
 *  @param key            key
 *  @param value          receives the number
 *  @param default_value  number that only the communication library interprets
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_Double(QvXmlReader* reader, const char* key, double* value,
                                      double default_value);

/** Reads a text of the current dictionary.
 *
 *  Called by queries, with the encoding "UTF-8", NULL as the auxiliary and the word 0. The result
 *  is ignored: the pointer is NULL before the call, and a pointer that is not NULL afterwards is
 *  used as the text and released with free().
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
 *
 *  Called by its wrapper only; `info-analyze explain` and `doctor` call it to find out whether a
 *  key that lacks the expected type has this one. They use the result, and release the bytes.
 *  @param reader  reader
 *  @param key     key
 *  @param data    receives malloc'd bytes that the caller releases with free()
 *  @param length  receives the number of bytes
 *  @return non-zero when the bytes were stored */
IA_EXPORT int32_t qvxmlwrapGet_Binary(QvXmlReader* reader, const char* key, void** data,
                                      int32_t* length);

/** Counts the elements of an array of the current dictionary.
 *
 *  Called by queries before an array is read. The count is 0 before the call, and is used
 *  afterwards whatever the result was. Below 1 the array is not entered. A query reads only as many
 *  elements as it has memory for.
 *  @param reader  reader
 *  @param key     key
 *  @param count   receives the number
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, int32_t* count);

/** Enters an array of the current dictionary. Each call needs a
 *  qvxmlwrapGet_CloseArray(), even after a failure; until then the current array is an empty one.
 *
 *  Called by queries when qvxmlwrapGet_ArrayCount() stored 1 or more. The result is ignored:
 *  elements are read, and the array is closed, after a failure too.
 *  @param reader  reader
 *  @param key     key
 *  @return non-zero when it was entered */
IA_EXPORT int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key);

/** Reads a number of the current array.
 *
 *  Called by queries for each position of an array of numbers in order, with the word 0. The result
 *  is ignored: the number is used as it is afterwards. So leave it unchanged when the element is
 *  not a number.
 *  @param reader  reader
 *  @param index   position, from 0
 *  @param value   receives the number
 *  @param word    word of the communication library
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, int32_t index, int32_t* value,
                                             intptr_t word);

/** Reads a floating-point number of the current array.
 *
 *  Called by its wrapper only.
 *  @param reader         reader
 *  @param index          position, from 0
 *  @param value          receives the number
 *  @param default_value  number that only the communication library interprets
 *  @return non-zero when the number was stored */
IA_EXPORT int32_t qvxmlwrapGet_DoubleFromArray(QvXmlReader* reader, int32_t index, double* value,
                                               double default_value);

/** Reads a text of the current array.
 *
 *  Called by queries for each position of an array of texts in order, with the encoding "UTF-8",
 *  NULL as the auxiliary and the word 0. The pointer is NULL before the call. The text is used when
 *  the result is not 0 and the pointer is not NULL; the pointer is released with free() in any
 *  case.
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
 *
 *  Called by its wrapper only.
 *  @param reader  reader
 *  @param index   position, from 0
 *  @param data    receives malloc'd bytes that the caller releases with free()
 *  @param length  receives the number of bytes
 *  @return non-zero when the bytes were stored */
IA_EXPORT int32_t qvxmlwrapGet_BinaryFromArray(QvXmlReader* reader, int32_t index, void** data,
                                               int32_t* length);

/** Leaves the current array.
 *
 *  Called by queries once after each qvxmlwrapGet_OpenArray(). The result is ignored.
 *  @param reader  reader
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader);

/** Leaves the current dictionary.
 *
 *  Called by queries once after each qvxmlwrapGet_OpenDict(). The result is ignored.
 *  @param reader  reader
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader);

/** Releases a reader.
 *
 *  Called by analyze_common_destroy_xmldata() and Analyze_Destroy(), once for each reader, and
 *  before qvxmlwrapCleanup() when the program releases its analysers first. The result is ignored.
 *  @param reader  reader; `info-analyze explain` also passes NULL
 *  @return 0 or -1 */
IA_EXPORT int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader);

/** @} */

IA_END_DECLS

#endif /* INFO_ANALYZE_COMMUNICATION_LIBRARY_H_ */

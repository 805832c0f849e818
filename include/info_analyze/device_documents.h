/** @file
 *  Loads an analyser's nine device-information documents and reads values from them through tables
 *  of key descriptors. */
#ifndef INFO_ANALYZE_DEVICE_DOCUMENTS_H_
#define INFO_ANALYZE_DEVICE_DOCUMENTS_H_

#include <stdint.h>

#include "info_analyze/communication_library.h"
#include "info_analyze/export.h"

IA_BEGIN_DECLS

typedef struct AnalyzeContext AnalyzeContext;

/** Index of each document, and the file that it is read from. */
enum {
  IA_DOCUMENT_ACCESSORIES = 0,   /**< "/Accessories.xml" */
  IA_DOCUMENT_FUNCTIONS = 1,     /**< "/Functions.xml" */
  IA_DOCUMENT_SPECID = 2,        /**< "/Specid.xml" */
  IA_DOCUMENT_FINISHER_LIST = 3, /**< "/Finisher_list.xml", items under "list" */
  IA_DOCUMENT_BIN_LIST = 4,      /**< "/Bin_list.xml", items under "list" */
  IA_DOCUMENT_TRAY_LIST = 5,     /**< "/Tray_list.xml", items under "list" */
  IA_DOCUMENT_RESOLUTIONS = 6,   /**< "/Resolutions.xml" */
  IA_DOCUMENT_FAX_LINE_LIST = 7, /**< "/Fax_line_list.xml", items under "list" */
  IA_DOCUMENT_DEVICENAME = 8,    /**< "/Devicename.xml" */
  IA_DOCUMENT_COUNT = 9          /**< number of documents */
};

/** Limits of documents. */
enum {
  IA_DOCUMENT_MAX_SIZE = 16777216,    /**< bytes of a file: 16 MiB */
  IA_DOCUMENT_MAX_PATH_LENGTH = 1023, /**< bytes of a file's path */
  IA_DOCUMENT_MAX_ITEMS = 1048576     /**< maximum items counted in a list */
};

/** One document slot of an analyser. */
typedef struct XmlData {
  QvXmlReader* xml; /**< reader of the communication library; NULL: not loaded */
  int32_t count;    /**< items of the document's list, 0 to 1,048,576; 0 when it has none */
} XmlData;

/** What a key descriptor reads. */
enum {
  IA_KEY_DICTIONARY = 1,     /**< values of a dictionary */
  IA_KEY_LONG = 2,           /**< number */
  IA_KEY_STRING = 4,         /**< text */
  IA_KEY_ARRAY = 6,          /**< elements of an array */
  IA_KEY_LONG_ELEMENTS = 7,  /**< numbers, inside IA_KEY_ARRAY */
  IA_KEY_STRING_ELEMENTS = 9 /**< texts, inside IA_KEY_ARRAY */
};

/** Describes one value to read and where to store it. When the document lacks the value, its
 *  destination keeps its contents, so the caller stores defaults there first.
 *
 *  | type | destination | count |
 *  |---|---|---|
 *  | IA_KEY_DICTIONARY | XmlKeyDescriptor**: the descriptors to read inside | their number |
 *  | IA_KEY_LONG | int32_t* | not used |
 *  | IA_KEY_STRING | char**: receives a text that the caller releases with free() | not used |
 *  | IA_KEY_ARRAY | XmlKeyDescriptor**: the elements' one descriptor | receives their number |
 *  | IA_KEY_LONG_ELEMENTS | int32_t[] | NULL, or the capacity of the destination |
 *  | IA_KEY_STRING_ELEMENTS | char*[]: each receives a text that the caller releases with free() |
 *  likewise |
 *
 *  An array receives at most as many elements as the capacity in the descriptor of its elements. */
typedef struct XmlKeyDescriptor {
  intptr_t document;           /**< IA_DOCUMENT_... */
  const char* key;             /**< name in the current dictionary; not used for elements */
  intptr_t type;               /**< IA_KEY_... */
  void* destination;           /**< see above */
  const char* const* encoding; /**< address of the encoding name of texts, "UTF-8"; else NULL */
  void* auxiliary;             /**< passed to the communication library with texts */
  int32_t* count;              /**< see above */
} XmlKeyDescriptor;

/** Loads one document from the analyser's document directory into its slot.
 *
 *  Reads only a regular file of at most 16 MiB, and never blocks. When the communication library
 *  cannot parse the file, the slot stays unchanged and the call succeeds. A reader that is already
 *  in the slot is not released: call analyze_common_destroy_xmldata() first.
 *
 *  @param context  analyser
 *  @param index    document index
 *  @return 0; the errno of a failed read; -1 for any other failure: a NULL argument or directory,
 *  an index out of range, a path of 1024 bytes or more, a missing file, a file that is not regular,
 *  is too large or shrinks while it is read, or a failed allocation */
IA_EXPORT int32_t analyze_common_create_xmldata(AnalyzeContext* context, int32_t index) IA_NOEXCEPT;

/** Loads all nine documents in order and stops at the first that fails.
 *  @param context  analyser
 *  @return 0, or the first non-zero result of analyze_common_create_xmldata() */
IA_EXPORT int32_t analyze_common_create_all_xmldata(AnalyzeContext* context) IA_NOEXCEPT;

/** Parses a document that is in memory and stores its reader in the document's slot.
 *  @param context   analyser
 *  @param index     document index
 *  @param bytes     document, not kept
 *  @param length    its length in bytes
 *  @param list_key  key of the repeated dictionary to count, or NULL
 *  @return 0, also when the communication library cannot parse it (the slot then stays unchanged);
 *          -1 for a NULL context, NULL bytes, a negative length or an index out of range */
IA_EXPORT int32_t analyze_common_initialize_xmldata(AnalyzeContext* context, int32_t index,
                                                    const void* bytes, int32_t length,
                                                    const char* list_key) IA_NOEXCEPT;

/** Releases one document and empties its slot.
 *  @param context  analyser; NULL does nothing
 *  @param index    document index; one out of range does nothing */
IA_EXPORT void analyze_common_destroy_xmldata(AnalyzeContext* context, int32_t index) IA_NOEXCEPT;

/** Releases all nine documents.
 *  @param context  analyser
 *  @return 0, or -1 for NULL */
IA_EXPORT int32_t analyze_common_destroy_all_xmldata(AnalyzeContext* context) IA_NOEXCEPT;

/** Reads plain values (IA_KEY_LONG, IA_KEY_STRING) from the outermost dictionaries of documents.
 *  @param context      analyser
 *  @param descriptors  what to read, in this order
 *  @param count        number of descriptors; below 1 reads nothing
 *  @return 0; -1 for a NULL argument, a document that is not loaded or a descriptor of a
 *          different type. Reading stops at the first failure */
IA_EXPORT int32_t analyze_common_readxml(AnalyzeContext* context,
                                         const XmlKeyDescriptor* descriptors,
                                         int32_t count) IA_NOEXCEPT;

/** Reads one plain value, or the elements of the reader's current array.
 *  @param context     analyser
 *  @param reader      reader of a document
 *  @param descriptor  what to read: a plain value or elements
 *  @param elements    number of elements to read; not used for plain values
 *  @return 0, whether or not the values exist; -1 for a NULL argument, a descriptor of a
 *          different type, one that lacks a key, destination or encoding that it needs, or a failed
 *          allocation */
IA_EXPORT int32_t analyze_common_getxmlkeydata(AnalyzeContext* context, QvXmlReader* reader,
                                               const XmlKeyDescriptor* descriptor,
                                               int32_t elements) IA_NOEXCEPT;

/** Reads values of any type, dictionaries and arrays included.
 *  @param context      analyser
 *  @param reader       reader of a document
 *  @param descriptors  what to read, in this order
 *  @param count        number of descriptors; below 1 reads nothing
 *  @param index        which dictionary of its key an IA_KEY_DICTIONARY enters, and how many
 *                      elements a descriptor of elements reads
 *  @return 0; -1 for a NULL argument, an invalid descriptor or a failed allocation. Reading
 *          stops at the first failure */
IA_EXPORT int32_t analyze_common_getxmloneinfo(AnalyzeContext* context, QvXmlReader* reader,
                                               const XmlKeyDescriptor* descriptors, int32_t count,
                                               int32_t index) IA_NOEXCEPT;

/** Reads values of one item in the lists of documents.
 *  @param context      analyser
 *  @param descriptors  what to read, in this order, usually one IA_KEY_DICTIONARY "list"
 *  @param count        number of descriptors; below 1 reads nothing
 *  @param list_index   index of the item, from 0
 *  @return as analyze_common_getxmloneinfo() */
IA_EXPORT int32_t analyze_common_readxml_for_list(AnalyzeContext* context,
                                                  const XmlKeyDescriptor* descriptors,
                                                  int32_t count, int32_t list_index) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_DEVICE_DOCUMENTS_H_ */

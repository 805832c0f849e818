/** @file
 *  The printer daemon's configuration file "mqpd.conf", which each driver family keeps in "MQPD" of
 *  its cache folder. The functions find the queue of a device and the device of a queue.
 *
 *  Each line of the file ends with a line feed; the last one may lack it. A line whose first
 *  character is '#' is a comment; blanks before the '#' make it an ordinary line. A queue entry
 *  begins with a line that contains "<Printer ", the queue's name (without NUL bytes) and '>'. The
 *  next line, unless it is a comment, may contain "DevicePath " followed by the queue's device URI
 *  (see device_uri.h). All other lines are ignored.
 *
 *  The text of a file is not NUL-terminated and may contain NUL bytes, so functions take its start
 *  and its end. A NULL start or end, or a start after the end, is an empty text. Output arguments
 *  that are not NULL are always set, on failure to NULL (a pointer) or 0 (a number) unless a
 *  function says otherwise.
 *
 *  All comparisons are case-sensitive. Of several entries for one queue or URI, the first in the
 *  file counts.
 */
#ifndef INFO_ANALYZE_MQPD_CONF_H_
#define INFO_ANALYZE_MQPD_CONF_H_

#include <stdint.h>
#include <stdio.h>

#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** The text of one configuration file. MqpdQueueList_Initialize() writes into the text, so only one
 *  thread at a time may use it. */
typedef struct FolderConf {
  char* text;      /**< owned; not NUL-terminated */
  uint32_t length; /**< bytes of the text */
} FolderConf;

/** Reads the configuration file of a driver family: "MQPD/mqpd.conf" in the cache folder that
 *  FolderPathToDriverCache() derives from the installation folder.
 *  @param driver_folder  installation folder; NULL is refused
 *  @return new handle, released with FolderPathForConf_Terminate(); NULL for an unknown folder, a
 *          file that cannot be opened, a FIFO or device, a file of 2 GiB or more, or a failed
 *          allocation. When the file can be opened but not read to its end (such as a directory),
 *          the handle holds what was read */
IA_EXPORT FolderConf* FolderPathForConf_Initialize(const char* driver_folder) IA_NOEXCEPT;

/** Releases a handle and its text.
 *  @param conf  handle; NULL does nothing */
IA_EXPORT void FolderPathForConf_Terminate(FolderConf* conf) IA_NOEXCEPT;

/** Finds the device of a queue, as zGetPrinterAddressAndIOLibType() does.
 *  @param conf        handle, not modified; NULL or a handle without text has no queues
 *  @param queue_name  whole name of the queue
 *  @param address     receives the malloc'd address, or NULL
 *  @param protocol    receives a malloc'd endpoint prefix, or NULL
 *  @return as zGetPrinterAddressAndIOLibType() */
IA_EXPORT int32_t FolderPathForConf_GetAddressAndProtocol(const FolderConf* conf,
                                                          const char* queue_name, char** address,
                                                          char** protocol) IA_NOEXCEPT;

/** Finds the queue that serves a device, in the configuration file of the URI's driver family.
 *  @param device_uri  device URI; finds the queue whose device path contains all of it
 *  @param queue_name  receives the malloc'd name
 *  @return 0; -1 for a NULL argument, a URI whose family is unknown or has no cache folder, a file
 *          that cannot be opened, no such queue or a failed allocation; the result of
 *          zGetAllDataFromStream() when the file cannot be read */
IA_EXPORT int32_t MqpdUriToQueueName(const char* device_uri, char** queue_name) IA_NOEXCEPT;

/** Counts the queues of a configuration text.
 *  @param start  first byte
 *  @param end    one past the last byte
 *  @return number of lines that begin a queue entry */
IA_EXPORT int32_t zGetQueueCount(const char* start, const char* end) IA_NOEXCEPT;

/** Takes the first queue out of a configuration text: returns a copy of its name and overwrites the
 *  '>' after it in the text with a NUL. Later calls on this text no longer find the queue.
 *  @param start  first byte; must be the start of a line
 *  @param end    one past the last byte
 *  @param next   receives the start of the line after the queue's, where the next call starts;
 *                @p end when there is no queue
 *  @param name   receives the malloc'd name
 *  @return 1; 0 for a NULL output, no queue or a failed allocation. After a failed allocation the
 *          text is unchanged, but @p next is after the queue */
IA_EXPORT int32_t zGetFirstQueueName(char* start, char* end, char** next, char** name) IA_NOEXCEPT;

/** Finds the queue that serves a device in a configuration text.
 *  @param start       first byte
 *  @param end         one past the last byte
 *  @param device_uri  device URI; finds the queue whose device path contains all of it
 *  @param name        receives the malloc'd name
 *  @return 1; 0 for a NULL argument, no such queue or a failed allocation */
IA_EXPORT int32_t zGetQueueNameFromPrinterAddress(const char* start, const char* end,
                                                  const char* device_uri, char** name) IA_NOEXCEPT;

/** Finds the device of a queue in a configuration text.
 *  @param start       first byte
 *  @param end         one past the last byte
 *  @param queue_name  whole name of the queue
 *  @param address     receives the malloc'd text between the endpoint prefix and "/PDLType="; NULL
 *                     when the queue has no device path or the path has no "/PDLType="
 *  @param protocol    receives a malloc'd copy of the endpoint prefix, such as "net:"; NULL when
 *                     the queue has no device path
 *  @return 1; 0, with both outputs NULL, for a NULL argument, no such queue, a device path
 *          with an unknown prefix or a failed allocation */
IA_EXPORT int32_t zGetPrinterAddressAndIOLibType(const char* start, const char* end,
                                                 const char* queue_name, char** address,
                                                 char** protocol) IA_NOEXCEPT;

/** Reads a stream to its end.
 *  @param stream  stream that is open for reading; stays open
 *  @param data    receives the malloc'd bytes, without a NUL at the end; not NULL for an empty
 *                 stream. When reading fails, receives the bytes read so far, which the caller
 *                 must free even though the call fails
 *  @param length  receives the number of bytes read
 *  @return 0; the value of ferror() when reading fails; -1 for a NULL argument, a failed allocation
 *          or 2 GiB or more, and then no bytes are returned */
IA_EXPORT int32_t zGetAllDataFromStream(FILE* stream, char** data, uint32_t* length) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_MQPD_CONF_H_ */

/** @file
 *  The printer daemon's configuration file "mqpd.conf", which each driver family keeps in "MQPD" of
 *  its cache folder, and the questions that it answers: which queue serves a device, and which
 *  device a queue.
 *
 *  The file is a text of lines that end with a line feed, the last one perhaps without. A line
 *  whose first character is '#' is a comment; nothing else is trimmed, so one that begins with
 *  blanks and '#' is none. A queue entry begins with a line that holds "<Printer " and behind it a
 *  '>'; the queue's name is what stands between, and holds no NUL. The one line behind it, unless
 *  that is a comment, may hold "DevicePath " and behind that the queue's device URI (see
 *  device_uri.h). All other lines are ignored.
 *
 *  The text of a file is not NUL-terminated and NULs in it are bytes like others, so functions take
 *  its start and its end. A NULL start or end, or a start behind the end, is an empty text. Output
 *  arguments that are not NULL are always set: to NULL (a pointer) or 0 (a number) where nothing
 *  else is said.
 *
 *  Letter case matters everywhere. Where a queue or a URI occurs twice, the first in the file wins.
 */
#ifndef INFO_ANALYZE_MQPD_CONF_H_
#define INFO_ANALYZE_MQPD_CONF_H_

#include <stdint.h>
#include <stdio.h>

#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** The text of one configuration file. It may be walked by one thread at a time only: the walk of
 *  MqpdQueueList_Initialize() writes into it. */
typedef struct FolderConf {
  char* text;      /**< owned; not NUL-terminated */
  uint32_t length; /**< bytes of the text */
} FolderConf;

/** Reads the configuration file of a driver family: "MQPD/mqpd.conf" in the cache folder that
 *  FolderPathToDriverCache() derives from the installation folder.
 *  @param driver_folder  installation folder; NULL is refused
 *  @return new handle, released with FolderPathForConf_Terminate(); NULL for an unknown folder, a
 *          file that cannot be opened, a FIFO or device in its place, one of 2 GiB or more, or
 *          exhausted memory. When the file can be opened but not read to its end, as a folder
 *          cannot, the handle holds what was read */
IA_EXPORT FolderConf* FolderPathForConf_Initialize(const char* driver_folder) IA_NOEXCEPT;

/** Releases a handle and its text.
 *  @param conf  handle, or NULL for nothing to do */
IA_EXPORT void FolderPathForConf_Terminate(FolderConf* conf) IA_NOEXCEPT;

/** Tells which device a queue serves, as zGetPrinterAddressAndIOLibType() does.
 *  @param conf        handle, not modified; NULL, or one without text, has no queues
 *  @param queue_name  whole name of the queue
 *  @param address     receives the malloc'd address, or NULL
 *  @param protocol    receives a malloc'd endpoint prefix, or NULL
 *  @return as zGetPrinterAddressAndIOLibType() */
IA_EXPORT int32_t FolderPathForConf_GetAddressAndProtocol(const FolderConf* conf,
                                                          const char* queue_name, char** address,
                                                          char** protocol) IA_NOEXCEPT;

/** Finds the queue that serves a device, in the configuration file of the URI's driver family.
 *  @param device_uri  device URI; the queue whose device path holds it, whole, is the one
 *  @param queue_name  receives the malloc'd name
 *  @return 0; -1 for a NULL argument, a URI of no family with a cache folder, a file that cannot be
 *          opened, no such queue or exhausted memory; another status when the file cannot be read,
 *          as zGetAllDataFromStream() tells it */
IA_EXPORT int32_t MqpdUriToQueueName(const char* device_uri, char** queue_name) IA_NOEXCEPT;

/** Counts the queues of a configuration text.
 *  @param start  first byte
 *  @param end    behind the last byte
 *  @return number of lines with which queue entries begin */
IA_EXPORT int32_t zGetQueueCount(const char* start, const char* end) IA_NOEXCEPT;

/** Takes the first queue out of a configuration text: its name is handed out, and the '>' behind
 *  it becomes a NUL in the text. A text that was walked has no such queue any more.
 *  @param start  first byte, where a line begins
 *  @param end    behind the last byte
 *  @param next   receives where the line behind the queue's begins, to go on from; @p end when
 *                there is no queue
 *  @param name   receives the malloc'd name
 *  @return 1; 0 for a NULL output, no queue or exhausted memory. When memory ran out the text is
 *          unchanged and @p next is behind the queue all the same */
IA_EXPORT int32_t zGetFirstQueueName(char* start, char* end, char** next, char** name) IA_NOEXCEPT;

/** Finds the queue that serves a device in a configuration text.
 *  @param start       first byte
 *  @param end         behind the last byte
 *  @param device_uri  device URI; the queue whose device path holds it, whole, is the one
 *  @param name        receives the malloc'd name
 *  @return 1; 0 for a NULL argument, no such queue or exhausted memory */
IA_EXPORT int32_t zGetQueueNameFromPrinterAddress(const char* start, const char* end,
                                                  const char* device_uri, char** name) IA_NOEXCEPT;

/** Finds out from a configuration text which device a queue serves.
 *  @param start       first byte
 *  @param end         behind the last byte
 *  @param queue_name  whole name of the queue
 *  @param address     receives the malloc'd text between the endpoint prefix and "/PDLType="; NULL
 *                     when the queue has no device path or that has no "/PDLType="
 *  @param protocol    receives a malloc'd copy of the endpoint prefix, such as "net:"; NULL when
 *                     the queue has no device path
 *  @return 1; 0, with both outputs NULL, for a NULL argument, no such queue, a device path of
 *          unknown prefix or exhausted memory */
IA_EXPORT int32_t zGetPrinterAddressAndIOLibType(const char* start, const char* end,
                                                 const char* queue_name, char** address,
                                                 char** protocol) IA_NOEXCEPT;

/** Reads a stream to its end.
 *  @param stream  stream that is open for reading; stays open
 *  @param data    receives the malloc'd bytes, without a NUL behind them; not NULL for an empty
 *                 stream. When reading fails, those read until then, which the caller must free
 *                 although the call fails
 *  @param length  receives how many bytes were read
 *  @return 0; the value of ferror() when reading fails; -1 for a NULL argument, exhausted memory or
 *          2 GiB or more, and then there are no data */
IA_EXPORT int32_t zGetAllDataFromStream(FILE* stream, char** data, uint32_t* length) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_MQPD_CONF_H_ */

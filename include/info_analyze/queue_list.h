/** @file
 *  Lists of print queues: those of the CUPS spooler and those of the printer daemon. */
#ifndef INFO_ANALYZE_QUEUE_LIST_H_
#define INFO_ANALYZE_QUEUE_LIST_H_

#include <stdint.h>

#include "info_analyze/export.h"
#include "info_analyze/mqpd_conf.h"

IA_BEGIN_DECLS

/** One print queue. */
typedef struct QueueRecord {
  char* name;                /**< owned by the list */
  int32_t modification_time; /**< seconds since the epoch; 0 where unknown */
} QueueRecord;

/** Print queues, of CUPS or of the printer daemon. */
typedef struct QueueList {
  int32_t count;        /**< number of queues */
  QueueRecord* records; /**< array of at least count records; NULL for an empty list */
} QueueList;

/** Lists the queues of the CUPS spooler: the files "<queue>.ppd" of "/etc/cups/ppd", in no
 *  particular order, with their modification times. A time beyond the range of a signed 32-bit
 *  number becomes the nearest one in range. The suffix ".ppd" is case-sensitive.
 *  @param count  receives the number of queues, 0 when the call fails; may be NULL
 *  @return new list, released with CupsQueueList_Terminate(), also when the folder is empty or
 *          cannot be read; NULL when an allocation fails */
IA_EXPORT QueueList* CupsQueueList_Initialize(int32_t* count) IA_NOEXCEPT;

/** Lists the queues of a daemon configuration, in the order of the file. All modification times
 *  are 0.
 *
 *  Overwrites the '>' after each name in the configuration's text with a NUL. So a second list
 *  made from the same handle, and lookups in it, no longer find these queues.
 *
 *  @param conf   configuration; NULL or one without text is refused
 *  @param count  receives the number of queues, 0 when the call fails; NULL is refused
 *  @return new list, released with MqpdQueueList_Terminate(); NULL for a refused argument or a
 *          failed allocation; then the handle has lost the queues up to that point */
IA_EXPORT QueueList* MqpdQueueList_Initialize(FolderConf* conf, int32_t* count) IA_NOEXCEPT;

/** Releases a list from either source, with its names.
 *  @param list  list; NULL does nothing */
IA_EXPORT void CupsQueueList_Terminate(QueueList* list) IA_NOEXCEPT;

/** Does what CupsQueueList_Terminate() does.
 *  @param list  as in CupsQueueList_Terminate() */
IA_EXPORT void MqpdQueueList_Terminate(QueueList* list) IA_NOEXCEPT;

/** Returns the name of a queue in a list from either source.
 *  @param list   list; NULL has no queues
 *  @param index  index from 0
 *  @return borrowed name, valid until the list is released; NULL when the index is negative or not
 *  below the count */
IA_EXPORT const char* CupsQueueList_GetQueueName(const QueueList* list, int32_t index) IA_NOEXCEPT;

/** Returns the time at which a queue's PPD was modified.
 *  @param list   list from either source; NULL has no queues
 *  @param index  index from 0
 *  @return seconds since the epoch; 0 where unknown, and when the index is negative or not below
 *          the count */
IA_EXPORT int32_t CupsQueueList_GetQueueModifyTimeStamp(const QueueList* list,
                                                        int32_t index) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_QUEUE_LIST_H_ */

/* Queries a printer and prints the result as PPD options.
 *
 * usage: query DRIVER_FOLDER QUEUE DEVICE_INFO */
#include <stdio.h>
#include <stdlib.h>

#include "info_analyze/info_analyze.h"

static void PrintOptions(const OptionList* option) {
  for (; option != NULL; option = option->next) printf("%s=%s\n", option->key, option->value);
}

/* The library appends to a list that has a node, so the caller makes the first one. */
static int QueryPrinter(AnalyzeContext* analyzer) {
  OptionList* options = NULL;
  int32_t result;

  info_common_optlist_additem_front(&options, "", "");
  result = Analyze_Info_FromPrinter(analyzer, options, 0);
  if (result == 0) {
    PrintOptions(options->next);
  } else {
    fprintf(stderr, "query: the device documents cannot be read (%ld)\n", (long)result);
  }
  OptionList_Terminate(&options);
  return result == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

static int QueryQueue(BidiContext* bidi, const char* queue, const char* device_info) {
  AnalyzeContext* analyzer = Analyze_Create(bidi, queue, device_info);
  int status;

  if (analyzer == NULL) {
    fprintf(stderr, "query: queue %s has no PPD of this driver\n", queue);
    return EXIT_FAILURE;
  }
  status = QueryPrinter(analyzer);
  Analyze_Destroy(analyzer);
  return status;
}

int main(int argc, char** argv) {
  BidiContext* bidi;
  int status;

  if (argc != 4) {
    fprintf(stderr, "usage: query DRIVER_FOLDER QUEUE DEVICE_INFO\n");
    return EXIT_FAILURE;
  }
  bidi = Bidi_Create(argv[1]);
  if (bidi == NULL) {
    fprintf(stderr, "query: no communication library in %s\n", argv[1]);
    return EXIT_FAILURE;
  }
  status = QueryQueue(bidi, argv[2], argv[3]);
  Bidi_Destroy(bidi);
  return status;
}

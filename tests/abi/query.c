/* Prints a queue's options, and what the three functions under names of the C library answer. Every
 * function is looked up in the library itself, since the program may have one of the same name.
 * usage: query DRIVER_FOLDER QUEUE DOCUMENT_FOLDER */
#include <dlfcn.h>
#include <stdio.h>

#include "info_analyze/info_analyze.h"

static void* library;

static void* find(const char* name) {
  void* address = dlsym(library, name);
  if (address == NULL) fprintf(stderr, "%s is missing\n", name);
  return address;
}

#define FIND(name) __typeof__(&name) own_##name = (__typeof__(&name))find(#name)

static void print_libc_names(void) {
  typedef size_t (*Copying)(char*, const char*, size_t);
  typedef char* (*Searching)(const char*, const char*, int32_t);
  const Copying copy = (Copying)find("strlcpy");
  const Copying append = (Copying)find("strlcat");
  const Searching search = (Searching)find("strnstr");
  const char haystack[] = "ab\0cd";
  char buffer[4] = "";
  printf("strlcpy=%zu\n", copy(buffer, "abcdef", sizeof buffer));
  printf("strlcat=%zu\n", append(buffer, "x", sizeof buffer));
  printf("strnstr=%td\n", search(haystack, "cd", 5) - haystack);
}

static int print_options(const char* driver_folder, const char* queue, const char* documents) {
  FIND(Bidi_Create);
  FIND(Bidi_Destroy);
  FIND(Analyze_Create);
  FIND(Analyze_Destroy);
  FIND(Analyze_Info_FromPrinter);
  FIND(OptionList_Terminate);
  FIND(info_common_optlist_additem_front);
  BidiContext* bidi = own_Bidi_Create(driver_folder);
  AnalyzeContext* analyzer = own_Analyze_Create(bidi, queue, documents);
  OptionList* options = NULL;
  own_info_common_optlist_additem_front(&options, "", "");
  const int32_t status = own_Analyze_Info_FromPrinter(analyzer, options, 0);
  for (const OptionList* node = options; node != NULL; node = node->next) {
    printf("%s=%s\n", node->key, node->value);
  }
  own_OptionList_Terminate(&options);
  own_Analyze_Destroy(analyzer);
  own_Bidi_Destroy(bidi);
  return status;
}

int main(int argc, char** argv) {
  library = dlopen("libinfo_analyze.so.1", RTLD_NOW);
  if (library == NULL || argc != 4) return 2;
  print_libc_names();
  return print_options(argv[1], argv[2], argv[3]) == 0 ? 0 : 1;
}

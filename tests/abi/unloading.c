/* Loads and unloads the library again and again: each time it is really gone, and the process does
 * not grow. libcups leaks memory whenever it is unloaded, so it stays loaded.
 * usage: unloading LIBRARY ROUNDS */
#include <dlfcn.h>
#include <malloc.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

enum { kWarmUpRounds = 20 };

struct Size {
  size_t heap;
  long maps;
  long pages;
};

static long count_lines(const char* path) {
  FILE* file = fopen(path, "r");
  long lines = 0;
  for (int c = fgetc(file); c != EOF; c = fgetc(file)) lines += c == '\n';
  fclose(file);
  return lines;
}

static struct Size size_of_process(void) {
  struct Size size;
  long total = 0;
  FILE* file = fopen("/proc/self/statm", "r");
  if (fscanf(file, "%ld %ld", &total, &size.pages) != 2) abort();
  fclose(file);
  size.maps = count_lines("/proc/self/maps");
  size.heap = mallinfo2().uordblks;
  return size;
}

static int load_and_unload(const char* path) {
  void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  int32_t (*is_cache)(void) = (int32_t (*)(void))dlsym(library, "info_common_is_ppd_cache");
  if (is_cache == NULL || is_cache() != 0 || dlclose(library) != 0) return 1;
  return dlopen(path, RTLD_NOW | RTLD_NOLOAD) != NULL;
}

int main(int argc, char** argv) {
  if (argc != 3 || dlopen("libcups.so.2", RTLD_NOW) == NULL) return 2;
  const int rounds = atoi(argv[2]);
  struct Size before = size_of_process();
  for (int round = 0; round < kWarmUpRounds + rounds; ++round) {
    if (round == kWarmUpRounds) before = size_of_process();
    if (load_and_unload(argv[1]) != 0) {
      fprintf(stderr, "round %d: not loaded, or still there afterwards\n", round);
      return 1;
    }
  }
  const struct Size after = size_of_process();
  printf("heap %zu -> %zu bytes, maps %ld -> %ld, resident %ld -> %ld pages\n", before.heap,
         after.heap, before.maps, after.maps, before.pages, after.pages);
  return after.heap > before.heap || after.maps > before.maps || after.pages > before.pages;
}

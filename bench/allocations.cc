#include "bench/allocations.h"

namespace {

thread_local std::size_t allocations = 0;

}  // namespace

std::size_t ia_bench::AllocationsSoFar() { return allocations; }

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
char* __real_strdup(const char* text);
char* __real_strndup(const char* text, std::size_t size);

void* __wrap_malloc(std::size_t size) {
  ++allocations;
  return __real_malloc(size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  ++allocations;
  return __real_calloc(count, size);
}

void* __wrap_realloc(void* block, std::size_t size) {
  ++allocations;
  return __real_realloc(block, size);
}

char* __wrap_strdup(const char* text) {
  ++allocations;
  return __real_strdup(text);
}

char* __wrap_strndup(const char* text, std::size_t size) {
  ++allocations;
  return __real_strndup(text, size);
}

}  // extern "C"

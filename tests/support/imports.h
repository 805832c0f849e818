// The slots through which a loaded library calls functions of others, so that a test can put
// functions of its own there, for that library alone.
#ifndef TESTS_SUPPORT_IMPORTS_H_
#define TESTS_SUPPORT_IMPORTS_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace ia_test {

struct LoadedLibrary {
  std::string path;
  std::uintptr_t base = 0;
  std::uintptr_t end = 0;
  std::uintptr_t dynamic = 0;  // address of its dynamic section
};

// The one whose file has this name. Ends the process when it is not loaded.
LoadedLibrary FindLoaded(std::string_view file_name);

// Calls the function for each import of the library, by its name. What the function returns takes
// the import's place, unless it is null. Returns how many slots were replaced.
std::size_t ReplaceImports(const LoadedLibrary& library,
                           const std::function<void*(std::string_view)>& replacement_of);

}  // namespace ia_test

#endif  // TESTS_SUPPORT_IMPORTS_H_

# What the build needs, checked before anything is compiled. Each failure names the Debian package
# to install and the options that do without it.

# info_analyze_find(package version purpose debian_packages [option...])
# Like find_package(); an empty version takes any. The options are those that need the package.
macro(info_analyze_find package version purpose debian_packages)
  find_package(${package} ${version} QUIET)
  if(NOT ${package}_FOUND)
    info_analyze_report_missing("${package} ${version}" "${purpose}" "${debian_packages}" ${ARGN})
  endif()
endmacro()

function(info_analyze_report_missing package purpose debian_packages)
  string(STRIP "${package}" package)
  set(remedy "install ${debian_packages}")
  set(conjunction " or pass")
  foreach(option IN LISTS ARGN)
    if(${option})
      string(APPEND remedy "${conjunction} -D${option}=OFF")
      set(conjunction "")
    endif()
  endforeach()
  message(FATAL_ERROR "info_analyze needs ${package} for ${purpose}: ${remedy}")
endfunction()

set(info_analyze_oldest_GNU 12)
set(info_analyze_oldest_Clang 14)

function(info_analyze_check_compiler)
  set(oldest ${info_analyze_oldest_${CMAKE_CXX_COMPILER_ID}})
  if(oldest AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS oldest)
    set(found "${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}")
    message(FATAL_ERROR
      "info_analyze needs GCC ${info_analyze_oldest_GNU} or Clang ${info_analyze_oldest_Clang}, and "
      "${CMAKE_CXX_COMPILER} is ${found}: install g++-${info_analyze_oldest_GNU} or "
      "clang-${info_analyze_oldest_Clang} and name it by -DCMAKE_CXX_COMPILER")
  endif()
  # Clang takes the C++ library of whichever GCC is installed.
  check_cxx_source_compiles("
    #include <version>
    #if !defined(__cpp_constinit) || !defined(__cpp_lib_ranges) || !defined(__cpp_lib_span)
    #error
    #endif
    int main() {}" INFO_ANALYZE_HAS_CXX20)
  if(NOT INFO_ANALYZE_HAS_CXX20)
    message(FATAL_ERROR
      "info_analyze needs constinit, <ranges> and <span> of C++20, which ${CMAKE_CXX_COMPILER} "
      "lacks: install libstdc++-${info_analyze_oldest_GNU}-dev or a newer compiler")
  endif()
endfunction()

function(info_analyze_check_fuzzing)
  set(CMAKE_REQUIRED_FLAGS -fsanitize=fuzzer-no-link)
  set(CMAKE_REQUIRED_LINK_OPTIONS -fsanitize=fuzzer)
  check_cxx_source_compiles("
    extern \"C\" int LLVMFuzzerTestOneInput(const unsigned char*, decltype(sizeof 0)) { return 0; }"
    INFO_ANALYZE_HAS_LIBFUZZER)
  if(NOT INFO_ANALYZE_HAS_LIBFUZZER)
    info_analyze_report_missing("Clang with libFuzzer" "the fuzzers"
      "clang and libfuzzer-${info_analyze_oldest_Clang}-dev" INFO_ANALYZE_FUZZERS)
  endif()
endfunction()

include(CheckCXXSourceCompiles)
info_analyze_check_compiler()
if(INFO_ANALYZE_FUZZERS)
  info_analyze_check_fuzzing()
endif()

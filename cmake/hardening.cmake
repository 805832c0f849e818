# How code that is shipped is compiled and linked. Sets for this project:
#   info_analyze_is_optimised  every configuration compiles with -O2 or more, whatever its name is:
#                              hardening is on
#   info_analyze_is_shipped    optimised and not instrumented: the library has to do without the C++
#                              run-time library
include(CheckCXXSourceCompiles)

# All flags that a configuration compiles with, those of parent projects included.
function(info_analyze_flags configuration result)
  string(TOUPPER "${configuration}" configuration)
  get_directory_property(options COMPILE_OPTIONS)
  get_directory_property(definitions COMPILE_DEFINITIONS)
  string(JOIN " " flags
    "" ${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${configuration}} ${options} ${definitions})
  set(${result} "${flags}" PARENT_SCOPE)
endfunction()

# The last level counts, and -O1, -Og or none at all leave calls of the C++ run-time library.
function(info_analyze_check_optimisation configurations result)
  set(${result} ON PARENT_SCOPE)
  foreach(configuration IN LISTS configurations)
    info_analyze_flags(${configuration} flags)
    string(REGEX MATCHALL " -O[^ ]*" levels "${flags}")
    list(POP_BACK levels level)
    if(NOT level MATCHES "^ -O([23sz]|fast)$")
      set(${result} OFF PARENT_SCOPE)
    endif()
  endforeach()
endfunction()

# Distributions and compilers that define it have their reasons for the level.
function(info_analyze_check_fortification flags result)
  if(flags MATCHES "_FORTIFY_SOURCE")
    set(${result} ON PARENT_SCOPE)
    return()
  endif()
  set(CMAKE_REQUIRED_FLAGS -O2)
  check_cxx_source_compiles("
    #ifndef _FORTIFY_SOURCE
    #error
    #endif
    int main() {}" INFO_ANALYZE_COMPILER_FORTIFIES)
  set(${result} ${INFO_ANALYZE_COMPILER_FORTIFIES} PARENT_SCOPE)
endfunction()

# Which flags there are depends on the compiler and on the processor.
function(info_analyze_accepted_flags result)
  set(accepted "")
  foreach(flag IN LISTS ARGN)
    string(MAKE_C_IDENTIFIER "INFO_ANALYZE_ACCEPTS${flag}" known)
    set(CMAKE_REQUIRED_FLAGS ${flag})
    # Clang only warns of a flag that it ignores.
    check_cxx_source_compiles("int main() {}" ${known} FAIL_REGEX "'${flag}'")
    if(${known})
      list(APPEND accepted ${flag})
    endif()
  endforeach()
  set(${result} "${accepted}" PARENT_SCOPE)
endfunction()

function(info_analyze_list_configurations result)
  set(configurations ${CMAKE_CONFIGURATION_TYPES})
  if(NOT configurations)
    set(configurations ${CMAKE_BUILD_TYPE})
  endif()
  if(NOT configurations)
    set(configurations None)  # it has the flags of all configurations and none of its own
  endif()
  set(${result} ${configurations} PARENT_SCOPE)
endfunction()

function(info_analyze_harden_all configuration)
  info_analyze_accepted_flags(accepted
    -fstack-protector-strong -fstack-clash-protection -fcf-protection=full
    -mbranch-protection=standard)
  add_compile_options(${accepted})
  info_analyze_flags(${configuration} flags)
  info_analyze_check_fortification("${flags}" is_fortified)
  if(NOT is_fortified)
    add_compile_definitions(_FORTIFY_SOURCE=2)
  endif()
  add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endfunction()

function(info_analyze_decide)
  info_analyze_list_configurations(configurations)
  info_analyze_check_optimisation("${configurations}" is_optimised)
  list(GET configurations 0 configuration)
  info_analyze_flags(${configuration} flags)
  set(is_shipped ${is_optimised})
  if(INFO_ANALYZE_COVERAGE OR flags MATCHES "-fsanitize|--coverage|-fprofile-arcs")
    set(is_shipped OFF)
  endif()
  if(is_optimised)
    info_analyze_harden_all(${configuration})
  endif()
  set(info_analyze_is_optimised ${is_optimised} PARENT_SCOPE)
  set(info_analyze_is_shipped ${is_shipped} PARENT_SCOPE)
endfunction()

# info_analyze_harden(objects library): see info_analyze_is_shipped.
function(info_analyze_harden objects library)
  # Failing assertions of the C++ library call the run-time library. -Wp also undoes -Wp,-D, which
  # some distributions pass.
  target_compile_options(${objects} PRIVATE -Wp,-U_GLIBCXX_ASSERTIONS)
  # Debug information is for the gate on types and is not installed. It does not name the folder, so
  # that a dump is the same wherever it is made.
  target_compile_options(${objects} PRIVATE -g "-fdebug-prefix-map=${PROJECT_SOURCE_DIR}=.")
  # Linked by the C driver, a need of the C++ run-time library is a link error.
  target_link_options(${library} PRIVATE -Wl,-z,defs)
  set_target_properties(${library} PROPERTIES LINKER_LANGUAGE C)
endfunction()

info_analyze_decide()

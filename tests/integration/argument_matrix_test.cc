// Every function of the library with every pointer null in turn and every number at its limits,
// each call in a process of its own that must end by itself.
#include <cups/file.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "info_analyze/info_analyze.h"
#include "info_analyze/libc_names.h"
#include "tests/integration/sample_setting.h"
#include "tests/support/build_folders.h"

// An allocation that is too large returns null, as without sanitizers.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }

namespace ia_test {
namespace {

// Arguments that every function can work with --------------------------------------------------

constexpr std::size_t kBlockBytes = 4096;  // that each pointer to a plain type points to

// Zeros, which are an empty record of any type.
template <class T>
T* Zeros() {
  return static_cast<T*>(std::calloc(1, kBlockBytes));
}

AnalyzeContext* NewAnalyzer() {
  const SampleSetting& setting = SampleSetting::Get();
  AnalyzeContext* context = Analyze_Create(setting.bidi(), kQueue, setting.document_folder());
  analyze_common_create_all_xmldata(context);
  return context;
}

template <class T>
T Fitting() {
  using Bare = std::remove_const_t<std::remove_pointer_t<T>>;
  if constexpr (std::is_same_v<T, std::intptr_t>) {
    return 0;  // some words are addresses to the communication library
  } else if constexpr (!std::is_pointer_v<T>) {
    return T{1};
  } else if constexpr (std::is_same_v<T, const char*>) {
    return kQueue;
  } else if constexpr (std::is_same_v<Bare, AnalyzeContext>) {
    return NewAnalyzer();
  } else if constexpr (std::is_same_v<Bare, BidiContext>) {
    return SampleSetting::Get().bidi();
  } else if constexpr (std::is_same_v<Bare, BidiLibrary>) {
    return z_LoadBidiLibrary(
        (std::string(ia_test::kReferenceDriver) + "/Bidi/libmqpd_util.so").c_str());
  } else if constexpr (std::is_same_v<Bare, QvXmlReader>) {
    return NewAnalyzer()->documents[IA_DOCUMENT_FINISHER_LIST].xml;
  } else if constexpr (std::is_same_v<Bare, QvXmlWriter>) {
    return Bidi_qvxmlwrapSet_New(SampleSetting::Get().bidi());
  } else if constexpr (std::is_same_v<Bare, OptTable>) {
    return info_common_optlist_create(kQueue);
  } else if constexpr (std::is_same_v<Bare, OptTable*>) {
    auto** const cursor = Zeros<OptTable*>();
    *cursor = info_common_optlist_create(kQueue);
    return cursor;
  } else if constexpr (std::is_same_v<Bare, FlagInfo>) {
    return zflaginfo_init("flags", 8);
  } else if constexpr (std::is_same_v<Bare, LongValList>) {
    return info_common_convert_hex_string_to_long_val_list("1,2,3");
  } else if constexpr (std::is_same_v<Bare, _cups_file_s>) {
    return cupsFileOpen("/dev/null", "r");
  } else if constexpr (std::is_same_v<Bare, XmlKeyDescriptor>) {
    static std::int32_t number = 0;
    static const XmlKeyDescriptor key{
        IA_DOCUMENT_ACCESSORIES, "hd", IA_KEY_LONG, &number, nullptr, nullptr, nullptr};
    return &key;
  } else {
    return Zeros<Bare>();
  }
}

// Arguments at the limits -----------------------------------------------------------------------

// A number that follows a pointer may be the size of what it points to.
template <class T, class Before>
std::vector<T> Limits() {
  if constexpr (std::is_pointer_v<T>) {
    return {nullptr};
  } else if constexpr (std::is_same_v<T, std::intptr_t>) {
    return {};
  } else if constexpr (std::is_floating_point_v<T>) {
    return {0, -1, std::numeric_limits<T>::infinity(), std::nan("")};
  } else if constexpr (std::is_same_v<T, std::size_t>) {
    return {0, 1, kBlockBytes};
  } else {
    using Limit = std::numeric_limits<T>;
    std::vector<T> limits = {Limit::min(), static_cast<T>(-1), T{0}, T{1}, Limit::max()};
    if constexpr (std::is_pointer_v<Before> && !std::is_same_v<Before, const char*> &&
                  !std::is_same_v<Before, AnalyzeContext*>) {
      std::erase_if(limits, [](T limit) { return limit > T{1}; });
    }
    return limits;
  }
}

// The numbers that are the length of the list or text two places before.
bool IsCountOfEarlierList(const std::string& function, std::size_t place) {
  return (function == "zStringExistenceCheck" || function == "strnstr") && place == 2;
}

// Calls -----------------------------------------------------------------------------------------

template <class Call>
void ExpectToEnd(const std::string& what, Call call) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    alarm(60);
    call();
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << what << ", status " << status;
}

int calls = 0;

template <class... Parameters>
class Matrix {
 public:
  template <class Function>
  static void Run(const char* name, Function function) {
    RunPlaces(name, function, std::index_sequence_for<Parameters...>());
  }

 private:
  using Arguments = std::tuple<Parameters...>;

  template <std::size_t kPlace>
  using Before = std::tuple_element_t<(kPlace > 0 ? kPlace - 1 : 0), Arguments>;

  template <class Function, std::size_t... kPlaces>
  static void RunPlaces(const char* name, Function function, std::index_sequence<kPlaces...>) {
    ExpectToEnd(std::string(name) + " of nothing", [&] { function(Parameters{}...); });
    ++calls;
    (RunPlace<kPlaces>(name, function), ...);
  }

  template <std::size_t kPlace, class Function>
  static void RunPlace(const std::string& name, Function function) {
    using Parameter = std::tuple_element_t<kPlace, Arguments>;
    for (const Parameter limit : Limits<Parameter, Before<kPlace>>()) {
      if constexpr (std::is_same_v<Parameter, std::int32_t>) {
        if (IsCountOfEarlierList(name, kPlace) && limit > 1) continue;
      }
      const std::string what = name + ", argument " + std::to_string(kPlace + 1);
      ExpectToEnd(what, [&] {
        Arguments arguments{Fitting<Parameters>()...};
        std::get<kPlace>(arguments) = limit;
        std::apply(function, arguments);
      });
      ++calls;
    }
  }
};

template <class Result, class... Parameters>
void Check(const char* name, Result (*function)(Parameters...) noexcept) {
  Matrix<Parameters...>::Run(name, function);
}

template <class Result, class... Parameters>
void Check(const char* name, Result (*function)(Parameters..., ...) noexcept) {
  Matrix<Parameters...>::Run(
      name, [function](Parameters... parameters) { return function(parameters...); });
}

// The functions of the version script, each with a case.
TEST(ArgumentMatrix, EveryCallEnds) {
  SampleSetting::Get();
  int functions = 0;
#define IA_FUNCTION(name) \
  Check(#name, &name);    \
  ++functions;
#define strlcpy info_strlcpy
#define strlcat info_strlcat
#define strnstr info_strnstr
#include "exported_functions.inc"
  std::cout << calls << " calls of " << functions << " functions\n";
  EXPECT_GT(functions, 200);
}

}  // namespace
}  // namespace ia_test

// Owners of what the library returns, each with the function that releases it.
#ifndef INFO_ANALYZE_CLI_PRINTER_HANDLES_H_
#define INFO_ANALYZE_CLI_PRINTER_HANDLES_H_

#include <cstdlib>
#include <memory>
#include <new>

#include "info_analyze/info_analyze.h"

namespace ia::cli {

template <auto kRelease>
struct Releaser {
  template <class T>
  void operator()(T* object) const noexcept {
    kRelease(object);
  }
};

struct OptionListReleaser {
  void operator()(OptionList* list) const noexcept { OptionList_Terminate(&list); }
};

using TextPtr = std::unique_ptr<char, Releaser<std::free>>;
using BidiPtr = std::unique_ptr<BidiContext, Releaser<Bidi_Destroy>>;
using AnalyzerPtr = std::unique_ptr<AnalyzeContext, Releaser<Analyze_Destroy>>;
using ConfPtr = std::unique_ptr<FolderConf, Releaser<FolderPathForConf_Terminate>>;
using QueueListPtr = std::unique_ptr<QueueList, Releaser<CupsQueueList_Terminate>>;
using OptionListPtr = std::unique_ptr<OptionList, OptionListReleaser>;

// The library appends to lists that have a node, so a list starts with an empty one.
[[nodiscard]] inline OptionListPtr StartOptionList() {
  OptionList* list = nullptr;
  info_common_optlist_additem_front(&list, "", "");
  if (list == nullptr) throw std::bad_alloc();
  return OptionListPtr(list);
}

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_HANDLES_H_

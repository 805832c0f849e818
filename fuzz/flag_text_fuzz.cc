// Any lines as flag texts, read into one store. The first line is the store's capacity.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/input.h"
#include "info_analyze/flag_info.h"
#include "tests/info_common/guarded_buffer.h"

namespace {

constexpr std::size_t kLongest = 1024;    // each flag is found by walking the store
constexpr std::int32_t kMaxFlags = 1024;  // as many as an analyser's stores hold

struct StoreDeleter {
  void operator()(FlagInfo* store) const { zflaginfo_term(store); }
};
using Store = std::unique_ptr<FlagInfo, StoreDeleter>;

using Flags = std::vector<std::pair<std::string, std::string>>;

void Put(Flags& flags, std::size_t capacity, std::string_view name, std::string_view value) {
  const auto known =
      std::ranges::find_if(flags, [&](const auto& flag) { return flag.first == name; });
  if (known != flags.end()) {
    known->second = value;
  } else if (flags.size() < capacity) {
    flags.emplace_back(name, value);
  }
}

void PutAll(Flags& flags, std::size_t capacity, std::string_view text) {
  while (!text.empty()) {
    std::string_view item = text.substr(0, text.find(','));
    text.remove_prefix(std::min(item.size() + 1, text.size()));
    item.remove_prefix(std::min(item.find_first_not_of(':'), item.size()));
    const std::size_t colon = item.find(':');
    const std::string_view name = item.substr(0, colon);
    const std::string_view value = colon != item.npos ? item.substr(colon + 1) : "";
    if (!name.empty()) Put(flags, capacity, name, value);
  }
}

void Compare(const FlagInfo* store, const Flags& flags) {
  ia_fuzz::Require(store->count == static_cast<std::int32_t>(flags.size()));
  for (const auto& [name, value] : flags) {
    const FlagPair* const found = zflaginfo_find(store, ia_test::ExactText(name).get());
    ia_fuzz::Require(found != nullptr && found->name == name && found->value == value);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ia_fuzz::Input input(data, std::min(size, kLongest));
  const std::int32_t capacity = std::min(input.TakeNumber(), kMaxFlags);
  const Store store(zflaginfo_init("flags", capacity));
  ia_fuzz::Require((store == nullptr) == (capacity < 0));
  if (!store) return 0;
  Flags flags;
  while (!input.IsEmpty()) {
    const std::string_view text = input.TakeText();
    ia_fuzz::Require(zflaginfo_get(ia_test::ExactText(text).get(), store.get()) == 0);
    PutAll(flags, static_cast<std::size_t>(capacity), text);
  }
  Compare(store.get(), flags);
  return 0;
}

// A flag text that fills a store, and stores of it.
#ifndef BENCH_SAMPLE_FLAGS_H_
#define BENCH_SAMPLE_FLAGS_H_

#include <cstdlib>
#include <memory>
#include <string>

#include "info_analyze/flag_info.h"

namespace ia_bench {

inline constexpr int kFlags = 1024;

inline std::string FlagName(int number) { return "Flag" + std::to_string(10'000 + number); }

inline std::string FlagText() {
  std::string text;
  for (int i = 0; i < kFlags; ++i) text += FlagName(i) + ":" + std::to_string(i) + ",";
  return text;
}

struct FlagStoreDeleter {
  void operator()(FlagInfo* store) const { zflaginfo_term(store); }
};
using FlagStore = std::unique_ptr<FlagInfo, FlagStoreDeleter>;

inline FlagStore FillFlagStore(const std::string& text) {
  FlagStore store(zflaginfo_init("QVAnlz_InputTray", kFlags));
  if (zflaginfo_get(text.c_str(), store.get()) != 0 || store->count != kFlags) std::abort();
  return store;
}

}  // namespace ia_bench

#endif  // BENCH_SAMPLE_FLAGS_H_

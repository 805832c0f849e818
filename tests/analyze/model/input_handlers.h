// Calls the handlers of paper-source options as the update of the tray list does.
#ifndef TESTS_ANALYZE_MODEL_INPUT_HANDLERS_H_
#define TESTS_ANALYZE_MODEL_INPUT_HANDLERS_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/model_options.h"

namespace ia_test {

using Text = std::optional<std::string>;
using Trays = std::vector<TrayEntry>;

inline Text TextOf(const char* text) { return text != nullptr ? Text(text) : std::nullopt; }

inline std::string Shown(const Text& text) { return text ? '"' + *text + '"' : "null"; }

// What a handler appends.
struct OptionRow {
  Text keyword;
  Text value;
  Text default_value;
  bool operator==(const OptionRow&) const = default;
};
using OptionRows = std::vector<OptionRow>;

inline void PrintTo(const OptionRow& row, std::ostream* out) {
  *out << "{" << Shown(row.keyword) << ", " << Shown(row.value) << ", default "
       << Shown(row.default_value) << "}";
}

// Names and values of flags. No PPD makes null ones.
using Flags = std::vector<std::pair<Text, Text>>;

// A full flag store.
class FlagStore {
 public:
  explicit FlagStore(Flags flags) : flags_(std::move(flags)) {
    for (auto& [name, value] : flags_) entries_.push_back({DataOf(name), DataOf(value)});
    const auto count = static_cast<std::int32_t>(entries_.size());
    store_ = {entries_.data(), count, count};
  }
  FlagStore(const FlagStore&) = delete;
  FlagStore& operator=(const FlagStore&) = delete;

  FlagInfo* get() { return &store_; }

 private:
  static char* DataOf(Text& text) { return text ? text->data() : nullptr; }

  Flags flags_;
  std::vector<FlagPair> entries_;
  FlagInfo store_;
};

// The rows handed to a handler: some in use already, and room for those that it may append.
// Releases what is appended.
class RowArray {
 public:
  static constexpr std::int32_t kInUse = 2;

  explicit RowArray(std::size_t tray_count) : rows_(kInUse + tray_count + 3) {
    for (std::int32_t i = 0; i < kInUse; ++i) At(i).keyword = kUsed;
  }
  ~RowArray() {
    for (std::size_t i = kInUse; i < rows_.size(); ++i) {
      std::free(const_cast<char*>(rows_[i].keyword));
      std::free(rows_[i].value);
    }
  }
  RowArray(const RowArray&) = delete;
  RowArray& operator=(const RowArray&) = delete;

  OptionSetter* data() { return rows_.data(); }
  OptionSetter& At(std::int32_t index) { return rows_[static_cast<std::size_t>(index)]; }

  // The rows up to the count. The others must be as they were.
  OptionRows Appended() const {
    EXPECT_GE(count, kInUse);
    EXPECT_LE(static_cast<std::size_t>(count), rows_.size());
    OptionRows appended;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const OptionSetter& row = rows_[i];
      EXPECT_EQ(row.getter, nullptr) << "row " << i;
      EXPECT_EQ(row.getter_arg, nullptr) << "row " << i;
      const OptionRow texts{TextOf(row.keyword), TextOf(row.value), TextOf(row.default_value)};
      if (i < kInUse) {
        EXPECT_EQ(texts, (OptionRow{kUsed, {}, {}})) << "row " << i;
      } else if (i < static_cast<std::size_t>(std::max(count, 0))) {
        appended.push_back(texts);
      } else {
        EXPECT_EQ(texts, OptionRow{}) << "row " << i;
      }
    }
    return appended;
  }

  std::int32_t count = kInUse;

 private:
  static constexpr const char* kUsed = "used";

  std::vector<OptionSetter> rows_;
};

// An analyser with a model and flags, and nothing else.
class InputHandlers : public testing::Test {
 protected:
  void SetFlags(FlagInfo* AnalyzeContext::* store, Flags flags) {
    stores_.push_back(std::make_unique<FlagStore>(std::move(flags)));
    context_.*store = stores_.back()->get();
  }

  // What a handler, which must succeed, appends for these trays.
  OptionRows Appended(InputOptionHandler handler, const Trays& trays,
                      std::int32_t extra_trays = 0) {
    const auto exact = Copied(trays);
    RowArray rows(trays.size());
    EXPECT_EQ(
        handler(&context_, exact.get(), CountOf(trays), extra_trays, rows.data(), &rows.count), 0);
    return rows.Appended();
  }

  // What all handlers of a driver model append.
  OptionRows AppendedFor(const char* model, const Trays& trays) {
    std::string name = model;
    context_.driver_name = name.data();
    const auto exact = Copied(trays);
    RowArray rows(trays.size());
    analyze_GetInputOptions(&context_, exact.get(), CountOf(trays), ExtraTraysOf(trays),
                            rows.data(), &rows.count);
    context_.driver_name = nullptr;
    return rows.Appended();
  }

  static std::int32_t ExtraTraysOf(const Trays& trays) {
    return static_cast<std::int32_t>(
        std::count_if(trays.begin(), trays.end(),
                      [](const TrayEntry& tray) { return tray.type == 3 || tray.type == 6; }));
  }

  AnalyzeContext context_ = {};

 private:
  static std::int32_t CountOf(const Trays& trays) {
    return static_cast<std::int32_t>(trays.size());
  }
  // A block of exactly this length, also when there are none: the array of trays is never null.
  static std::unique_ptr<TrayEntry[]> Copied(const Trays& trays) {
    auto copy = std::make_unique<TrayEntry[]>(trays.size());
    std::copy(trays.begin(), trays.end(), copy.get());
    return copy;
  }

  std::vector<std::unique_ptr<FlagStore>> stores_;
};

// Trays with one field set.
inline TrayEntry OfAlias(std::int32_t alias) { return {0, alias, 0, 0}; }
inline TrayEntry OfType(std::int32_t type) { return {type, 0, 0, 0}; }

}  // namespace ia_test

#endif  // TESTS_ANALYZE_MODEL_INPUT_HANDLERS_H_

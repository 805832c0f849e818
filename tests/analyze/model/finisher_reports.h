// Finishers as a device reports them, and the results of the handlers of finisher options.
#ifndef TESTS_ANALYZE_MODEL_FINISHER_REPORTS_H_
#define TESTS_ANALYZE_MODEL_FINISHER_REPORTS_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/model_options.h"

namespace ia_test {

using Value = std::optional<std::string>;

struct Unit {
  std::int32_t bins;
  std::optional<std::string> name;
};
using Units = std::vector<Unit>;
using Aliases = std::vector<std::int32_t>;

// The units as the handlers get them: in blocks of exactly their length, never null.
class FinisherReport {
 public:
  FinisherReport(Units units, const Aliases& aliases)
      : units_(std::move(units)),
        finishers_(std::make_unique<FinisherEntry[]>(units_.size())),
        aliases_(std::make_unique<std::int32_t[]>(aliases.size())),
        alias_count_(static_cast<std::int32_t>(aliases.size())) {
    std::transform(units_.begin(), units_.end(), finishers_.get(), [](Unit& unit) {
      return FinisherEntry{unit.bins, unit.name ? unit.name->data() : nullptr};
    });
    std::copy(aliases.begin(), aliases.end(), aliases_.get());
  }

  const FinisherEntry* finishers() const { return finishers_.get(); }
  std::int32_t count() const { return static_cast<std::int32_t>(units_.size()); }
  const std::int32_t* aliases() const { return aliases_.get(); }
  std::int32_t alias_count() const { return alias_count_; }

 private:
  Units units_;
  std::unique_ptr<FinisherEntry[]> finishers_;
  std::unique_ptr<std::int32_t[]> aliases_;
  std::int32_t alias_count_;
};

// Three neighbouring rows, as the dispatch hands them out; only values ever change.
class FinisherRows {
 public:
  ~FinisherRows() {
    for (OptionSetter& row : rows_) std::free(row.value);
  }
  FinisherRows() = default;
  FinisherRows(const FinisherRows&) = delete;
  FinisherRows& operator=(const FinisherRows&) = delete;

  OptionSetter* get() { return rows_.data(); }

  std::vector<Value> values() const {
    std::vector<Value> values;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const OptionSetter& row = rows_[i];
      values.push_back(row.value != nullptr ? Value(row.value) : std::nullopt);
      EXPECT_EQ(row.keyword, empty_rows_[i].keyword);
      EXPECT_EQ(row.default_value, empty_rows_[i].default_value);
      EXPECT_EQ(row.getter, nullptr);
      EXPECT_EQ(row.getter_arg, nullptr);
    }
    return values;
  }

 private:
  const std::array<OptionSetter, 3> empty_rows_ = {{
      {"QVFinisher", nullptr, nullptr, nullptr, "None"},
      {"QVCopyTray", nullptr, nullptr, nullptr, "None"},
      {"QVFinTray", nullptr, nullptr, nullptr, "None"},
  }};
  std::array<OptionSetter, 3> rows_ = empty_rows_;
};

// An analyser of whose PPD only the finisher names are known.
class FinisherAnalyzer {
 public:
  // Null: memory was short when the names were to be read.
  explicit FinisherAnalyzer(const char* names) {
    if (names == nullptr) return;
    context_.finisher_name_flags = zflaginfo_init("QVAnlz_FinisherName", 1024);
    zflaginfo_get(names, context_.finisher_name_flags);
  }
  ~FinisherAnalyzer() { zflaginfo_term(context_.finisher_name_flags); }
  FinisherAnalyzer(const FinisherAnalyzer&) = delete;
  FinisherAnalyzer& operator=(const FinisherAnalyzer&) = delete;

  AnalyzeContext* get() { return &context_; }

 private:
  AnalyzeContext context_ = {};
};

// Gives every unit of this maker, in three cases of its name, the value "BYNAME".
inline constexpr char kMakersNames[] = "Vorel:BYNAME,vorel:BYNAME,VOREL:BYNAME";

// The value that a handler's row has after decide(context, report, row), which succeeds and leaves
// the rows beside it alone.
template <class Decide>
Value ValueAfter(const FinisherReport& report, const char* names, Decide decide) {
  FinisherAnalyzer analyzer(names);
  FinisherRows rows;
  EXPECT_EQ(decide(analyzer.get(), report, rows.get() + 1), 0);
  const std::vector<Value> values = rows.values();
  EXPECT_EQ(values[0], std::nullopt);
  EXPECT_EQ(values[2], std::nullopt);
  return values[1];
}

inline Value ValueBy(FinisherOptionHandler handler, const Units& units, const Aliases& aliases,
                     const char* names = kMakersNames) {
  return ValueAfter(FinisherReport(units, aliases), names,
                    [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                      return handler(context, report.finishers(), report.count(), report.aliases(),
                                     report.alias_count(), row);
                    });
}

}  // namespace ia_test

#endif  // TESTS_ANALYZE_MODEL_FINISHER_REPORTS_H_

// Real documents with lists, for tests of the update handlers.
#ifndef TESTS_ANALYZE_LIST_UPDATES_H_
#define TESTS_ANALYZE_LIST_UPDATES_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "info_analyze/analyzer.h"
#include "info_analyze/printer_updates.h"
#include "tests/support/build_folders.h"
#include "tests/support/option_lists.h"
#include "tests/support/recording_library.h"

namespace ia_test {

using Handler = decltype(&z_Update_Prn_bin_list);

// Values of a document, one after the other -------------------------------------------------------

inline std::string Number(const std::string& key, std::int32_t number) {
  return "<long key=\"" + key + "\">" + std::to_string(number) + "</long>";
}

inline std::string Text(const std::string& key, const std::string& text) {
  return "<string key=\"" + key + "\">" + text + "</string>";
}

// Elements without value are present, but of a type that is not requested.
using Numbers = std::vector<std::optional<std::int32_t>>;
using Texts = std::vector<std::optional<std::string>>;

inline std::string NumberArray(const std::string& key, const Numbers& numbers) {
  std::string array = "<array key=\"" + key + "\">";
  for (const auto& number : numbers) {
    array += number ? "<long>" + std::to_string(*number) + "</long>" : "<string>101</string>";
  }
  return array + "</array>";
}

inline std::string TextArray(const std::string& key, const Texts& texts) {
  std::string array = "<array key=\"" + key + "\">";
  for (const auto& text : texts) {
    array += text ? "<string>" + *text + "</string>" : "<long>1</long>";
  }
  return array + "</array>";
}

inline std::string Document(const std::string& values) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<document version=\"1\">" + values +
         "</document>\n";
}

// Each item is its values.
using Items = std::vector<std::string>;

inline std::string ListDocument(const Items& items) {
  std::string values;
  for (const std::string& item : items) values += "<dict key=\"list\">" + item + "</dict>";
  return Document(values);
}

// What a handler answers and appends to an empty list.
struct Outcome {
  std::int32_t result;
  Entries entries;
  bool operator==(const Outcome&) const = default;
};

inline void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << outcome.result << " " << testing::PrintToString(outcome.entries);
}

inline Outcome OutcomeOf(Handler handler, AnalyzeContext& context) {
  CallersList list;
  const std::int32_t result = handler(&context, list.get());
  return {result, list.entries()};
}

// `entries` with these values in place of their own.
inline Entries With(Entries entries, const Entries& values) {
  for (const Entry& value : values) {
    bool is_known = false;
    for (Entry& entry : entries) {
      if (entry.first != value.first) continue;
      entry.second = value.second;
      is_known = true;
    }
    EXPECT_TRUE(is_known) << value.first;
  }
  return entries;
}

// An analyser whose documents are parsed by the communication library of the driver package.
class ListUpdates : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr) << ia_test::kReferenceDriver;
    context_.bidi = bidi_.get();
  }
  void TearDown() override { analyze_common_destroy_all_xmldata(&context_); }

  void LoadDocument(std::int32_t index, const std::string& document,
                    const char* list_key = "list") {
    analyze_common_destroy_xmldata(&context_, index);
    ASSERT_EQ(
        analyze_common_initialize_xmldata(&context_, index, document.data(),
                                          static_cast<std::int32_t>(document.size()), list_key),
        0);
    ASSERT_NE(context_.documents[index].xml, nullptr) << document.substr(0, 1000);
  }

  void Load(std::int32_t index, const Items& items) {
    LoadDocument(index, ListDocument(items));
    ASSERT_EQ(context_.documents[index].count, static_cast<std::int32_t>(items.size()));
  }

  // What a handler appends to an empty list; it succeeds.
  Entries Appended(Handler handler) {
    Outcome outcome = OutcomeOf(handler, context_);
    EXPECT_EQ(outcome.result, 0);
    return outcome.entries;
  }

  BidiPtr bidi_{Bidi_Create(ia_test::kReferenceDriver)};
  AnalyzeContext context_ = {};
};

// An analyser whose communication library gives scripted answers, false ones included.
class LyingLists : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr);
    context_.bidi = bidi_.get();
  }
  void TearDown() override {
    analyze_common_destroy_all_xmldata(&context_);
    EXPECT_EQ(recording_.faults, std::vector<std::string>());
  }

  // The document's list has as many items as `document` says, all alike.
  void Load(std::int32_t index, ScriptedDocument document) {
    analyze_common_destroy_xmldata(&context_, index);
    recording_.documents["document"] = std::move(document);
    ASSERT_EQ(analyze_common_initialize_xmldata(&context_, index, "document", 8, "list"), 0);
    recording_.calls.clear();
  }

  // Runs without recording, in which a document is there but every value missing.
  Outcome RunUnrecorded(Handler handler) {
    AttachRecording(nullptr);
    Outcome outcome = OutcomeOf(handler, context_);
    AttachRecording(&recording_);
    return outcome;
  }

  Entries Appended(Handler handler) {
    Outcome outcome = OutcomeOf(handler, context_);
    EXPECT_EQ(outcome.result, 0);
    return outcome.entries;
  }

  // The entry points that were called, each with its key or, without one, its index.
  std::vector<std::string> Reading() const {
    std::vector<std::string> reading;
    for (const Call& call : recording_.calls) {
      std::string words = call.name;
      if (call.arguments.size() > 1) {
        const Argument& argument = call.arguments[1];
        const auto* const key = std::get_if<std::string>(&argument);
        words += " ";
        words += key != nullptr ? *key : std::to_string(std::get<std::intptr_t>(argument));
      }
      reading.push_back(words);
    }
    return reading;
  }

  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  AnalyzeContext context_ = {};
};

}  // namespace ia_test

#endif  // TESTS_ANALYZE_LIST_UPDATES_H_

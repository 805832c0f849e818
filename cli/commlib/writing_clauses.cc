#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "cli/commlib/clauses.h"
#include "cli/commlib/reader.h"
#include "cli/commlib/sample_document.h"
#include "cli/commlib/trial.h"
#include "info_analyze/bidi.h"

namespace ia::cli {
namespace {

[[nodiscard]] QvXmlWriter* StartWriter(Trial& trial) {
  trial.Begin("qvxmlwrapSet_New()");
  QvXmlWriter* const writer = Bidi_qvxmlwrapSet_New(&trial.library());
  if (writer == nullptr) throw NotTested("qvxmlwrapSet_New() gives no writer");
  return writer;
}

void ExpectStatus(Trial& trial, const std::string& call,
                  std::int32_t (*function)(BidiContext*, QvXmlWriter*), QvXmlWriter* writer,
                  std::int32_t expected) {
  trial.Begin(call);
  trial.Expect(std::to_string(function(&trial.library(), writer)), std::to_string(expected));
}

void TryRoundTrip(Trial& trial) {
  const std::string document = WriteSample(trial, trial.library());
  const Reader reader = Parse(trial, trial.library(), document);
  ExpectSample(reader);
  reader.Destroy();
}

void TryClosing(Trial& trial) {
  QvXmlWriter* const writer = StartWriter(trial);
  ExpectStatus(trial, "qvxmlwrapSet_CloseDict() without an open dictionary",
               Bidi_qvxmlwrapSet_CloseDict, writer, -1);
  ExpectStatus(trial, "qvxmlwrapSet_CloseArray() without an open array",
               Bidi_qvxmlwrapSet_CloseArray, writer, -1);
  trial.Begin("qvxmlwrapSet_OpenArray()");
  trial.Expect(std::to_string(Bidi_qvxmlwrapSet_OpenArray(&trial.library(), writer, "array")), "0");
  ExpectStatus(trial, "qvxmlwrapSet_CloseDict() in an array", Bidi_qvxmlwrapSet_CloseDict, writer,
               -1);
  ExpectStatus(trial, "qvxmlwrapSet_CloseArray()", Bidi_qvxmlwrapSet_CloseArray, writer, 0);
}

void TryGivingUp(Trial& trial) {
  QvXmlWriter* const writer = StartWriter(trial);
  trial.Begin("qvxmlwrapSet_Destroy() with words of 0");
  (void)Bidi_qvxmlwrapSet_Destroy(&trial.library(), writer, 0, 0, 0);
}

void TryNullWriter(Trial& trial) {
  BidiContext* const library = &trial.library();
  const auto expect_failure = [&](const char* name, const auto& call) {
    trial.Begin(std::string(name) + "() of the writer NULL");
    trial.Expect(std::to_string(call()), "-1");
  };
  expect_failure("qvxmlwrapSet_Long",
                 [&] { return Bidi_qvxmlwrapSet_Long(library, nullptr, "key", 1); });
  expect_failure("qvxmlwrapSet_String",
                 [&] { return Bidi_qvxmlwrapSet_String(library, nullptr, "key", "text", 0, 0); });
  expect_failure("qvxmlwrapSet_OpenDict",
                 [&] { return Bidi_qvxmlwrapSet_OpenDict(library, nullptr, "list", 0); });
  expect_failure("qvxmlwrapSet_OpenArray",
                 [&] { return Bidi_qvxmlwrapSet_OpenArray(library, nullptr, "key"); });
  expect_failure("qvxmlwrapSet_CloseDict",
                 [&] { return Bidi_qvxmlwrapSet_CloseDict(library, nullptr); });
  expect_failure("qvxmlwrapSet_Destroy",
                 [&] { return Bidi_qvxmlwrapSet_Destroy(library, nullptr, 0, 0, 0); });
}

void TryNullText(Trial& trial) {
  QvXmlWriter* const writer = StartWriter(trial);
  trial.Begin("qvxmlwrapSet_String() of the text NULL");
  trial.Expect(
      std::to_string(Bidi_qvxmlwrapSet_String(&trial.library(), writer, "key", nullptr, 0, 0)),
      "-1");
  trial.Begin("qvxmlwrapSet_Long() of the key NULL");
  trial.Expect(std::to_string(Bidi_qvxmlwrapSet_Long(&trial.library(), writer, nullptr, 1)), "-1");
}

constexpr auto kClauses = std::to_array<Clause>({
    {"write.round-trip", "What is written is read back exactly", TryRoundTrip},
    {"write.close", "A writer closes only what is open", TryClosing},
    {"write.give-up", "qvxmlwrapSet_Destroy() with words of 0 releases the writer", TryGivingUp},
    {"write.null-writer", "Functions of a writer fail for the writer NULL", TryNullWriter},
    {"write.null-value", "A writer refuses the key NULL and the text NULL", TryNullText},
});

}  // namespace

std::span<const Clause> WritingClauses() { return kClauses; }

}  // namespace ia::cli

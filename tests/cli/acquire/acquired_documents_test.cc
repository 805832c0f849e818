#include "cli/acquire/acquired_documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "cli/acquire/device_facts.h"
#include "info_analyze/device_documents.h"

namespace {

using ia::cli::DeviceFacts;
using ia::cli::DocumentsOf;
using ia::cli::Part;
using Json = nlohmann::ordered_json;

Part MakePart(const std::string& name, const std::vector<std::pair<std::string, Json>>& values) {
  Part part;
  part.name = name;
  for (const auto& [key, value] : values) part.known[key] = {.value = value, .source = "test"};
  return part;
}

// Why the document of a list of these parts is left out.
std::string WhyLeftOut(std::int32_t document, const std::vector<Part>& parts) {
  DeviceFacts facts;
  facts.lists[document] = parts;
  return DocumentsOf(facts)[static_cast<std::size_t>(document)].left_out;
}

const Json kNone = Json::array();

TEST(AcquiredDocuments, AListThatIsNotReportedIsLeftOut) {
  const auto documents = DocumentsOf(DeviceFacts());
  ASSERT_EQ(documents.size(), IA_DOCUMENT_COUNT);
  for (const auto& document : documents) {
    EXPECT_EQ(document.left_out,
              ia::cli::IsList(document.document) ? "the device does not report this list" : "");
  }
}

TEST(AcquiredDocuments, AnEmptyListIsWritten) {
  EXPECT_EQ(WhyLeftOut(IA_DOCUMENT_FAX_LINE_LIST, {}), "");
}

TEST(AcquiredDocuments, AUnitWithUnknownFunctionsWouldClaimToHaveNone) {
  EXPECT_EQ(
      WhyLeftOut(IA_DOCUMENT_FINISHER_LIST, {MakePart("unit \"A\"", {{"detail_func", kNone}})}),
      "func of unit \"A\" is unknown");
}

TEST(AcquiredDocuments, AUnitThatTrimsOrInsertsInAnUnknownWayWouldClaimToDoItPlainly) {
  for (const char* const function : {"trimming", "inserter"}) {
    const Json functions = {"staple", function};
    EXPECT_EQ(WhyLeftOut(IA_DOCUMENT_FINISHER_LIST, {MakePart("unit", {{"func", functions}})}),
              "detail_func of unit is unknown");
    EXPECT_EQ(WhyLeftOut(IA_DOCUMENT_FINISHER_LIST,
                         {MakePart("unit", {{"func", functions}, {"detail_func", kNone}})}),
              "");
  }
}

TEST(AcquiredDocuments, AUnitThatPunchesIsSeenToLackItsHoles) {
  EXPECT_EQ(WhyLeftOut(IA_DOCUMENT_FINISHER_LIST, {MakePart("unit", {{"func", {"punch"}}})}), "");
}

TEST(AcquiredDocuments, ALineWithUnknownModesWouldClaimToHaveNone) {
  EXPECT_EQ(WhyLeftOut(IA_DOCUMENT_FAX_LINE_LIST, {MakePart("fax line 1", {{"type", 1}})}),
            "communication_mode of fax line 1 is unknown");
}

TEST(AcquiredDocuments, ANumberIsNotTakenFromTheItemBefore) {
  const Part first = MakePart("bin \"A\"", {{"number", 1}});
  const Part second = MakePart("bin \"B\"", {});
  EXPECT_EQ(WhyLeftOut(IA_DOCUMENT_BIN_LIST, {first, second}), "number of bin \"B\" is unknown");
  EXPECT_EQ(WhyLeftOut(IA_DOCUMENT_BIN_LIST, {second, first}), "");
  EXPECT_EQ(WhyLeftOut(IA_DOCUMENT_TRAY_LIST,
                       {MakePart("tray \"A\"", {{"type", 1}}), MakePart("tray \"B\"", {})}),
            "")
      << "trays do not inherit";
}

}  // namespace

// Keeps docs/document-format.md true: its nine documents are valid and hold the keys of its tables.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "info_analyze/communication_library.h"
#include "tests/commlib/documents.h"

namespace ia_test {
namespace {

std::string ReadPage() {
  std::ostringstream text;
  text << std::ifstream(IA_DOCUMENT_FORMAT_PAGE).rdbuf();
  return text.str();
}

std::string_view Between(std::string_view text, std::string_view start, std::string_view end) {
  const std::size_t from = text.find(start);
  if (from == std::string_view::npos) return {};
  text.remove_prefix(from + start.size());
  return text.substr(0, text.find(end));
}

// The key column's texts of the tables of a section.
std::vector<std::string> KeysInTables(std::string_view section) {
  std::vector<std::string> keys;
  std::istringstream lines{std::string(section)};
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("| `")) keys.emplace_back(Between(line, "| `", "` |"));
  }
  return keys;
}

struct Key {
  const char* name;
  const char* type;  // as the page spells it
};

struct DocumentCase {
  const char* file;
  bool is_list;
  std::vector<Key> keys;
};

void PrintTo(const DocumentCase& document, std::ostream* out) { *out << document.file; }

const DocumentCase kDocuments[] = {
    {"Accessories.xml", false, {{"hd", "long"}, {"memory", "long"}}},
    {"Functions.xml",
     false,
     {{"duplex", "long"},
      {"management", "long"},
      {"trustprint", "long"},
      {"securedprint", "long"},
      {"authentication_user", "string"},
      {"authentication_job_password", "string"},
      {"authentication_f_code", "string"},
      {"must_authentication", "long"}}},
    {"Specid.xml",
     false,
     {{"version", "long"}, {"platform_name", "string"}, {"platform_version", "long"}}},
    {"Finisher_list.xml",
     true,
     {{"type", "long"},
      {"name", "string"},
      {"binnum", "long"},
      {"func", "array of strings"},
      {"detail_func", "array of strings"}}},
    {"Bin_list.xml", true, {{"number", "long"}, {"alias", "array of longs"}}},
    {"Tray_list.xml",
     true,
     {{"type", "long"},
      {"alias", "array of longs"},
      {"capacity", "long"},
      {"medium_type", "long"}}},
    {"Resolutions.xml",
     false,
     {{"resolution_300", "long"}, {"resolution_600", "long"}, {"resolution_1200", "long"}}},
    {"Fax_line_list.xml",
     true,
     {{"id", "long"},
      {"type", "long"},
      {"id_support", "long"},
      {"communication_mode", "array of longs"}}},
    {"Devicename.xml", false, {{"devicename", "string"}}},
};

bool HasArray(const Reader& reader, const Key& key) {
  const bool is_of_longs = std::string_view(key.type) == "array of longs";
  const std::int32_t count = CountElements(reader, key.name).value_or(-1);
  bool is_whole = OpenArray(reader, key.name);
  for (std::int32_t i = 0; i < count; ++i) {
    is_whole &= is_of_longs ? LongAt(reader, i).has_value() : StringAt(reader, i).has_value();
  }
  CloseArray(reader);
  return is_whole && count >= 0;
}

bool Has(const Reader& reader, const Key& key) {
  const std::string_view type = key.type;
  if (type == "long") return GetLong(reader, key.name).has_value();
  if (type == "string") return GetString(reader, key.name).has_value();
  return HasArray(reader, key);
}

class DocumentFormatPageTest : public testing::TestWithParam<DocumentCase> {
 protected:
  const std::string page_ = ReadPage() + "\n### ";
  const std::string_view section_ =
      Between(page_, "\n### " + std::string(GetParam().file) + "\n", "\n### ");
};

TEST_P(DocumentFormatPageTest, TableNamesTheKeysAndTheirTypes) {
  std::vector<std::string> names;
  for (const Key& key : GetParam().keys) {
    names.emplace_back(key.name);
    const std::string row = "\n| `" + names.back() + "` | " + key.type + " | ";
    EXPECT_NE(section_.find(row), std::string_view::npos) << row;
  }
  EXPECT_THAT(KeysInTables(section_), testing::ElementsAreArray(names));
}

TEST_P(DocumentFormatPageTest, ExampleIsADocumentWithAllKeys) {
  const Reader reader = Read(Between(section_, "\n```xml\n", "```"));
  ASSERT_NE(reader, nullptr);
  const bool is_list = GetParam().is_list;
  EXPECT_EQ(CountDicts(reader, "list").has_value(), is_list);
  const std::int32_t items = is_list ? CountDicts(reader, "list").value_or(0) : 1;
  for (std::int32_t i = 0; i < items; ++i) {
    if (is_list) {
      ASSERT_TRUE(OpenDict(reader, "list", i));
    }
    for (const Key& key : GetParam().keys) EXPECT_TRUE(Has(reader, key)) << key.name;
    if (is_list) CloseDict(reader);
  }
}

INSTANTIATE_TEST_SUITE_P(Page, DocumentFormatPageTest, testing::ValuesIn(kDocuments),
                         [](const testing::TestParamInfo<DocumentCase>& info) {
                           return std::string(Between(info.param.file, "", ".xml"));
                         });

TEST(DocumentFormatPage, HasNineDocuments) {
  const std::string page = ReadPage();
  int documents = 0;
  std::string_view rest = page;
  while (rest.find("\n```xml\n") != std::string_view::npos) {
    const std::string_view document = Between(rest, "\n```xml\n", "```");
    EXPECT_NE(Read(document), nullptr) << document;
    ++documents;
    rest.remove_prefix(static_cast<std::size_t>(document.data() - rest.data()));
  }
  EXPECT_EQ(documents, 9);
}

}  // namespace
}  // namespace ia_test

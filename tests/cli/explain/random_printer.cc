#include "tests/cli/explain/random_printer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ia_test {
namespace {

using Json = nlohmann::ordered_json;

std::size_t Below(Random& random, std::size_t count) { return random() % count; }

template <class T>
T OneOf(Random& random, const std::vector<T>& values) {
  return values[Below(random, values.size())];
}

// One that the rules or the sample PPDs know, or by a small chance any.
Json AnyNumber(Random& random, const std::vector<std::int32_t>& usual) {
  if (Below(random, 8) > 0) return OneOf(random, usual);
  if (Below(random, 2) > 0) return static_cast<std::int32_t>(Below(random, 256));
  return static_cast<std::int32_t>(random());
}

Json AnyText(Random& random, const std::vector<std::string>& usual) {
  std::string text = OneOf(random, usual);
  switch (Below(random, 10)) {
    case 0:
      return text + "/X";
    case 1:
      return text.substr(0, Below(random, text.size() + 1));
    case 2:
      return "something else";
    default:
      return text;
  }
}

template <class Make>
Json AnyArray(Random& random, std::size_t longest, Make make) {
  Json elements = Json::array();
  for (std::size_t i = Below(random, longest + 1); i > 0; --i) elements.push_back(make());
  return elements;
}

const std::vector<std::string> kModes = {"mode1", "mode2", "mode3", "mode4", "MODE2", "mode12"};
const std::vector<std::string> kUnits = {"Vorel Inner 2Way Tray-B1",
                                         "Vorel Inner 2way Tray-N1",
                                         "Vorel 3 Way Unit-D1",
                                         "Vorel 3 Way Unit-D2",
                                         "Vorel Booklet Finisher-W1",
                                         "Vorel Staple Finisher-W1",
                                         "Vorel Booklet Finisher-D1",
                                         "Vorel Staple Finisher-D1",
                                         "Vorel Inner Finisher-F1",
                                         "Vorel Inner Finisher-W1",
                                         "Vorel Inner Shift Sorter-D1",
                                         "Vorel Saddle Finisher-U4",
                                         "Vorel Saddle Finisher-X2/X2L",
                                         "Vorel Finisher-U1/U3",
                                         "Vorel Finisher-T1",
                                         "Vorel Finisher-Q1",
                                         "Vorel Finisher-A1",
                                         "Vorel Saddle Finisher-UH2",
                                         "Vorel Booklet Finisher-S1",
                                         "Vorel Professional Puncher-E1",
                                         "Vorel Inner 2 Way Tray-S1",
                                         "Vorel Inner 2Way Tray-R1",
                                         "Vorel Booklet Finisher-K1 PRO",
                                         "Vorel Perfect Binder-E1"};
const std::vector<std::string> kFunctions = {"staple",   "punch",    "folding",
                                             "trimming", "inserter", "glue"};
const std::vector<std::string> kDetails = {
    "punching_2_holes",         "punching_2or3_holes",      "punching_3_holes",
    "punching_French_4_holes",  "punching_Swedish_4_holes", "punching_multiple_holes",
    "inserting_multiple_sheet", "trimming_3_direction",     "punching_2"};
const std::vector<std::int32_t> kTrayAliases = {7,   101, 102, 121, 122, 123, 124, 161,
                                                162, 164, 167, 196, 198, 6,   99};

const std::map<std::pair<std::size_t, std::string>, std::vector<std::int32_t>> kNumbers = {
    {{IA_DOCUMENT_SPECID, "version"}, {0, 255, 256, 288, 291, 512, 513, 768}},
    {{IA_DOCUMENT_SPECID, "platform_version"}, {0, 255, 256, 512, 528, 768, 800}},
    {{IA_DOCUMENT_ACCESSORIES, "memory"}, {0, 512, 1024, 4096}},
    {{IA_DOCUMENT_FINISHER_LIST, "type"}, {1, 11, 12, 14, 15, 18}},
    {{IA_DOCUMENT_FINISHER_LIST, "binnum"}, {0, 1, 2, 3, 4}},
    {{IA_DOCUMENT_BIN_LIST, "number"}, {1, 2, 3, 4}},
    {{IA_DOCUMENT_TRAY_LIST, "type"}, {1, 2, 3, 6}},
    {{IA_DOCUMENT_TRAY_LIST, "capacity"}, {100, 500, 1999, 2000, 3500}},
    {{IA_DOCUMENT_TRAY_LIST, "medium_type"}, {0, 2, 3, 4, 5, 6, 7, 20, 77}},
    {{IA_DOCUMENT_FAX_LINE_LIST, "id"}, {0, 1, 2, 3}},
    {{IA_DOCUMENT_FAX_LINE_LIST, "type"}, {1, 2, 3}},
    {{IA_DOCUMENT_FAX_LINE_LIST, "id_support"}, {0, 18, 19, 20, 21}},
};

const std::vector<std::pair<std::size_t, std::vector<std::string>>> kOutermostKeys = {
    {IA_DOCUMENT_ACCESSORIES, {"hd", "memory"}},
    {IA_DOCUMENT_FUNCTIONS,
     {"duplex", "management", "trustprint", "securedprint", "authentication_user",
      "authentication_job_password", "authentication_f_code", "must_authentication"}},
    {IA_DOCUMENT_SPECID, {"version", "platform_name", "platform_version"}},
    {IA_DOCUMENT_RESOLUTIONS, {"resolution_300", "resolution_600", "resolution_1200"}},
    {IA_DOCUMENT_DEVICENAME, {"devicename"}},
};
struct ListKeys {
  std::size_t document;
  std::size_t longest;
  std::vector<std::string> keys;
};
const std::vector<ListKeys> kListKeys = {
    {IA_DOCUMENT_FINISHER_LIST, 4, {"type", "name", "binnum", "func", "detail_func"}},
    {IA_DOCUMENT_BIN_LIST, 4, {"number", "alias"}},
    {IA_DOCUMENT_TRAY_LIST, 7, {"type", "alias", "capacity", "medium_type"}},
    {IA_DOCUMENT_FAX_LINE_LIST, 4, {"id", "type", "id_support", "communication_mode"}},
};

const std::vector<std::string> kModels = {
    "RA-X6-MLT-JP", "RA-P9-1", "RA-P9-JP", "RA-H2-JP", "RC-T7",  "RA-Z5", "RA-H5-MLT-JP", "RC-W0",
    "RA-T0-MLT-JP", "RB-T9-1", "RA-Z2",    "RC-Z9",    "RA-Z4",  "RC-X1", "RB-X1-1",      "RC-J4",
    "RA-G7",        "RA-G4",   "RC-X5",    "RA-W8",    "RA-T6",  "RC-X8", "RA-Z5-MLT-JP", "RA-J3",
    "RD-T7",        "XX-1",    "",         "RC-STD",   "RA-H1-2"};

std::string Element(const Json& value, const std::string& attribute) {
  if (value.is_array()) {
    std::string elements;
    for (const Json& element : value) elements += Element(element, "");
    return "<array" + attribute + ">" + elements + "</array>";
  }
  const std::string name = value.is_string() ? "string" : "long";
  const std::string content = value.is_string() ? value.get<std::string>() : value.dump();
  return "<" + name + attribute + ">" + content + "</" + name + ">";
}

std::string Values(const Json& values) {
  std::string text;
  for (const auto& [key, value] : values.items()) {
    if (key == "list" || value.is_null()) continue;
    text += Element(value, " key=\"" + key + "\"");
  }
  return text;
}

}  // namespace

Json MakeValue(Random& random, std::size_t document, const std::string& key) {
  if (Below(random, 12) == 0) return nullptr;
  if (key.starts_with("authentication")) return AnyText(random, kModes);
  if (key == "platform_name") return AnyText(random, {"NCPP", "ncpp", "other"});
  if (key == "devicename") return AnyText(random, {"HZL-A", "HZL-B/HZL-C", "VOFF-6050"});
  if (key == "name") return AnyText(random, kUnits);
  if (key == "func") return AnyArray(random, 4, [&] { return AnyText(random, kFunctions); });
  if (key == "detail_func") return AnyArray(random, 4, [&] { return AnyText(random, kDetails); });
  if (key == "communication_mode") {
    return AnyArray(random, 3,
                    [&] { return AnyNumber(random, {1, 16, 17, 18, 69, 144, 145, 146, 197}); });
  }
  if (key == "alias" && document == IA_DOCUMENT_BIN_LIST) {
    return AnyArray(random, 2,
                    [&] { return AnyNumber(random, {100, 101, 102, 105, 106, 119, 121}); });
  }
  if (key == "alias") return AnyArray(random, 1, [&] { return AnyNumber(random, kTrayAliases); });
  const auto usual = kNumbers.find({document, key});
  return AnyNumber(random,
                   usual != kNumbers.end() ? usual->second : std::vector<std::int32_t>{0, 1});
}

RandomPrinter MakePrinter(Random& random) {
  RandomPrinter printer;
  printer.model_code = OneOf(random, kModels);
  for (Json& document : printer.documents) document = Json::object();
  for (const auto& [document, keys] : kOutermostKeys) {
    for (const std::string& key : keys) {
      printer.documents[document][key] = MakeValue(random, document, key);
    }
  }
  for (const ListKeys& list : kListKeys) {
    Json items = Json::array();
    for (std::size_t i = Below(random, list.longest + 1); i > 0; --i) {
      Json item = Json::object();
      for (const std::string& key : list.keys) item[key] = MakeValue(random, list.document, key);
      items.push_back(std::move(item));
    }
    printer.documents[list.document]["list"] = std::move(items);
  }
  return printer;
}

std::string RandomPrinter::Xml(std::size_t document) const {
  const Json& values = documents.at(document);
  std::string text = Values(values);
  if (values.contains("list")) {
    for (const Json& item : values["list"])
      text += "<dict key=\"list\">" + Values(item) + "</dict>";
  }
  return "<document version=\"1\">" + text + "</document>";
}

std::int32_t RandomPrinter::CountItems(std::size_t document) const {
  const Json& values = documents.at(document);
  return values.contains("list") ? static_cast<std::int32_t>(values["list"].size()) : 0;
}

}  // namespace ia_test

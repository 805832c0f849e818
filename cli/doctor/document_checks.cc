// The doctor's checks of the device documents, of their keys and of the options of a query.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "cli/doctor/checkup.h"
#include "cli/explain/unknown_values.h"
#include "cli/printer/documents.h"
#include "cli/printer/regular_file.h"
#include "cli/provenance/provenance.h"
#include "cli/provenance/raw_values.h"

namespace ia::cli {
namespace {

constexpr const char* kFixDocument =
    "let the printer daemon fetch the documents again, with the printer switched on";

constexpr const char* kFixLibrary =
    "install the driver package again: its communication library does not work";

// False when there can be no documents.
[[nodiscard]] bool CheckFolder(const std::string& folder, Checkup& checkup) {
  struct stat status = {};
  if (stat(folder.c_str(), &status) != 0) {
    checkup.Fail("documents", "document directory " + folder + ": " + std::strerror(errno),
                 "correct --device-info, or let the printer daemon fetch the documents");
    return false;
  }
  if (!S_ISDIR(status.st_mode)) {
    checkup.Fail("documents", "document directory " + folder + ": not a directory",
                 "correct --device-info");
    return false;
  }
  if (access(folder.c_str(), R_OK | X_OK) == 0) return true;
  checkup.Fail("documents", "document directory " + folder + ": " + std::strerror(errno),
               "run as a user who may read it");
  return false;
}

// What became of the nine documents.
struct Documents {
  std::vector<std::string> read;    // names
  std::vector<std::string> unread;  // names of files that the communication library does not read
};

void LoadDocument(const Patient& patient, std::int32_t index, Documents& documents,
                  Checkup& checkup) {
  const std::string name = Analyze_Provenance_GetDocumentName(index);
  const std::string path = patient.location.device_info + "/" + name;
  if (const auto fault = FindFileFault(path)) {
    return checkup.Fail("documents", "document " + path + ": " + *fault, FixOf(path, kFixDocument));
  }
  struct stat status = {};
  if (stat(path.c_str(), &status) == 0 && status.st_size == 0) {
    return checkup.Fail("documents", "document " + path + ": is empty", kFixDocument);
  }
  if (!patient.analyzer) return;
  patient.announce("it reads the document " + path);
  analyze_common_create_xmldata(patient.analyzer.get(), index);
  const bool is_read = patient.analyzer->documents[index].xml != nullptr;
  (is_read ? documents.read : documents.unread).push_back(name);
}

// A library that reads none of several documents is at fault, and not the documents.
void ReportDocuments(Patient& patient, const Documents& documents, Checkup& checkup) {
  const std::string& folder = patient.location.device_info;
  if (!patient.analyzer) {
    return checkup.Note(
        "documents",
        "the contents of the documents are not checked, because " +
            std::string(patient.ppd_reader ? "the communication library" : "the queue's PPD") +
            " cannot be used");
  }
  if (documents.read.empty() && documents.unread.size() > 1) {
    patient.has_bad_library = true;
    return checkup.Fail("driver",
                        "the communication library reads none of the " +
                            CountOf(documents.unread.size(), "document") + " in " + folder +
                            ": it is a stub, or of a different driver",
                        kFixLibrary);
  }
  for (const std::string& name : documents.unread) {
    std::string sentence = "document " + folder;
    sentence += "/" + name + ": not a document that the communication library reads";
    checkup.Fail("documents", sentence, kFixDocument);
  }
  if (!documents.read.empty()) {
    checkup.Ok("documents", CountOf(documents.read.size(), "document") +
                                (documents.read.size() == 1 ? " is read" : " are read"));
  }
}

[[nodiscard]] bool IsOfElements(const InputKey& input) {
  return input.type == IA_KEY_LONG_ELEMENTS || input.type == IA_KEY_STRING_ELEMENTS;
}

[[nodiscard]] const char* NameOfType(const InputKey& input) {
  switch (input.type) {
    case IA_KEY_LONG:
      return "a number";
    case IA_KEY_STRING:
      return "a text";
    case IA_KEY_LONG_ELEMENTS:
      return "an array of numbers";
    default:
      return "an array of texts";
  }
}

[[nodiscard]] std::string KeyOf(const RawValue& raw) {
  return (raw.item >= 0 ? "list[" + std::to_string(raw.item) + "] " : "") + raw.key;
}

[[nodiscard]] std::string DocumentOf(const RawValue& raw) {
  return Analyze_Provenance_GetDocumentName(raw.input->document);
}

[[nodiscard]] std::string PlaceOf(const RawValue& raw) {
  return DocumentOf(raw) + " " + KeyOf(raw);
}

// Of findings about the same key of several items.
[[nodiscard]] Repeated InItems(const RawValue& raw, const std::string& fault) {
  return {.group = DocumentOf(raw) + " " + raw.key + ": " + fault, .object = KeyOf(raw)};
}

void CheckElements(const RawValue& raw, Checkup& checkup) {
  if (!IsOfElements(*raw.input)) return;
  for (std::size_t i = 0; i < raw.value.size(); ++i) {
    if (!raw.value[i].is_null()) continue;
    const std::string element = "the element " + std::to_string(i);
    checkup.Warn(
        "keys",
        PlaceOf(raw) + ": " + element + " has the wrong type; expected " + NameOfType(*raw.input),
        kFixDocument, {.group = PlaceOf(raw) + ": element", .object = element});
  }
}

// Whether the document's file has the key in quotes, even if the communication library returns no
// value of it. In a list another item can have it.
[[nodiscard]] bool IsInFile(const Patient& patient, const RawValue& raw) {
  if (raw.item >= 0) return false;
  try {
    const std::string text =
        ReadRegularFile(patient.location.device_info + "/" + DocumentOf(raw), IA_DOCUMENT_MAX_SIZE);
    return text.find('"' + raw.key + '"') != std::string::npos;
  } catch (const FileFault&) {
    return false;
  }
}

// Devices leave out what they do not have, so arrays may be missing and other keys are notes.
void CheckMissing(const Patient& patient, const RawValue& raw, Checkup& checkup) {
  if (IsOfElements(*raw.input)) return;
  if (IsInFile(patient, raw)) {
    return checkup.Warn("keys", PlaceOf(raw) + " cannot be read as " + NameOfType(*raw.input),
                        kFixDocument);
  }
  checkup.Note("keys", "the device does not report " + PlaceOf(raw),
               {.group = DocumentOf(raw) + ": missing", .object = KeyOf(raw)});
}

void CheckValue(const Patient& patient, const RawValue& raw, Checkup& checkup) {
  switch (raw.state) {
    case RawState::kPresent:
      return CheckElements(raw, checkup);
    case RawState::kWrongType:
      return checkup.Warn("keys",
                          PlaceOf(raw) + " has the wrong type; expected " + NameOfType(*raw.input),
                          kFixDocument, InItems(raw, "wrong type"));
    case RawState::kMissing:
      return CheckMissing(patient, raw, checkup);
    case RawState::kNoDocument:
      return;
  }
}

// The items of a list are dictionaries; a value of a different type in their place hides them.
void CheckList(const AnalyzeContext& analyzer, std::int32_t document, Checkup& checkup) {
  const InputKey list = {.document = document, .in_list = 0, .type = IA_KEY_LONG, .key = "list"};
  for (const RawValue& raw : ReadRawValues(analyzer, list)) {
    if (!raw.is_present()) continue;
    checkup.Warn("keys", PlaceOf(raw) + " has the wrong type; expected dictionaries", kFixDocument);
  }
}

[[nodiscard]] const PpdOption* FindOption(const Patient& patient, const char* keyword) {
  const auto hit = patient.ppd_options.find(std::string_view(keyword));
  return hit != patient.ppd_options.end() ? &hit->second : nullptr;
}

void CheckChoice(const Patient& patient, const OptionList& option, Checkup& checkup) {
  const PpdOption* const in_ppd = FindOption(patient, option.key);
  const std::string option_text = std::string(option.key) + "=" + option.value;
  if (in_ppd == nullptr) {
    return checkup.Note("values", option_text + ": the PPD has no such option to choose",
                        {.group = "no option", .object = option_text});
  }
  if (in_ppd->HasChoice(option.value)) return;
  checkup.Warn("values", option_text + ": the PPD has no such choice",
               std::string("add the choice to the PPD; `info-analyze explain ") + option.key +
                   "` shows where the value comes from",
               {.group = "no choice", .object = option_text});
}

// The values that this model's handlers read in the documents.
[[nodiscard]] std::vector<RawValue> ValuesOfModel(const AnalyzeContext& analyzer) {
  std::vector<RawValue> values;
  for (const InputKey* const input : InputsOfModel(analyzer.driver_name)) {
    if (input->document == IA_INPUT_OF_PPD || input->type == IA_KEY_DICTIONARY) continue;
    for (const RawValue& raw : ReadRawValues(analyzer, *input)) {
      if (raw.state != RawState::kNoDocument) values.push_back(raw);
    }
  }
  return values;
}

[[nodiscard]] std::string FixOfQuery(const Patient& patient, const Checkup& checkup) {
  if (patient.has_bad_library) return "replace the communication library that is named above";
  const bool has_bad_document = std::ranges::any_of(checkup.findings(), [](const Finding& finding) {
    return finding.check == "documents" && finding.level == Level::kFailure;
  });
  return has_bad_document ? "fix the documents that are named above" : kFixLibrary;
}

[[nodiscard]] std::string WhatIsIn(const UnknownValue& unknown) {
  if (unknown.raw.key == "name") return "finisher";
  return unknown.raw.key == "alias" ? "paper source" : "medium of this driver";
}

}  // namespace

void CheckDocuments(Patient& patient, Checkup& checkup) {
  if (!CheckFolder(patient.location.device_info, checkup)) return;
  if (patient.library && patient.ppd_reader) {
    patient.analyzer =
        patient.ppd->CreateAnalyzer(patient.library.get(), patient.location.device_info.c_str());
  }
  Documents documents;
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    LoadDocument(patient, i, documents, checkup);
  }
  ReportDocuments(patient, documents, checkup);
}

void CheckKeys(Patient& patient, Checkup& checkup) {
  if (!patient.analyzer || patient.has_bad_library) return;
  patient.announce("it reads the keys of the documents");
  const std::vector<RawValue> values = ValuesOfModel(*patient.analyzer);
  const auto is_missing = [](const RawValue& raw) { return raw.state == RawState::kMissing; };
  if (values.size() > 1 && std::ranges::all_of(values, is_missing)) {
    patient.has_bad_library = true;
    return checkup.Fail(
        "driver",
        "no document has any key that this model needs: the documents are empty, or the "
        "communication library does not work",
        std::string(kFixDocument) + "; if they have keys, " + kFixLibrary);
  }
  const std::size_t before = checkup.Count(Level::kWarning);
  for (const std::int32_t list : {IA_DOCUMENT_FINISHER_LIST, IA_DOCUMENT_BIN_LIST,
                                  IA_DOCUMENT_TRAY_LIST, IA_DOCUMENT_FAX_LINE_LIST}) {
    CheckList(*patient.analyzer, list, checkup);
  }
  for (const RawValue& raw : values) CheckValue(patient, raw, checkup);
  if (!values.empty() && checkup.Count(Level::kWarning) == before) {
    checkup.Ok("keys", "no key that this model's handlers read has the wrong type");
  }
}

// The library does not load documents again that it has loaded, and its result is that of the last
// document that it had to load. So the query has an analyser of its own, as any other query.
void CheckValues(const Patient& patient, Checkup& checkup) {
  if (!patient.analyzer) return;
  patient.announce("a query runs");
  const AnalyzerPtr analyzer =
      patient.ppd->CreateAnalyzer(patient.library.get(), patient.location.device_info.c_str());
  const OptionListPtr options = StartOptionList();
  const std::int32_t result = Analyze_Info_FromPrinter(analyzer.get(), options.get(), 0);
  if (result != 0) {
    return checkup.Fail("query", "the query fails with result " + std::to_string(result),
                        FixOfQuery(patient, checkup));
  }
  std::size_t count = 0;
  for (const OptionList* node = options->next; node != nullptr; node = node->next, ++count) {
    CheckChoice(patient, *node, checkup);
  }
  for (const UnknownValue& unknown : FindUnknownValues(*analyzer)) {
    checkup.Warn("values", Describe(unknown),
                 "if it is a " + WhatIsIn(unknown) + ", add it to " + unknown.lists +
                     " in the PPD of the driver package");
  }
  checkup.Ok("query", "the query returns " + CountOf(count, "option"));
}

}  // namespace ia::cli

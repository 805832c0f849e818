// The doctor's checks of the device documents, of their keys and of the options of a query.
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "cli/doctor/checkup.h"
#include "cli/printer/documents.h"
#include "cli/provenance/provenance.h"
#include "cli/provenance/raw_values.h"

namespace ia::cli {
namespace {

constexpr const char* kFixDocument =
    "let the printer daemon fetch the documents again, with the printer switched on";

// False when there can be no documents.
[[nodiscard]] bool CheckFolder(const std::string& folder, Checkup& checkup) {
  struct stat status = {};
  if (stat(folder.c_str(), &status) != 0) {
    checkup.Fail("documents", "document directory " + folder + ": " + std::strerror(errno),
                 "correct --device-info, or let the printer daemon fetch the documents");
    return false;
  }
  if (S_ISDIR(status.st_mode)) return true;
  checkup.Fail("documents", "document directory " + folder + ": not a directory",
               "correct --device-info");
  return false;
}

void LoadDocument(const Patient& patient, std::int32_t index, Checkup& checkup) {
  const std::string name = Analyze_Provenance_GetDocumentName(index);
  const std::string path = patient.location.device_info + "/" + name;
  if (const auto fault = FindFileFault(path)) {
    return checkup.Fail("documents", "document " + path + ": " + *fault, kFixDocument);
  }
  if (!patient.analyzer) return;
  analyze_common_create_xmldata(patient.analyzer.get(), index);
  const XmlData& document = patient.analyzer->documents[index];
  if (document.xml == nullptr) {
    struct stat status = {};
    const bool is_empty = stat(path.c_str(), &status) == 0 && status.st_size == 0;
    return checkup.Fail(
        "documents",
        "document " + path +
            (is_empty ? ": is empty" : ": not a document that the communication library reads"),
        kFixDocument);
  }
  checkup.Ok("documents", "document " + name + " is read");
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

[[nodiscard]] std::string PlaceOf(const RawValue& raw) {
  const std::string document = Analyze_Provenance_GetDocumentName(raw.input->document);
  return document + (raw.item >= 0 ? " list[" + std::to_string(raw.item) + "] " : " ") + raw.key;
}

void CheckElements(const RawValue& raw, Checkup& checkup) {
  if (!IsOfElements(*raw.input)) return;
  for (std::size_t i = 0; i < raw.value.size(); ++i) {
    if (!raw.value[i].is_null()) continue;
    checkup.Warn("keys",
                 PlaceOf(raw) + ": the element " + std::to_string(i) +
                     " has the wrong type; expected " + NameOfType(*raw.input),
                 kFixDocument);
  }
}

// A unit without functions lists none, so arrays may be missing.
void CheckValue(const RawValue& raw, Checkup& checkup) {
  switch (raw.state) {
    case RawState::kPresent:
      return CheckElements(raw, checkup);
    case RawState::kWrongType:
      return checkup.Warn("keys",
                          PlaceOf(raw) + " has the wrong type; expected " + NameOfType(*raw.input),
                          kFixDocument);
    case RawState::kMissing:
      if (IsOfElements(*raw.input)) return;
      return checkup.Warn(
          "keys", PlaceOf(raw) + " is missing, or cannot be read as " + NameOfType(*raw.input),
          kFixDocument);
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
    return checkup.Note("values", option_text + ": the PPD has no such option to choose");
  }
  if (in_ppd->HasChoice(option.value)) return;
  checkup.Warn("values", option_text + ": the PPD has no such choice",
               std::string("add the choice to the PPD; `info-analyze explain ") + option.key +
                   "` shows where the value comes from");
}

}  // namespace

void CheckDocuments(Patient& patient, Checkup& checkup) {
  if (!CheckFolder(patient.location.device_info, checkup)) return;
  if (patient.library && patient.ppd_reader) {
    patient.analyzer.reset(Analyze_Create(patient.library.get(), patient.location.queue.c_str(),
                                          patient.location.device_info.c_str()));
  }
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) LoadDocument(patient, i, checkup);
}

void CheckKeys(const Patient& patient, Checkup& checkup) {
  if (!patient.analyzer) return;
  const std::size_t before = checkup.Count(Level::kWarning);
  for (const std::int32_t list : {IA_DOCUMENT_FINISHER_LIST, IA_DOCUMENT_BIN_LIST,
                                  IA_DOCUMENT_TRAY_LIST, IA_DOCUMENT_FAX_LINE_LIST}) {
    CheckList(*patient.analyzer, list, checkup);
  }
  for (const InputKey* const input : InputsOfModel(patient.analyzer->driver_name)) {
    if (input->document == IA_INPUT_OF_PPD || input->type == IA_KEY_DICTIONARY) continue;
    for (const RawValue& raw : ReadRawValues(*patient.analyzer, *input)) CheckValue(raw, checkup);
  }
  if (checkup.Count(Level::kWarning) == before) {
    checkup.Ok("keys", "no key that this model's handlers read is missing or has the wrong type");
  }
}

void CheckValues(const Patient& patient, Checkup& checkup) {
  if (!patient.analyzer) return;
  const OptionListPtr options = StartOptionList();
  const std::int32_t result = Analyze_Info_FromPrinter(patient.analyzer.get(), options.get(), 0);
  if (result != 0) {
    return checkup.Fail("query", "the query fails with result " + std::to_string(result),
                        "fix the documents that are named above");
  }
  std::size_t count = 0;
  for (const OptionList* node = options->next; node != nullptr; node = node->next, ++count) {
    CheckChoice(patient, *node, checkup);
  }
  checkup.Ok("query", "the query returns " + CountOf(count, "option"));
}

}  // namespace ia::cli

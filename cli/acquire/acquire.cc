#include "cli/acquire/acquire.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <ios>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

#include "cli/acquire/acquired_documents.h"
#include "cli/acquire/device_answer.h"
#include "cli/acquire/device_facts.h"
#include "cli/acquire/document_folder.h"
#include "cli/acquire/profile.h"
#include "cli/acquire/source_table.h"
#include "cli/config/patterns.h"
#include "cli/config/settings.h"
#include "cli/printer/queue_facts.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/temporary_folder.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

struct AcquireQuestion {
  PrinterLocation location;
  std::vector<std::string> places;  // the device, unless a queue names it, and the folder
  std::string attributes_file;      // where the answer is kept; empty: nowhere
  std::string format = "text";
};

// The location's, or the driver folder's if it has one.
[[nodiscard]] std::optional<Profile> FindProfile(const PrinterLocation& location) {
  if (!location.profile.empty()) return ReadProfile(location.profile);
  const std::string of_driver = location.driver_folder + "/" + kProfileName;
  std::error_code ignored;
  if (!std::filesystem::exists(of_driver, ignored)) return std::nullopt;
  return ReadProfile(of_driver);
}

[[nodiscard]] std::string UnknownKeys(std::int32_t document, const Part& part) {
  std::string keys;
  for (const DocumentKey& key : kDocumentKeys) {
    if (key.document != document || part.known.contains(key.name)) continue;
    keys += (keys.empty() ? "" : ", ") + std::string(key.name);
  }
  return keys;
}

void WarnOfGaps(const std::vector<AcquiredDocument>& documents, bool has_profile) {
  for (const AcquiredDocument& document : documents) {
    if (!document.left_out.empty()) {
      ReportWarning(std::string("document ") +
                    Analyze_Provenance_GetDocumentName(document.document) +
                    " is left out: " + document.left_out);
    }
    if (!has_profile || !IsList(document.document)) continue;
    for (const Part& part : document.parts) {
      const std::string keys = UnknownKeys(document.document, part);
      if (!keys.empty()) ReportWarning(part.name + ": no rule of the profile gives " + keys);
    }
  }
}

// The verb ---------------------------------------------------------------------------------------

// The location with its device, which the first place names, or CUPS as that of the queue.
[[nodiscard]] PrinterLocation LocateDevice(const AcquireQuestion& question) {
  const PrinterLocation& given = question.location;
  const bool has_queue = !given.queue.empty();
  if (question.places.size() != (has_queue ? 1 : 2)) {
    throw CLI::RequiredError(has_queue ? "DIR is required, without a URI beside --queue"
                                       : "a URI or --queue, and DIR are required",
                             CLI::ExitCodes::RequiredError);
  }
  PrinterLocation location = Complete(given, CurrentSettings(given.config_file), WordsOf(given));
  location.device = has_queue ? FactsOf(location).device_uri : question.places.front();
  if (!question.attributes_file.empty() && location.device.find("://") == std::string::npos) {
    throw CLI::ValidationError("--keep-attributes", "needs a device, not a file of attributes");
  }
  if (!location.device.empty()) return location;
  throw Failure(ExitStatus::kQueue, {.object = "queue \"" + given.queue + "\"",
                                     .cause = "CUPS knows no device URI for it",
                                     .hint = "pass ipp://HOST/ipp/print"});
}

void KeepAttributes(const std::string& text, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  file << text << std::flush;
  if (file) return;
  throw Failure(ExitStatus::kOther, {.action = "cannot write",
                                     .object = "attributes file " + path,
                                     .cause = std::strerror(errno)});
}

void Run(const AcquireQuestion& question) {
  const PrinterLocation location = LocateDevice(question);
  const Acquired acquired = Acquire(location);
  WarnOfGaps(acquired.documents, acquired.has_profile);
  const std::string& folder = question.places.back();
  const BidiPtr library = LoadLibrary(location.driver_folder);
  PublishDocuments(WriteDocuments(*library, acquired.documents), folder);
  if (!question.attributes_file.empty()) {
    KeepAttributes(acquired.attributes, question.attributes_file);
  }
  WriteAnswer(question.format == "json" ? SourcesAsJson(acquired.documents)
                                        : SourcesAsText(acquired.documents));
}

}  // namespace

Acquired Acquire(const PrinterLocation& location) {
  const std::optional<Profile> profile = FindProfile(location);
  const DeviceAnswer answer = ReadDevice(location);
  DeviceFacts facts = FindFacts(answer.values);
  if (profile) ApplyProfile(*profile, answer.values, facts);
  return {.attributes = answer.text,
          .has_profile = profile.has_value(),
          .documents = DocumentsOf(facts)};
}

PrinterLocation WithDocumentsOfDevice(const PrinterLocation& given) {
  const Acquired acquired = Acquire(given);
  const BidiPtr library = LoadLibrary(given.driver_folder);
  const auto files = WriteDocuments(*library, acquired.documents);
  try {
    const auto folder = std::make_shared<const TemporaryFolder>();
    WriteDocumentFiles(files, folder->path());
    PrinterLocation location = given;
    SetGivenName(folder->path(), WithoutCredentials(given.device));
    location.device_info = folder->path();
    location.unpacked = folder;
    return location;
  } catch (const std::system_error& error) {
    throw Failure(ExitStatus::kOther, {.object = "documents of device " + given.device,
                                       .cause = error.code().message(),
                                       .hint = "check the folder that TMPDIR names"});
  }
}

void DefineAcquire(CLI::App& verb) {
  const auto question = std::make_shared<AcquireQuestion>();
  PrinterLocation& location = question->location;
  location.timeout = kDefaultDeviceTimeout;
  verb.add_option("PLACES", question->places,
                  "ipp:// or ipps:// URI of the device, or a file of its attributes; not with "
                  "--queue. Then the document directory to write")
      ->type_name("[URI] DIR")
      ->expected(1, 2);
  verb.add_option("-p,--queue", location.queue, "CUPS queue that has the device's URI")
      ->type_name("NAME");
  AddCupsRootOption(verb, location);
  AddTimeoutOption(verb, location);
  verb.get_option("--timeout")->description("Wait at most this long for the device's answer");
  AddConfigOption(verb, location);
  AddDriverOption(verb, location);
  AddDeviceOptions(verb, location);
  verb.add_option("--keep-attributes", question->attributes_file,
                  "Write the device's attributes to FILE, which ippeveprinter can play")
      ->type_name("FILE");
  AddFormatOption(verb, question->format);
  verb.footer(
      "Examples:\n"
      "  info-analyze acquire ipp://192.0.2.7/ipp/print /var/cache/office\n"
      "  info-analyze acquire --queue office /var/cache/office --profile office.json\n"
      "  info-analyze acquire office.attributes office --driver-folder /usr/lib/driver");
  verb.callback([question] { Run(*question); });
}

}  // namespace ia::cli

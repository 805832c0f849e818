// Any bytes as what a device answers: those after an "f" are an attributes file, those after any
// other byte an IPP message. What becomes of it must be written, and read back as it was.
#include <cups/cups.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/acquire/acquired_documents.h"
#include "cli/acquire/attributes_file.h"
#include "cli/acquire/device_facts.h"
#include "cli/acquire/printer_attributes.h"
#include "cli/acquire/profile.h"
#include "cli/printer/connection.h"
#include "cli/printer/handles.h"
#include "cli/terminal/failure.h"
#include "fuzz/input.h"
#include "info_analyze/bidi.h"

namespace {

using ia::cli::AttributeValues;
using ia::cli::BidiPtr;

constexpr std::string_view kProfile = R"({"profile_version": 1,
  "device": [{"if": {"printer-make-and-model": "V*"}, "then": {"version": 1}}],
  "trays": [{"if": {"type": "sheetFeedManual"}, "then": {"type": 1, "alias": [7]}},
            {"if": {"capacity": {"min": 1000}}, "then": {"type": 3}},
            {"if": {"media-type": "*"}, "then": {"medium_type": 2}}],
  "bins": [{"if": {"name": "?"}, "then": {"number": 1, "alias": [1]}}],
  "finishers": [{"if": {"name": "F*"}, "then": {"type": 12, "binnum": 3, "func": ["staple"]}},
                {"then": {"detail_func": []}}],
  "fax_lines": [{"if": {"ipp-features-supported": "faxout"},
                 "then": [{"id": 1, "type": 1, "id_support": 0, "communication_mode": [1]}]}]})";

[[nodiscard]] AttributeValues ReadMessage(std::string_view bytes) {
  const ia::cli::IppPtr message = ia::cli::ReadMessage(bytes);
  AttributeValues values = ia::cli::ValuesOf(*message);
  (void)ia::cli::ParseAttributes(ia::cli::FormatAttributes(*message), "kept");
  return values;
}

[[nodiscard]] AttributeValues Read(std::string_view bytes) {
  if (bytes.starts_with('f')) return ia::cli::ParseAttributes(bytes.substr(1), "file");
  return ReadMessage(bytes.substr(1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const BidiPtr kLibrary(Bidi_Create(IA_FUZZ_DRIVER_FOLDER));
  static const ia::cli::Profile kRules = ia::cli::ParseProfile(kProfile, "profile");
  ia_fuzz::Require(kLibrary != nullptr);
  if (size == 0) return 0;
  try {
    const AttributeValues values = Read({reinterpret_cast<const char*>(data), size});
    ia::cli::DeviceFacts facts = ia::cli::FindFacts(values);
    (void)ia::cli::WriteDocuments(*kLibrary, ia::cli::DocumentsOf(facts));
    ia::cli::ApplyProfile(kRules, values, facts);
    (void)ia::cli::WriteDocuments(*kLibrary, ia::cli::DocumentsOf(facts));
  } catch (const ia::cli::MessageFault&) {
    return 0;
  } catch (const ia::cli::Failure& failure) {
    // Of a file; a document that cannot be written is a finding.
    ia_fuzz::Require(failure.status() == ia::cli::ExitStatus::kUsage);
  }
  return 0;
}

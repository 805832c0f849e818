// Any PPD and any answers of a communication library that lies, through a whole query or one of its
// update handlers.
//
// Lines: the handler (another word: the whole query; "reload": with documents read from files), the
// function version in hexadecimal, the PPD up to an empty line, and the library's script, whose
// first numbers are those of items in the lists of finishers, bins, trays and fax lines.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unordered_set>

#include "fuzz/input.h"
#include "fuzz/lying_analyzer.h"
#include "info_analyze/printer_updates.h"
#include "info_common/ppd_reader.h"

namespace {

using ia_fuzz::Input;
using ia_fuzz::Require;

// A query takes time with each of them.
constexpr std::int32_t kMaxItems = 8;
constexpr std::int32_t kFlagCapacity = 16;

struct Step {
  std::string_view name;
  std::int32_t (*run)(AnalyzeContext*, OptionList*) noexcept;
};

constexpr auto kSteps = std::to_array<Step>({
    {"accessories", z_Update_Prn_accessories},
    {"functions", z_Update_Prn_functions},
    {"specid", z_Update_Prn_specid},
    {"platform", z_Update_Prn_platformVer},
    {"finishers", z_Update_Prn_finisher_list},
    {"bins", z_Update_Prn_bin_list},
    {"trays", z_Update_Prn_tray_list},
    {"resolutions", z_Update_Prn_resolutions},
    {"fax", z_Update_Prn_fax_line_list},
    {"extra", z_Update_Prn_extra},
    {"combined", z_Update_Prn_Complex_FinisherInformations},
});

struct Flags {
  const char* key;
  FlagInfo* AnalyzeContext::* store;
};

constexpr auto kFlags = std::to_array<Flags>({
    {"QV_Prot_MediaType", &AnalyzeContext::media_type_flags},
    {"QVAnlz_SlotMediaInfo", &AnalyzeContext::slot_media_info_flags},
    {"QVAnlz_InputTray", &AnalyzeContext::input_tray_flags},
    {"QVAnlz_FinisherName", &AnalyzeContext::finisher_name_flags},
    {"QVAnlz_SrcOption", &AnalyzeContext::src_option_flags},
});

OptTable* TakePpd(Input& input) {
  ia::PpdReader reader;
  for (std::string_view line = input.TakeText(); !line.empty(); line = input.TakeText()) {
    char buffer[ia::kPpdLineSize] = {};
    std::ranges::copy(line.substr(0, sizeof buffer - 1), buffer);
    reader.TakeLine(buffer);
  }
  return reader.TakeTable();
}

// As Analyze_Create() does, but with room for a few flags only, and without a table if need be.
void ReadPpd(Input& input, AnalyzeContext* context) {
  context->ppd_options = TakePpd(input);
  for (const Flags& flags : kFlags) {
    context->*flags.store = zflaginfo_init(flags.key, kFlagCapacity);
    zflaginfo_getflags(context->ppd_options, flags.key, context->*flags.store);
  }
  context->driver_name = info_common_optlist_getvalue(context->ppd_options, "QVAnlz_DriverName");
}

void Ask(std::string_view what, AnalyzeContext* context, OptionList* options) {
  const auto* const step =
      std::ranges::find_if(kSteps, [&](const Step& row) { return row.name == what; });
  if (step != kSteps.end()) {
    step->run(context, options);
  } else {
    Analyze_Info_FromPrinter(context, options, what == "reload" ? 1 : 0);
  }
}

// The caller's own node stays the first, and every entry has both texts, with another key than
// those before. (A value without a keyword changes that of the caller's node, whose key it equals.)
void Check(const OptionList* options) {
  Require(*options->key == '\0');
  std::unordered_set<std::string_view> keys;
  for (const OptTable* node = options; node != nullptr; node = node->next) {
    Require(node->key != nullptr && node->value != nullptr);
    Require(keys.insert(node->key).second);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input input(data, size);
  const std::string_view what = input.TakeText();
  const auto version =
      static_cast<std::uint32_t>(std::strtoul(std::string(input.TakeText()).c_str(), nullptr, 16));
  const ia_test::AnalyzerPtr context = ia_fuzz::NewAnalyzer();
  context->xml_folder = IA_FUZZ_DOCUMENTS;
  ReadPpd(input, context.get());

  ia_fuzz::AttachScript(input.Rest(), kMaxItems);
  if (what != "reload") ia_fuzz::LoadDocuments(context.get());
  OptionList* options = nullptr;
  info_common_optlist_additem_front(&options, "", "");
  Ask(what, context.get(), options);
  Analyze_Info_FromFunctionVersion(context.get(), version, options);
  Check(options);
  OptionList_Terminate(&options);
  return 0;
}

// The update handler of fax lines.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "analyze/document_keys.h"
#include "analyze/option_rows.h"
#include "analyze/query/update_handlers.h"
#include "bidi/key_reader.h"
#include "info_analyze/list_getters.h"
#include "info_analyze/printer_updates.h"
#include "info_common/owned.h"

static_assert(sizeof(FaxModes) == 2 * sizeof(void*));
static_assert(offsetof(FaxModes, count) == 1 * sizeof(void*));

namespace ia {
namespace {

constexpr std::int32_t kDocument = IA_DOCUMENT_FAX_LINE_LIST;
constexpr std::int32_t kMaxModes = 20;
constexpr std::int32_t kIsdnType = 2;
constexpr std::int32_t kUncountedType = 3;
constexpr std::int32_t kAlternateModeOffset = 128;  // a mode plus this counts as the same mode

// For these devices dial lines A to C that are not reported count as supporting the ID function.
// Line D is left out on purpose.
constexpr auto kDevicesWithIdSupport = std::to_array<std::string_view>({"HZL-A", "HZL-B/HZL-C"});
constexpr std::size_t kDialLineA = 2;
constexpr std::size_t kDialLineC = 4;

char* TrueIf(bool condition) noexcept { return condition ? Duplicate("True").release() : nullptr; }

char* TrueIfEqual(const void* datum, std::int32_t code) noexcept {
  return TrueIf(datum != nullptr && *static_cast<const std::int32_t*>(datum) == code);
}

char* TrueIfMode(const void* datum, std::int32_t mode) noexcept {
  if (datum == nullptr) return nullptr;
  const auto& modes = *static_cast<const FaxModes*>(datum);
  if (modes.modes == nullptr || modes.count == nullptr) return nullptr;
  const std::int32_t count = std::clamp(*modes.count, 0, kMaxModes);
  return TrueIf(std::any_of(modes.modes, modes.modes + count, [&](std::int32_t reported) {
    return reported == mode || reported == mode + kAlternateModeOffset;
  }));
}

// One item of the list. Numbers that a line does not report stay those of the line before it.
struct FaxLine {
  std::int32_t id = 0;
  std::int32_t type = 0;
  std::int32_t id_support = 0;
};

constexpr auto kOptions = std::to_array<UpdateOption>({
    ValueOption("QVFAXNumOfLine", zGetBinaryString, "0", Input::kFaxLines,
                {Input::kFaxLines, Input::kFaxType}),
    DecidedOption("QVFAXLineType", zGetFaxOptionString, "None", {Input::kFaxType}),
    DecidedOption("QVFAXDialLineA", zGetLine1IDSupport, "False",
                  {Input::kFaxIdSupport, Input::kDeviceName}),
    DecidedOption("QVFAXDialLineB", zGetLine2IDSupport, "False",
                  {Input::kFaxIdSupport, Input::kDeviceName}),
    DecidedOption("QVFAXDialLineC", zGetLine3IDSupport, "False",
                  {Input::kFaxIdSupport, Input::kDeviceName}),
    DecidedOption("QVFAXDialLineD", zGetLine4IDSupport, "False", {Input::kFaxIdSupport}),
    DecidedOption("QVFAXIPFAXINTRA", zGetIntranetSupport, "False", {Input::kFaxModes}),
    DecidedOption("QVFAXIPFAXVoIP", zGetVoIPSupport, "False", {Input::kFaxModes}),
    DecidedOption("QVFAXIPFAXNGN", zGetNGNSupport, "False", {Input::kFaxModes}),
    DecidedOption("QVFAXIPFAXMyNumberNGN", zGetNGNMyNumberSupport, "False", {Input::kFaxModes}),
});
using FaxRows = OptionRows<kOptions.size()>;

bool HasIdSupport(AnalyzeContext* context) noexcept {
  char* name = nullptr;
  const XmlKeyDescriptor key = TextKey(Input::kDeviceName, name);
  const bool is_read = ReadKeys(*context, {&key, 1}) == 0;
  const CString owned_name(name);
  return is_read && name != nullptr &&
         std::ranges::find(kDevicesWithIdSupport, std::string_view(name)) !=
             kDevicesWithIdSupport.end();
}

void SetIdSupport(FaxRows& rows) noexcept {
  for (std::size_t line = kDialLineA; line <= kDialLineC; ++line) {
    if (rows[line].value == nullptr) rows[line].value = Duplicate("True").release();
  }
}

std::int32_t UpdateFaxLines(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  std::int32_t lines = std::max(context->documents[kDocument].count, 0);
  FaxLine line;
  LongArray<kMaxModes> codes(Input::kFaxModes);
  const FaxModes modes{codes.Data(), &codes.Count()};
  FaxRows rows(
      RowsOf(kOptions, {&lines, &line.type, &line.id_support, &line.id_support, &line.id_support,
                        &line.id_support, &modes, &modes, &modes, &modes}));
  std::int32_t status = 0;
  bool has_uncounted = false;
  const std::int32_t items = lines;
  for (std::int32_t item = 0; item < items; ++item) {
    status = ReadListItem(context, kDocument, item,
                          {LongKey(Input::kFaxId, line.id), LongKey(Input::kFaxType, line.type),
                           LongKey(Input::kFaxIdSupport, line.id_support), codes.Key()});
    if (status != 0) continue;
    has_uncounted = has_uncounted || line.type == kUncountedType;
    rows.RunGetters();
  }
  if (has_uncounted) {
    --lines;
    RunGetters({rows.Data(), 1});
  }
  if (status != 0) return status;
  if (HasIdSupport(context)) SetIdSupport(rows);
  return rows.Apply(target);
}

}  // namespace

constinit const UpdateHandler kFaxLineListUpdate{
    IA_EXPORTED(z_Update_Prn_fax_line_list),
    .guard = IA_DOCUMENT_DEVICENAME,
    .options = kOptions,
    .run = UpdateFaxLines,
};

}  // namespace ia

char* zGetFaxOptionString(const void* datum) noexcept {
  if (datum == nullptr) return nullptr;
  const bool is_isdn = *static_cast<const int32_t*>(datum) == ia::kIsdnType;
  return ia::Duplicate(is_isdn ? "isdn" : "public").release();
}

char* zGetLine1IDSupport(const void* datum) noexcept { return ia::TrueIfEqual(datum, 18); }
char* zGetLine2IDSupport(const void* datum) noexcept { return ia::TrueIfEqual(datum, 19); }
char* zGetLine3IDSupport(const void* datum) noexcept { return ia::TrueIfEqual(datum, 20); }
char* zGetLine4IDSupport(const void* datum) noexcept { return ia::TrueIfEqual(datum, 21); }
char* zGetIntranetSupport(const void* datum) noexcept { return ia::TrueIfMode(datum, 17); }
char* zGetVoIPSupport(const void* datum) noexcept { return ia::TrueIfMode(datum, 18); }
char* zGetNGNSupport(const void* datum) noexcept { return ia::TrueIfMode(datum, 16); }
char* zGetNGNMyNumberSupport(const void* datum) noexcept { return ia::TrueIfMode(datum, 69); }

int32_t z_Update_Prn_fax_line_list(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kFaxLineListUpdate.run(context, {options, true});
}

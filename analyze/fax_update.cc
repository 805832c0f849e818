// The update handler of fax lines.
#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "analyze/document_keys.h"
#include "analyze/option_rows.h"
#include "info_analyze/list_getters.h"
#include "info_analyze/printer_updates.h"
#include "info_common/owned.h"

static_assert(sizeof(FaxModes) == 2 * sizeof(void*));
static_assert(offsetof(FaxModes, count) == 1 * sizeof(void*));

namespace ia {
namespace {

constexpr std::int32_t kDocument = IA_DOCUMENT_FAX_LINE_LIST;
constexpr std::int32_t kMostModes = 20;
constexpr std::int32_t kIsdnType = 2;
constexpr std::int32_t kUncountedType = 3;
constexpr std::int32_t kModeTwin = 128;  // each mode also counts with this added

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
  const std::int32_t count = std::clamp(*modes.count, 0, kMostModes);
  return TrueIf(std::any_of(modes.modes, modes.modes + count, [&](std::int32_t reported) {
    return reported == mode || reported == mode + kModeTwin;
  }));
}

// One item of the list. Numbers that a line does not report stay those of the line before it.
struct FaxLine {
  std::int32_t id = 0;
  std::int32_t type = 0;
  std::int32_t id_support = 0;
};

using FaxRows = OptionRows<10>;

bool HasIdSupport(AnalyzeContext* context) noexcept {
  char* name = nullptr;
  const XmlKeyDescriptor key = TextKey(IA_DOCUMENT_DEVICENAME, "devicename", name);
  const bool is_read = analyze_common_readxml(context, &key, 1) == 0;
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

}  // namespace
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
  if (context == nullptr || options == nullptr) return -1;
  int32_t lines = std::max(context->documents[ia::kDocument].count, 0);
  ia::FaxLine line;
  ia::LongArray<ia::kMostModes> codes(ia::kDocument, "communication_mode");
  const FaxModes modes{codes.Data(), &codes.Count()};
  ia::FaxRows rows(std::to_array<OptionSetter>({
      {"QVFAXNumOfLine", nullptr, zGetBinaryString, &lines, "0"},
      {"QVFAXLineType", nullptr, zGetFaxOptionString, &line.type, "None"},
      {"QVFAXDialLineA", nullptr, zGetLine1IDSupport, &line.id_support, "False"},
      {"QVFAXDialLineB", nullptr, zGetLine2IDSupport, &line.id_support, "False"},
      {"QVFAXDialLineC", nullptr, zGetLine3IDSupport, &line.id_support, "False"},
      {"QVFAXDialLineD", nullptr, zGetLine4IDSupport, &line.id_support, "False"},
      {"QVFAXIPFAXINTRA", nullptr, zGetIntranetSupport, &modes, "False"},
      {"QVFAXIPFAXVoIP", nullptr, zGetVoIPSupport, &modes, "False"},
      {"QVFAXIPFAXNGN", nullptr, zGetNGNSupport, &modes, "False"},
      {"QVFAXIPFAXMyNumberNGN", nullptr, zGetNGNMyNumberSupport, &modes, "False"},
  }));
  int32_t status = 0;
  bool has_uncounted = false;
  const int32_t items = lines;
  for (int32_t item = 0; item < items; ++item) {
    status = ia::ReadListItem(
        context, ia::kDocument, item,
        {ia::LongKey(ia::kDocument, "id", line.id), ia::LongKey(ia::kDocument, "type", line.type),
         ia::LongKey(ia::kDocument, "id_support", line.id_support), codes.Key()});
    if (status != 0) continue;
    has_uncounted = has_uncounted || line.type == ia::kUncountedType;
    rows.RunGetters();
  }
  if (has_uncounted) {
    --lines;
    zGetOptionString(rows.Data(), 1);
  }
  if (status != 0) return status;
  if (ia::HasIdSupport(context)) ia::SetIdSupport(rows);
  return rows.Apply(options);
}

// The update handlers that read a few plain values of one document each.
#include <array>
#include <span>

#include "analyze/document_keys.h"
#include "analyze/ppd_value_list.h"
#include "info_analyze/option_setter.h"
#include "info_analyze/printer_updates.h"
#include "info_common/ascii.h"
#include "info_common/owned.h"

namespace ia {
namespace {

// A number of a document and the option that it sets.
struct NumberOption {
  const char* key;
  const char* keyword;
  OptionGetter getter;
  const char* default_value;
};

constexpr auto kAccessories = std::to_array<NumberOption>({
    {"hd", "QVHardDisk", zGetBoolString, "False"},
    {"memory", "QVTotalMemSize", zGetBinaryString, "0"},
});

constexpr auto kResolutions = std::to_array<NumberOption>({
    {"resolution_300", "QVEnableQuick", zGetBoolString, "False"},
    {"resolution_600", "QVEnableFine", zGetBoolString, "False"},
    {"resolution_1200", "QVEnableSuperFine", zGetBoolString, "False"},
});

template <std::size_t N>
std::int32_t SetNumberOptions(AnalyzeContext* context, std::int32_t document,
                              const std::array<NumberOption, N>& table,
                              OptionList* options) noexcept {
  std::array<std::int32_t, N> numbers{};
  std::array<XmlKeyDescriptor, N> keys;
  std::array<OptionSetter, N> rows;
  for (std::size_t i = 0; i < N; ++i) {
    keys[i] = LongKey(document, table[i].key, numbers[i]);
    rows[i] = {table[i].keyword, nullptr, table[i].getter, &numbers[i], table[i].default_value};
  }
  return zReadXMLandSetOptionList(context, keys.data(), N, rows.data(), N, options);
}

// What the Functions document says; the texts are owned.
struct Functions {
  std::int32_t duplex = 0;
  std::int32_t management = 0;
  std::int32_t trustprint = 0;
  std::int32_t securedprint = 0;
  char* authentication_user = nullptr;
  char* authentication_job_password = nullptr;
  char* authentication_f_code = nullptr;
  std::int32_t must_authentication = 0;

  Functions() noexcept = default;
  Functions(const Functions&) = delete;
  Functions& operator=(const Functions&) = delete;
  ~Functions() {
    std::free(authentication_user);
    std::free(authentication_job_password);
    std::free(authentication_f_code);
  }
};

std::int32_t SetFunctionOptions(AnalyzeContext* context, Functions& functions,
                                OptionList* options) noexcept {
  constexpr std::int32_t kDocument = IA_DOCUMENT_FUNCTIONS;
  const auto keys = std::to_array<XmlKeyDescriptor>({
      LongKey(kDocument, "duplex", functions.duplex),
      LongKey(kDocument, "management", functions.management),
      LongKey(kDocument, "trustprint", functions.trustprint),
      LongKey(kDocument, "securedprint", functions.securedprint),
      TextKey(kDocument, "authentication_user", functions.authentication_user),
      TextKey(kDocument, "authentication_job_password", functions.authentication_job_password),
      TextKey(kDocument, "authentication_f_code", functions.authentication_f_code),
      LongKey(kDocument, "must_authentication", functions.must_authentication),
  });
  auto rows = std::to_array<OptionSetter>({
      {"QVDupUnit", nullptr, zGetBoolString, &functions.duplex, "False"},
      {"QVUseJobAccount", nullptr, zGetBoolString, &functions.management, "False"},
      {"QVEnableTrustPrint", nullptr, zGetBoolString, &functions.trustprint, "False"},
      {"QVUseSecuredPrint", nullptr, zGetBoolString, &functions.securedprint, "False"},
      {"QVUseCSModeJobAccount", nullptr, zGetString, &functions.authentication_user, "mode1"},
      {"QVUseCSModeSecured", nullptr, zGetString, &functions.authentication_job_password, "mode1"},
      {"QVUseCSModeFCode", nullptr, zGetString, &functions.authentication_f_code, "mode1"},
      {"QVUseUsrManagement", nullptr, zGetBoolString, &functions.must_authentication, "False"},
  });
  return zReadXMLandSetOptionList(context, keys.data(), keys.size(), rows.data(), rows.size(),
                                  options);
}

bool IsMode4(const char* mode) noexcept {
  return mode != nullptr && EqualsIgnoringCase(mode, "mode4");
}

bool NamesMode2(const char* mode) noexcept {
  return mode != nullptr && ContainsIgnoringCase(mode, "mode2");
}

const char* DriverMode(bool is_mode2) noexcept { return is_mode2 ? "mode2" : "mode1"; }

// The driver knows two modes only, so whatever else a device names (mode 3, say) ends as "mode1".
// These entries come second and so replace the device's own words.
void CorrectModes(const Functions& functions, OptionList* options) noexcept {
  const bool user_mode4 = IsMode4(functions.authentication_user);
  OptionList_Add(options, "QVUseCSModeJobAccount",
                 DriverMode(user_mode4 || NamesMode2(functions.authentication_user)));
  OptionList_Add(options, "QVUseCSModeSecured",
                 DriverMode(NamesMode2(functions.authentication_job_password)));
  OptionList_Add(options, "QVUseCSModeFCode",
                 DriverMode(NamesMode2(functions.authentication_f_code)));
  if (functions.must_authentication == 0 && functions.management == 1 && user_mode4) {
    OptionList_Add(options, "QVUseUsrManagement", "True");
  }
}

std::int32_t SetFittedNumber(AnalyzeContext* context, const char* list_key, std::int32_t number,
                             OptionSetter row, OptionList* options) noexcept {
  const std::int32_t fitted = FitToPpdValueList(context->ppd_options, list_key, number);
  row.getter_arg = &fitted;
  zGetOptionString(&row, 1);
  return zSetOptionList(&row, 1, options);
}

}  // namespace
}  // namespace ia

int32_t z_Update_Prn_accessories(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::SetNumberOptions(context, IA_DOCUMENT_ACCESSORIES, ia::kAccessories, options);
}

int32_t z_Update_Prn_functions(AnalyzeContext* context, OptionList* options) noexcept {
  ia::Functions functions;
  const int32_t status = ia::SetFunctionOptions(context, functions, options);
  if (status == 0) ia::CorrectModes(functions, options);
  return status;
}

int32_t z_Update_Prn_specid(AnalyzeContext* context, OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  int32_t version = 0;
  const XmlKeyDescriptor key = ia::LongKey(IA_DOCUMENT_SPECID, "version", version);
  const int32_t status = analyze_common_readxml(context, &key, 1);
  if (status != 0) return status;
  return ia::SetFittedNumber(context, "QVValueListSpecID", version,
                             {"QVSpecID", nullptr, zGetSpecIDString, nullptr, "0000"}, options);
}

int32_t z_Update_Prn_platformVer(AnalyzeContext* context, OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  char* name = nullptr;
  int32_t version = 0;
  const auto keys = std::to_array<XmlKeyDescriptor>({
      ia::TextKey(IA_DOCUMENT_SPECID, "platform_name", name),
      ia::LongKey(IA_DOCUMENT_SPECID, "platform_version", version),
  });
  const int32_t status = analyze_common_readxml(context, keys.data(), keys.size());
  const ia::CString owned_name(name);
  if (status != 0) return status;
  if (name == nullptr || !ia::EqualsIgnoringCase(name, "NCPP")) return 0;
  return ia::SetFittedNumber(context, "QVValueListPlatformVersion", version,
                             {"QVPlatformVersion", nullptr, zGetHexString, nullptr, "0000"},
                             options);
}

int32_t z_Update_Prn_resolutions(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::SetNumberOptions(context, IA_DOCUMENT_RESOLUTIONS, ia::kResolutions, options);
}

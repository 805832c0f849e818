// The update handlers that read a few plain values of one document each.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "analyze/document_keys.h"
#include "analyze/option_rows.h"
#include "analyze/query/ppd_value_list.h"
#include "analyze/query/update_handlers.h"
#include "bidi/key_reader.h"
#include "info_analyze/option_setter.h"
#include "info_analyze/printer_updates.h"
#include "info_common/ascii.h"
#include "info_common/option_table.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr auto kAccessories = std::to_array<UpdateOption>({
    ValueOption("QVHardDisk", zGetBoolString, "False", Input::kHd),
    ValueOption("QVTotalMemSize", zGetBinaryString, "0", Input::kMemory),
});

constexpr auto kResolutions = std::to_array<UpdateOption>({
    ValueOption("QVEnableQuick", zGetBoolString, "False", Input::kResolution300),
    ValueOption("QVEnableFine", zGetBoolString, "False", Input::kResolution600),
    ValueOption("QVEnableSuperFine", zGetBoolString, "False", Input::kResolution1200),
});

constexpr auto kFunctions = std::to_array<UpdateOption>({
    ValueOption("QVDupUnit", zGetBoolString, "False", Input::kDuplex),
    ValueOption("QVUseJobAccount", zGetBoolString, "False", Input::kManagement),
    ValueOption("QVEnableTrustPrint", zGetBoolString, "False", Input::kTrustPrint),
    ValueOption("QVUseSecuredPrint", zGetBoolString, "False", Input::kSecuredPrint),
    ValueOption("QVUseCSModeJobAccount", zGetString, "mode1", Input::kUserMode),
    ValueOption("QVUseCSModeSecured", zGetString, "mode1", Input::kPasswordMode),
    ValueOption("QVUseCSModeFCode", zGetString, "mode1", Input::kCodeMode),
    ValueOption("QVUseUsrManagement", zGetBoolString, "False", Input::kMustAuthenticate,
                {Input::kManagement, Input::kUserMode, Input::kMustAuthenticate}),
});

constexpr auto kSpecId = std::to_array<UpdateOption>({
    ValueOption("QVSpecID", zGetSpecIDString, "0000", Input::kSpecVersion,
                {Input::kSpecVersion, Input::kSpecIdValues}),
});

constexpr auto kPlatform = std::to_array<UpdateOption>({
    ValueOption("QVPlatformVersion", zGetHexString, "0000", Input::kPlatformVersion,
                {Input::kPlatformName, Input::kPlatformVersion, Input::kPlatformValues}),
});

std::int32_t ReadAndSet(AnalyzeContext* context, std::span<const XmlKeyDescriptor> keys,
                        std::span<OptionSetter> rows, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  const std::int32_t status = ReadKeys(*context, keys);
  if (status != 0) return status;
  RunGetters(rows);
  return SetOptions(rows.data(), static_cast<std::int32_t>(rows.size()), target);
}

template <std::size_t N>
std::int32_t SetNumberOptions(AnalyzeContext* context, const std::array<UpdateOption, N>& table,
                              const OptionTarget& target) noexcept {
  std::array<std::int32_t, N> numbers{};
  std::array<XmlKeyDescriptor, N> keys;
  std::array<OptionSetter, N> rows;
  for (std::size_t i = 0; i < N; ++i) {
    keys[i] = LongKey(static_cast<Input>(table[i].value_input), numbers[i]);
    rows[i] = RowOf(table[i], &numbers[i]);
  }
  return ReadAndSet(context, keys, rows, target);
}

// The values of the Functions document; the texts are owned.
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
                                const OptionTarget& target) noexcept {
  const auto keys = std::to_array<XmlKeyDescriptor>({
      LongKey(Input::kDuplex, functions.duplex),
      LongKey(Input::kManagement, functions.management),
      LongKey(Input::kTrustPrint, functions.trustprint),
      LongKey(Input::kSecuredPrint, functions.securedprint),
      TextKey(Input::kUserMode, functions.authentication_user),
      TextKey(Input::kPasswordMode, functions.authentication_job_password),
      TextKey(Input::kCodeMode, functions.authentication_f_code),
      LongKey(Input::kMustAuthenticate, functions.must_authentication),
  });
  auto rows =
      RowsOf(kFunctions, {&functions.duplex, &functions.management, &functions.trustprint,
                          &functions.securedprint, &functions.authentication_user,
                          &functions.authentication_job_password, &functions.authentication_f_code,
                          &functions.must_authentication});
  return ReadAndSet(context, keys, rows, target);
}

bool IsMode4(const char* mode) noexcept {
  return mode != nullptr && EqualsIgnoringCase(mode, "mode4");
}

bool NamesMode2(const char* mode) noexcept {
  return mode != nullptr && ContainsIgnoringCase(mode, "mode2");
}

const char* DriverMode(bool is_mode2) noexcept { return is_mode2 ? "mode2" : "mode1"; }

// The driver supports only two modes, so any other mode of a device (such as mode 3) becomes
// "mode1". These entries come second and so replace the device's own words.
void CorrectModes(const Functions& functions, OptionList& options) noexcept {
  const bool user_mode4 = IsMode4(functions.authentication_user);
  AddOption(options, "QVUseCSModeJobAccount",
            DriverMode(user_mode4 || NamesMode2(functions.authentication_user)));
  AddOption(options, "QVUseCSModeSecured",
            DriverMode(NamesMode2(functions.authentication_job_password)));
  AddOption(options, "QVUseCSModeFCode", DriverMode(NamesMode2(functions.authentication_f_code)));
  if (functions.must_authentication == 0 && functions.management == 1 && user_mode4) {
    AddOption(options, "QVUseUsrManagement", "True");
  }
}

std::int32_t SetFittedNumber(AnalyzeContext* context, Input list, std::int32_t number,
                             const UpdateOption& option, const OptionTarget& target) noexcept {
  const std::int32_t fitted = FitToPpdValueList(context->ppd_options, KeyOf(list).key, number);
  OptionSetter row = RowOf(option, &fitted);
  RunGetters({&row, 1});
  return SetOptions(&row, 1, target);
}

std::int32_t UpdateAccessories(AnalyzeContext* context, const OptionTarget& target) noexcept {
  return SetNumberOptions(context, kAccessories, target);
}

std::int32_t UpdateFunctions(AnalyzeContext* context, const OptionTarget& target) noexcept {
  Functions functions;
  const std::int32_t status = SetFunctionOptions(context, functions, target);
  if (status == 0) CorrectModes(functions, *target.list);
  return status;
}

std::int32_t UpdateSpecId(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  std::int32_t version = 0;
  const XmlKeyDescriptor key = LongKey(Input::kSpecVersion, version);
  const std::int32_t status = ReadKeys(*context, {&key, 1});
  if (status != 0) return status;
  return SetFittedNumber(context, Input::kSpecIdValues, version, kSpecId.front(), target);
}

std::int32_t UpdatePlatform(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  char* name = nullptr;
  std::int32_t version = 0;
  const auto keys = std::to_array<XmlKeyDescriptor>({
      TextKey(Input::kPlatformName, name),
      LongKey(Input::kPlatformVersion, version),
  });
  const std::int32_t status = ReadKeys(*context, keys);
  const CString owned_name(name);
  if (status != 0) return status;
  if (name == nullptr || !EqualsIgnoringCase(name, "NCPP")) return 0;
  return SetFittedNumber(context, Input::kPlatformValues, version, kPlatform.front(), target);
}

std::int32_t UpdateResolutions(AnalyzeContext* context, const OptionTarget& target) noexcept {
  return SetNumberOptions(context, kResolutions, target);
}

}  // namespace

constinit const UpdateHandler kAccessoriesUpdate{
    IA_EXPORTED(z_Update_Prn_accessories),
    .guard = IA_DOCUMENT_ACCESSORIES,
    .options = kAccessories,
    .run = UpdateAccessories,
};
constinit const UpdateHandler kFunctionsUpdate{
    IA_EXPORTED(z_Update_Prn_functions),
    .guard = IA_DOCUMENT_FUNCTIONS,
    .options = kFunctions,
    .run = UpdateFunctions,
};
constinit const UpdateHandler kSpecIdUpdate{
    IA_EXPORTED(z_Update_Prn_specid),
    .guard = IA_DOCUMENT_SPECID,
    .options = kSpecId,
    .run = UpdateSpecId,
};
constinit const UpdateHandler kPlatformUpdate{
    IA_EXPORTED(z_Update_Prn_platformVer),
    .guard = IA_DOCUMENT_FINISHER_LIST,
    .options = kPlatform,
    .run = UpdatePlatform,
};
constinit const UpdateHandler kResolutionsUpdate{
    IA_EXPORTED(z_Update_Prn_resolutions),
    .guard = IA_DOCUMENT_FAX_LINE_LIST,
    .options = kResolutions,
    .run = UpdateResolutions,
};

}  // namespace ia

int32_t z_Update_Prn_accessories(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kAccessoriesUpdate.run(context, {options, true});
}

int32_t z_Update_Prn_functions(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kFunctionsUpdate.run(context, {options, true});
}

int32_t z_Update_Prn_specid(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kSpecIdUpdate.run(context, {options, true});
}

int32_t z_Update_Prn_platformVer(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kPlatformUpdate.run(context, {options, true});
}

int32_t z_Update_Prn_resolutions(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kResolutionsUpdate.run(context, {options, true});
}

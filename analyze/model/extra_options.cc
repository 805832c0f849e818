// QVInsertUnit of the one driver model whose insert unit is reported as a tray.
#include "analyze/model/extra_options.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "analyze/document_keys.h"
#include "analyze/model/handler.h"
#include "analyze/model/model_matrix.h"
#include "info_analyze/model_options.h"
#include "info_analyze/printer_updates.h"
#include "info_common/option_table.h"

namespace ia {
namespace {

constexpr std::string_view kModelWithExtraOptions = "RA-Z5";
constexpr UpdateOption kInsertUnitOption =
    ModelOption("QVInsertUnit", nullptr, "None", IA_FAMILY_EXTRA_OPTIONS);

struct InsertUnit {
  std::int32_t alias;
  const char* value;
};
constexpr auto kInsertUnits = std::to_array<InsertUnit>({
    {196, "INSU1"},
    {198, "MINSU1"},
});

const char* ValueOfTray(std::int32_t alias) noexcept {
  for (const InsertUnit& unit : kInsertUnits) {
    if (unit.alias == alias) return unit.value;
  }
  return nullptr;
}

// The first tray that is an insert unit decides; later ones are not read.
std::int32_t SetInsertUnit(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  constexpr std::int32_t kDocument = IA_DOCUMENT_TRAY_LIST;
  const char* value = nullptr;
  std::int32_t status = 0;
  for (std::int32_t item = 0; item < context->documents[kDocument].count && value == nullptr;
       ++item) {
    LongArray<1> alias(Input::kTrayAlias);
    status = ReadListItem(context, kDocument, item, {alias.Key()});
    if (status == 0 && alias.Count() > 0) value = ValueOfTray(alias.Data()[0]);
  }
  if (value == nullptr && target.with_defaults) value = kInsertUnitOption.default_value;
  if (value != nullptr) AddOption(*target.list, kInsertUnitOption.keyword, value);
  return status;
}

constexpr Handler<std::int32_t (*)(AnalyzeContext*, OptionList*),
                  std::int32_t (*)(AnalyzeContext*, const OptionTarget&) noexcept>
    kRowan{
        IA_EXPORTED(analyze_GetExtraOptionStringROWAN),
        .inputs = {Input::kTrayAlias},
        .rule = SetInsertUnit,
    };

// The model code must be equal, not only begin with it.
bool HasExtraOptions(const char* model_code) noexcept {
  return model_code != nullptr && kModelWithExtraOptions == model_code;
}

std::int32_t UpdateExtraOptions(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  return HasExtraOptions(context->driver_name) ? kRowan.rule(context, target) : 0;
}

constexpr auto kExtraOptions = std::to_array<UpdateOption>({kInsertUnitOption});

std::int32_t Find(const char* code) noexcept { return HasExtraOptions(code) ? 0 : IA_OTHER_MODELS; }

constexpr ModelCell kModel{.code = kModelWithExtraOptions.data(),
                           .handler = kRowan.name,
                           .inputs = &kRowan.inputs,
                           .is_whole_code = true};
constexpr ModelCell kOtherModels{
    .code = "", .handler = nullptr, .inputs = nullptr, .is_whole_code = false};

std::optional<ModelCell> Cell(std::int32_t row) noexcept {
  switch (row) {
    case 0:
      return kModel;
    case IA_OTHER_MODELS:
      return kOtherModels;
    default:
      return {};
  }
}

}  // namespace

constinit const ModelColumn kExtraOptionsColumn{Find, Cell};

constinit const UpdateHandler kExtraUpdate{
    IA_EXPORTED(z_Update_Prn_extra),
    .guard = IA_GUARD_FLAGS,
    .options = kExtraOptions,
    .run = UpdateExtraOptions,
};

}  // namespace ia

int32_t analyze_GetExtraOptionStringROWAN(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kRowan.rule(context, {options, true});
}

int32_t z_Update_Prn_extra(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kExtraUpdate.run(context, {options, true});
}

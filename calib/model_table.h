// The four tables that name the handler of a driver model.
#ifndef CALIB_MODEL_TABLE_H_
#define CALIB_MODEL_TABLE_H_

#include <span>
#include <string_view>

#include "analyze/model_row.h"
#include "info_analyze/analyzer.h"
#include "info_analyze/calibration.h"

namespace ia {

template <class Handler>
struct CalibModelEntry {
  std::string_view model;
  Handler handler;  // never null
};
template <class Handler>
using CalibModelTable = std::span<const CalibModelEntry<Handler>>;

// Each table is in the file of its handlers.
extern const CalibModelTable<Calib3InfoHandler> kCalib3InfoModels;
extern const CalibModelTable<Calib3SettingsHandler> kCalib3SettingsModels;
extern const CalibModelTable<Calib4InfoHandler> kCalib4InfoModels;
extern const CalibModelTable<Calib4SettingsHandler> kCalib4SettingsModels;

// The handler of the analyser's model, or the other one when the model has no row.
template <class Handler>
[[nodiscard]] Handler FindHandler(CalibModelTable<Handler> table, const AnalyzeContext& context,
                                  Handler other) noexcept {
  const auto* const row = FindModel(table, context.driver_name);
  return row != nullptr ? row->handler : other;
}

}  // namespace ia

#endif  // CALIB_MODEL_TABLE_H_

// The four tables that tell which handler answers for a driver model.
#ifndef CALIB_MODEL_TABLE_H_
#define CALIB_MODEL_TABLE_H_

#include <array>
#include <cstddef>
#include <string_view>

#include "analyze/model_row.h"
#include "info_analyze/analyzer.h"

namespace ia {

template <class Handler>
struct CalibModelEntry {
  std::string_view model;
  Handler handler;  // never null
};

// The handler of the analyser's model, or the other one when the model has no row.
template <class Handler, std::size_t N>
[[nodiscard]] Handler FindHandler(const std::array<CalibModelEntry<Handler>, N>& table,
                                  const AnalyzeContext& context, Handler other) noexcept {
  const auto* const row = FindModel<CalibModelEntry<Handler>>(table, context.driver_name);
  return row != nullptr ? row->handler : other;
}

}  // namespace ia

#endif  // CALIB_MODEL_TABLE_H_

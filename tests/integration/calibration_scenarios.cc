#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "info_analyze/info_analyze.h"
#include "tests/integration/allocation_scenarios.h"
#include "tests/integration/sample_setting.h"

namespace ia_test {
namespace {

std::string Shown(const std::uint16_t* set, const std::uint16_t* half) {
  if (set == nullptr) return "none";
  return std::equal(set, set + IA_CALIB_SET_VALUES, half) ? "copy" : "other";
}

// The second set is made after the first.
void ExpectCurveSets(Round& round, const char* model, const char* gradation,
                     const std::uint16_t* table) {
  std::string code = model;
  AnalyzeContext context = {};
  context.driver_name = code.data();
  const CallersList options;
  OptionList_Add(options.head(), "QVGradation", gradation);
  Calib3Info info = {};
  const int32_t status = round.Try(
      [&] { return Analyze_Info_CreateDefault_Calib3Info(&context, options.head(), &info); });
  const std::string answer = std::to_string(status) + " " + Shown(info.first_set, table) + " " +
                             Shown(info.second_set, table + IA_CALIB_SET_VALUES);
  round.Expect(answer == "0 copy copy", answer == "-1 none none" || answer == "-1 copy none",
               answer);
  CallFaults::Instance().Release(info.first_set);
  CallFaults::Instance().Release(info.second_set);
}

void CopiesCurves(Round& round) { ExpectCurveSets(round, "RB-W7", "Normal", LARCH_Def_Calib); }
void CopiesTwoBitCurves(Round& round) {
  ExpectCurveSets(round, "RB-P9", "High1", Linden_Def_Calib_2bit);
}
void CopiesFourBitCurves(Round& round) {
  ExpectCurveSets(round, "RB-J9", "High2", PinePoplar_Def_Calib_4bit);
}

}  // namespace

std::span<const Scenario> CalibrationScenarios() {
  static const auto scenarios = std::to_array<Scenario>({
      {"CopiesCurves", CopiesCurves},
      {"CopiesTwoBitCurves", CopiesTwoBitCurves},
      {"CopiesFourBitCurves", CopiesFourBitCurves},
  });
  return scenarios;
}

}  // namespace ia_test

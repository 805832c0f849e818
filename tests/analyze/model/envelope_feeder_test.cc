#include <gtest/gtest.h>

#include <cstdint>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/input_handlers.h"

namespace ia_test {
namespace {

class EnvelopeFeeder : public InputHandlers {
 protected:
  OptionRows ForTrays(const Trays& trays) {
    return Appended(analyze_GetQVEnvelopeFeederCommon, trays);
  }
};

const OptionRows kFitted{{"QVEnvelopeFeeder", "True", "False"}};
const OptionRows kNotFitted{{"QVEnvelopeFeeder", "False", "False"}};

TEST_F(EnvelopeFeeder, IsFittedWhenSomeTrayHasAlias6) {
  EXPECT_EQ(ForTrays({OfAlias(6)}), kFitted);
  EXPECT_EQ(ForTrays({OfAlias(101), OfAlias(102), OfAlias(6)}), kFitted);
  EXPECT_EQ(ForTrays({OfAlias(6), OfAlias(101), OfAlias(6)}), kFitted);
}

TEST_F(EnvelopeFeeder, IsNotFittedForOtherAliases) {
  for (const std::int32_t alias : {5, 7, 0, -6, 16, 60, 161}) {
    EXPECT_EQ(ForTrays({OfAlias(alias)}), kNotFitted) << alias;
  }
}

TEST_F(EnvelopeFeeder, DoesNotDependOnOtherFields) {
  EXPECT_EQ(ForTrays({{6, 161, 6, 6}}), kNotFitted);
}

}  // namespace
}  // namespace ia_test

#include "cli/terminal/nearest.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using ia::cli::EditDistance;
using ia::cli::FindNearest;

const std::vector<std::string> kVerbs = {"explain", "models", "query", "queues", "uri"};

TEST(EditDistance, CountsBytesToInsertRemoveOrReplace) {
  EXPECT_EQ(EditDistance("", ""), 0U);
  EXPECT_EQ(EditDistance("uri", ""), 3U);
  EXPECT_EQ(EditDistance("", "uri"), 3U);
  EXPECT_EQ(EditDistance("kitten", "sitting"), 3U);
  EXPECT_EQ(EditDistance("query", "query"), 0U);
}

TEST(FindNearest, FindsTheWordThatBeginsLikeIt) {
  EXPECT_EQ(FindNearest("ex", kVerbs), "explain");
  EXPECT_EQ(FindNearest("quer", kVerbs), "query");
}

TEST(FindNearest, FindsAWordWithATypingError) {
  EXPECT_EQ(FindNearest("qurey", kVerbs), "query");
  EXPECT_EQ(FindNearest("queus", kVerbs), "queues");
  EXPECT_EQ(FindNearest("model", kVerbs), "models");
}

TEST(FindNearest, FindsNothingForADifferentWord) {
  EXPECT_EQ(FindNearest("elephant", kVerbs), std::nullopt);
  EXPECT_EQ(FindNearest(std::string(100'000, 'q'), kVerbs), std::nullopt);
  EXPECT_EQ(FindNearest("query", {}), std::nullopt);
}

}  // namespace

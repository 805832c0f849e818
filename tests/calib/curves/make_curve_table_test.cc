// The program that the build runs for each file of known points.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "calib/curves/curve_table.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

using testing::HasSubstr;

class MakeCurveTable : public testing::Test {
 protected:
  // Returns the exit status; Errors() is what the program printed on standard error.
  int Run(const std::string& arguments) const {
    const std::string command =
        IA_TEST_MAKE_CURVE_TABLE " " + arguments + " 2> " + (folder_ / "errors");
    return WEXITSTATUS(std::system(command.c_str()));
  }
  std::string Errors() const { return ReadFile(folder_ / "errors"); }

  static std::string ReadFile(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  static std::string GoodFile() {
    return ReadFile(IA_TEST_SOURCE "/calib/curves/LARCH_Def_Calib.csv");
  }

  const TempFolder folder_;
  const std::string numbers_ = folder_ / "table.inc";
};

TEST_F(MakeCurveTable, WritesTheNumbersOfTheWholeCurves) {
  std::ifstream file(IA_TEST_SOURCE "/calib/curves/LARCH_Def_Calib.csv");
  const std::string numbers = ia::FormatNumbers(ia::Interpolate(ia::ReadKnownLevels(file)));
  folder_.Write("good.csv", GoodFile());
  EXPECT_EQ(Run((folder_ / "good.csv") + " " + numbers_), 0);
  EXPECT_EQ(Errors(), "");
  EXPECT_EQ(ReadFile(numbers_), numbers);
}

TEST_F(MakeCurveTable, RefusesABadFileWithItsNameAndLineAndWritesNothing) {
  std::string text = GoodFile();
  const std::size_t row = text.find("\n256,");
  ASSERT_NE(row, std::string::npos);
  text.insert(row, "\n100,1,1,1,1,1,1,1,1");
  folder_.Write("bad.csv", text);
  const auto line = std::count(text.begin(), text.begin() + static_cast<long>(row), '\n') + 2;
  EXPECT_EQ(Run((folder_ / "bad.csv") + " " + numbers_), 1);
  EXPECT_EQ(Errors(), (folder_ / "bad.csv") + ":" + std::to_string(line) +
                          ": error: curve 0 decreases from 12 to 1\n");
  EXPECT_FALSE(std::filesystem::exists(numbers_));
}

TEST_F(MakeCurveTable, ReportsAMissingFile) {
  EXPECT_EQ(Run((folder_ / "none.csv") + " " + numbers_), 1);
  EXPECT_EQ(Errors(), (folder_ / "none.csv") + ": error: No such file or directory\n");
}

TEST_F(MakeCurveTable, ReportsAFileThatCannotBeWritten) {
  folder_.Write("good.csv", GoodFile());
  EXPECT_EQ(Run((folder_ / "good.csv") + " " + (folder_ / "none/table.inc")), 1);
  EXPECT_EQ(Errors(), (folder_ / "none/table.inc") + ": error: No such file or directory\n");
}

TEST_F(MakeCurveTable, PrintsItsUsage) {
  EXPECT_EQ(Run(""), 1);
  EXPECT_THAT(Errors(), HasSubstr("usage: make_curve_table FILE.csv NUMBERS"));
}

}  // namespace
}  // namespace ia_test

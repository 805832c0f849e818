// The program that the build runs for each file of known points.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/cli/process.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

using testing::HasSubstr;

class MakeCurveTable : public testing::Test {
 protected:
  Finished Run(const std::vector<std::string>& arguments) const {
    Command command;
    command.arguments = {IA_TEST_MAKE_CURVE_TABLE};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    return RunProgram(command);
  }
  std::string GoodFile() const {
    return ReadFile(IA_TEST_SOURCE "/calib/curves/LARCH_Def_Calib.csv");
  }

  const TempFolder folder_;
  const std::string source_ = folder_ / "table.cc";
};

TEST_F(MakeCurveTable, NamesTheTableAfterItsFile) {
  folder_.Write("Linden_Def_Calib_2bit.csv", GoodFile());
  const Finished run = Run({folder_ / "Linden_Def_Calib_2bit.csv", source_});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(ReadFile(source_), HasSubstr("const uint16_t Linden_Def_Calib_2bit["));
}

TEST_F(MakeCurveTable, RefusesABadFileWithItsNameAndLineAndWritesNothing) {
  std::string text = GoodFile();
  const std::size_t row = text.find("\n256,");
  ASSERT_NE(row, std::string::npos);
  text.insert(row, "\n100,1,1,1,1,1,1,1,1");
  folder_.Write("bad.csv", text);
  const auto lines = Lines(text);
  const auto line =
      std::find(lines.begin(), lines.end(), "100,1,1,1,1,1,1,1,1") - lines.begin() + 1;
  const Finished run = Run({folder_ / "bad.csv", source_});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, (folder_ / "bad.csv") + ":" + std::to_string(line) +
                         ": error: curve 0 decreases from 12 to 1\n");
  EXPECT_FALSE(std::filesystem::exists(source_));
}

TEST_F(MakeCurveTable, TellsOfAFileThatIsNotThere) {
  const Finished run = Run({folder_ / "none.csv", source_});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, (folder_ / "none.csv") + ": error: No such file or directory\n");
}

TEST_F(MakeCurveTable, TellsOfASourceThatCannotBeWritten) {
  folder_.Write("good.csv", GoodFile());
  const Finished run = Run({folder_ / "good.csv", folder_ / "none/table.cc"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, (folder_ / "none/table.cc") + ": error: No such file or directory\n");
}

TEST_F(MakeCurveTable, TellsItsUsage) {
  const Finished run = Run({});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("usage: make_curve_table FILE.csv SOURCE"));
}

}  // namespace
}  // namespace ia_test

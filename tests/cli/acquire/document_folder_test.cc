#include "cli/acquire/document_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "cli/terminal/failure.h"
#include "tests/cli/process.h"
#include "tests/support/temp_folder.h"

namespace {

using ia::cli::Failure;
using ia::cli::PublishDocuments;
using ia_test::ReadFile;
using ia_test::TempFolder;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

const std::map<std::string, std::string> kFiles = {{"Specid.xml", "new"}, {"Functions.xml", "f"}};

std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

std::string FaultOf(const std::string& folder) {
  try {
    PublishDocuments(kFiles, folder);
  } catch (const Failure& failure) {
    return failure.parts().cause;
  }
  return "";
}

TEST(DocumentFolder, IsMadeWithItsParents) {
  const TempFolder root;
  PublishDocuments(kFiles, root / "a/b/");
  EXPECT_THAT(NamesIn(root / "a/b"), UnorderedElementsAre("Specid.xml", "Functions.xml"));
  EXPECT_THAT(NamesIn(root / "a"), UnorderedElementsAre("b")) << "nothing is left beside it";
}

TEST(DocumentFolder, CanBeReadByOthers) {
  const TempFolder root;
  const mode_t before = umask(022);
  PublishDocuments(kFiles, root / "a");
  umask(before);
  struct stat status = {};
  ASSERT_EQ(stat((root / "a/Specid.xml").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
  ASSERT_EQ(stat((root / "a").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0755U);
}

TEST(DocumentFolder, IsReplacedAsAWhole) {
  const TempFolder root;
  fs::create_directory(root / "a");
  root.Write("a/Specid.xml", "old");
  root.Write("a/Tray_list.xml", "old");
  PublishDocuments(kFiles, root / "a");
  EXPECT_THAT(NamesIn(root / "a"), UnorderedElementsAre("Specid.xml", "Functions.xml"));
  EXPECT_EQ(ReadFile(root / "a/Specid.xml"), "new");
  EXPECT_THAT(NamesIn(root / ""), UnorderedElementsAre("a"));
}

TEST(DocumentFolder, WithOtherFilesIsKept) {
  const TempFolder root;
  fs::create_directory(root / "a");
  root.Write("a/Specid.xml", "old");
  root.Write("a/notes", "mine");
  EXPECT_EQ(FaultOf(root / "a"), "it has other files, such as notes");
  EXPECT_EQ(ReadFile(root / "a/Specid.xml"), "old");
}

TEST(DocumentFolder, IsNotAFileOrALink) {
  const TempFolder root;
  root.Write("file", "");
  fs::create_directory(root / "a");
  fs::create_directory_symlink(root / "a", root / "link");
  EXPECT_EQ(FaultOf(root / "file"), "it is not a folder");
  EXPECT_EQ(FaultOf(root / "link"), "it is not a folder");
}

TEST(DocumentFolder, ThatCannotBeMadeIsAFailure) {
  const TempFolder root;
  root.Write("file", "");
  EXPECT_EQ(FaultOf(root / "file/a"), "Not a directory");
}

}  // namespace

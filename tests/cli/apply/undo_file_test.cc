#include "cli/apply/undo_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "cli/terminal/failure.h"
#include "tests/cli/process.h"
#include "tests/support/temp_folder.h"

namespace {

using ia::cli::Failure;
using ia::cli::ReadUndoFile;
using ia::cli::UndoFile;
using ia::cli::UndoRecord;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class UndoFiles : public testing::Test {
 protected:
  const ia_test::TempFolder root_;
  const std::string path_ = root_ / "undo.json";
  const UndoRecord record_ = {.server = "localhost:631",
                              .queue = "B\xc3\xbcro",
                              .defaults = {{"QVFinisher", {"None", "\xe4 \"\\/"}, "STFINT1"},
                                           {"QVPuncher", {""}, "PUNU2"}}};
};

TEST_F(UndoFiles, HaveWhatWasAdded) {
  UndoFile file(path_);
  EXPECT_TRUE(file.IsEmpty());
  file.Add(record_);
  file.Add({.server = "localhost:631", .queue = "second", .defaults = {}});
  EXPECT_FALSE(file.IsEmpty());
  const std::vector<UndoRecord> records = ReadUndoFile(path_);
  ASSERT_THAT(records, SizeIs(2));
  EXPECT_EQ(records[0].server, record_.server);
  EXPECT_EQ(records[0].queue, record_.queue);
  ASSERT_THAT(records[0].defaults, SizeIs(2));
  EXPECT_EQ(records[0].defaults[0].before, record_.defaults[0].before);
  EXPECT_EQ(records[0].defaults[0].after, "STFINT1");
  EXPECT_THAT(records[0].defaults[1].before, ElementsAre(""));
  EXPECT_EQ(records[1].queue, "second");
}

TEST_F(UndoFiles, AreNotMadeWithoutARecord) {
  {
    const UndoFile file(path_);
  }
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(UndoFiles, AreNotOverwritten) {
  root_.Write("undo.json", "mine");
  EXPECT_THROW(UndoFile file(path_), Failure);
  EXPECT_EQ(ia_test::ReadFile(path_), "mine");
}

TEST_F(UndoFiles, CanLackTheEndOfTheirLastLine) {
  {
    UndoFile(path_).Add(record_);
  }
  const std::string line = ia_test::ReadFile(path_);
  for (std::size_t size = 0; size < line.size(); ++size) {
    root_.Write("undo.json", line + line.substr(0, size));
    EXPECT_THAT(ReadUndoFile(path_), SizeIs(1)) << size;
  }
  root_.Write("undo.json", line.substr(0, 10));
  EXPECT_THAT(ReadUndoFile(path_), IsEmpty());
}

// A PPD's line could name a filter, which CUPS runs as a user of its own.
TEST_F(UndoFiles, CannotAddLinesToAPpd) {
  for (const char* const text : {"None\\n*cupsFilter2: x", "\\r", "\\u0000", "\\u001b"}) {
    root_.Write("undo.json",
                std::string(R"({"undo_version":1,"server":"s","queue":"q","defaults":[)") +
                    R"({"keyword":"X","before":[")" + text + R"("],"after":"A"}]})" + "\n");
    std::filesystem::permissions(path_, std::filesystem::perms(0600));
    EXPECT_THROW((void)ReadUndoFile(path_), Failure) << text;
  }
}

TEST_F(UndoFiles, ThatOthersCanWriteAreRefused) {
  {
    UndoFile(path_).Add(record_);
  }
  EXPECT_THAT(ReadUndoFile(path_), SizeIs(1));
  std::filesystem::permissions(path_, std::filesystem::perms(0620));
  EXPECT_THROW((void)ReadUndoFile(path_), Failure);
  std::filesystem::permissions(path_, std::filesystem::perms(0600));
  if (geteuid() == 0 && chown(path_.c_str(), 0, 0) == 0) {
    EXPECT_THAT(ReadUndoFile(path_), SizeIs(1));
    ASSERT_EQ(chown(path_.c_str(), 65534, 65534), 0);
    EXPECT_THROW((void)ReadUndoFile(path_), Failure);
  }
}

TEST_F(UndoFiles, OfADifferentFormatAreRefused) {
  for (const char* const text : {"{}\n", "[]\n", "x\n", "{\"undo_version\":2}\n",
                                 "{\"undo_version\":1,\"queue\":1,\"defaults\":[]}\n"}) {
    root_.Write("undo.json", text);
    EXPECT_THROW((void)ReadUndoFile(path_), Failure) << text;
  }
  EXPECT_THROW((void)ReadUndoFile(root_.path()), Failure);
  EXPECT_THROW((void)ReadUndoFile(root_ / "none"), Failure);
}

}  // namespace

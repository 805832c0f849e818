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
using testing::HasSubstr;
using testing::SizeIs;

class UndoFiles : public testing::Test {
 protected:
  static std::string FailureOf(const std::string& path) {
    try {
      (void)ReadUndoFile(path);
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "no failure";
  }

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

TEST_F(UndoFiles, DoNotKeepWhatWasRemoved) {
  UndoFile file(path_);
  file.Add(record_);
  file.Add({.server = "localhost:631", .queue = "removed", .defaults = {}});
  file.RemoveLast();
  file.Add({.server = "localhost:631", .queue = "second", .defaults = {}});
  const std::vector<UndoRecord> records = ReadUndoFile(path_);
  ASSERT_THAT(records, SizeIs(2));
  EXPECT_EQ(records[1].queue, "second");
}

TEST_F(UndoFiles, AreRemovedWithTheirOnlyRecord) {
  UndoFile file(path_);
  file.Add(record_);
  file.RemoveLast();
  EXPECT_TRUE(file.IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(path_));
  file.Add(record_);
  EXPECT_THAT(ReadUndoFile(path_), SizeIs(1));
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
}

TEST_F(UndoFiles, WithoutACompleteRecordAreRefused) {
  for (const char* const text : {"", "{\"undo_version\":1"}) {
    root_.Write("undo.json", text);
    std::filesystem::permissions(path_, std::filesystem::perms(0600));
    EXPECT_THAT(FailureOf(path_), HasSubstr("it has no complete record")) << text;
  }
}

// A character that is no byte of a PPD cannot be written back.
TEST_F(UndoFiles, HaveOnlyCharactersOfLatin1) {
  const auto write = [&](const std::string& text) {
    root_.Write("undo.json", R"({"undo_version":1,"server":"s","queue":"q","defaults":[)"
                             R"({"keyword":"X","before":[")" +
                                 text + R"("],"after":"A"}]})" + "\n");
    std::filesystem::permissions(path_, std::filesystem::perms(0600));
  };
  write("\\u00e4\\u00ff");
  EXPECT_THAT(ReadUndoFile(path_).at(0).defaults.at(0).before, ElementsAre("\xe4\xff"));
  for (const char* const text : {"\\u0100", "\\u20ac", "\\ud83d\\ude00", "\xe5\x8d\xb0"}) {
    write(text);
    EXPECT_THAT(FailureOf(path_), HasSubstr("line 1 has a different format")) << text;
  }
}

TEST_F(UndoFiles, KeepEachByteButControls) {
  std::string text = "\t";
  for (int byte = ' '; byte < 0x100; ++byte) {
    if (byte != 0x7f) text += static_cast<char>(byte);
  }
  {
    UndoFile(path_).Add({.server = "s", .queue = "q", .defaults = {{"X", {text}, text}}});
  }
  EXPECT_THAT(ReadUndoFile(path_).at(0).defaults.at(0).before, ElementsAre(text));
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

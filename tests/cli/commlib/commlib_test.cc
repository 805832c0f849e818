#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::Pair;
using testing::StartsWith;

class ToolCommlib : public SamplePrinter {
 protected:
  Finished Check(const std::string& folder, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {IA_TEST_TOOL, "commlib", "check", folder};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments);
  }
  // The answer in JSON, with the short time limit for a library that hangs.
  Json Answer(const std::string& folder) const {
    const bool hangs = folder.find("/hang") != std::string::npos;
    const Finished run = Check(folder, {"--format", "json", "--timeout", hangs ? "1" : "20"});
    Json answer = Json::parse(run.out);
    EXPECT_EQ(run.status, answer["broken"] == 0 ? 0 : 8);
    return answer;
  }
  // The details of the clauses that are broken.
  static std::map<std::string, std::string> BrokenClauses(const Json& answer) {
    std::map<std::string, std::string> broken;
    for (const Json& clause : answer["clauses"]) {
      if (clause["result"] == "broken") broken[clause["clause"]] = clause["detail"];
    }
    return broken;
  }
  std::string DriverFolderWith(const std::string& fault) const {
    const std::filesystem::path folder = root_ / fault;
    std::filesystem::create_directories(folder / "Bidi");
    std::filesystem::create_symlink(IA_TEST_WRONG_LIBRARY, folder / "Bidi/libmqpd_util.so");
    return folder;
  }
};

TEST_F(ToolCommlib, ReferenceLibraryKeepsAllClauses) {
  const Finished run = Check(IA_TEST_DRIVER_FOLDER, {"--documents", device_info()});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  std::vector<std::string> lines = Lines(run.out);
  const std::string count = std::to_string(lines.size() - 1);
  EXPECT_EQ(lines.back(), count + " clauses: " + count + " kept, 0 broken, 0 not tested");
  lines.pop_back();
  EXPECT_THAT(lines, Each(StartsWith("kept ")));
}

TEST_F(ToolCommlib, TakesTheFolderOfTheLibrary) {
  const Finished run = Check(IA_TEST_DRIVER_FOLDER "/Bidi", {"--format", "json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(std::string(Json::parse(run.out)["library"]),
              EndsWith("/driver/Bidi/libmqpd_util.so"));
}

TEST_F(ToolCommlib, WithoutDocumentsTheirClausesAreNotTested) {
  const Json json = Json::parse(Check(IA_TEST_DRIVER_FOLDER, {"--format", "json"}).out);
  EXPECT_EQ(json["broken"], 0);
  for (const Json& clause : json["clauses"]) {
    const bool is_of_documents = std::string(clause["clause"]).starts_with("documents.");
    EXPECT_EQ(clause["result"], is_of_documents ? "not tested" : "kept") << clause;
    EXPECT_EQ(clause["detail"].is_null(), !is_of_documents) << clause;
  }
}

TEST_F(ToolCommlib, DocumentsThatTheLibraryRefusesBreakAClause) {
  WriteDocument("Tray_list.xml", "no document");
  const Finished run = Check(IA_TEST_DRIVER_FOLDER, {"--documents", device_info()});
  EXPECT_EQ(run.status, 8);
  EXPECT_THAT(run.out, HasSubstr("qvxmlwrapGet_New() refuses Tray_list.xml\n"));
}

TEST_F(ToolCommlib, FolderWithoutLibraryIsRefused) {
  ExpectFailure(Check(root_ / "nowhere"), 4,
                AllOf(HasSubstr("nowhere/Bidi/libmqpd_util.so"), HasSubstr("No such file"),
                      HasSubstr("pass the driver folder")));
}

// A directory need not have all nine: a library begins with one.
TEST_F(ToolCommlib, DocumentsThatAreThereAreTried) {
  const std::filesystem::path documents = root_ / "few";
  std::filesystem::create_directory(documents);
  const auto answer = [&] {
    return Json::parse(
        Check(IA_TEST_DRIVER_FOLDER, {"--documents", documents.string(), "--format", "json"}).out);
  };
  EXPECT_EQ(answer()["not_tested"], 4) << "of a directory without documents";
  std::filesystem::copy(device_info() + "/Bin_list.xml", documents);
  EXPECT_EQ(answer()["not_tested"], 0);
}

class ToolCommlibNew : public ToolCommlib {
 protected:
  Finished New(const std::vector<std::string>& arguments) const {
    std::vector<std::string> words = {IA_TEST_TOOL, "commlib", "new"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return RunTool(words);
  }
};

TEST_F(ToolCommlibNew, MakesTheFoldersAroundTheSources) {
  const std::string folder = root_ / "a/b c/d";
  const Finished run = New({folder});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("cmake -S '" + folder + "' -B '" + folder + "/build'"));
  EXPECT_TRUE(std::filesystem::exists(folder + "/src/format.c"));
}

TEST_F(ToolCommlibNew, ChangesNothingThatExists) {
  const std::filesystem::path folder = root_ / "mine";
  std::filesystem::create_directory(folder);
  ExpectFailure(New({folder.string()}), 1,
                AllOf(HasSubstr("cannot write"), HasSubstr("exists already")));
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  ExpectFailure(New({IA_TEST_TOOL}), 1, HasSubstr("cannot write"));
}

TEST_F(ToolCommlibNew, LeavesNothingWhenItFails) {
  ExpectFailure(New({"/proc/nowhere/library"}), 1, HasSubstr("cannot write /proc/nowhere/library"));
}

TEST_F(ToolCommlibNew, KnowsItsLanguages) {
  const Finished run = New({root_ / "library", "--language", "cobol"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, AllOf(HasSubstr("cobol"), HasSubstr("c++")));
  EXPECT_FALSE(std::filesystem::exists(root_ / "library"));
}

struct Fault {
  const char* name;
  const char* clause;  // that must find it
};

// One wrong library each; the first folder with this name selects the fault.
constexpr Fault kFaults[] = {
    {"exits-in-cleanup", "load.unload"},
    {"crashes-when-unloaded", "load.unload"},
    {"loads-once", "load.fresh"},
    {"cleanup-ends-readers", "load.cleanup"},
    {"control-without-socket", "socket.none"},
    {"crashes-without-socket", "socket.none"},
    {"refuses-documents", "write.round-trip"},
    {"reads-beyond", "parse.length"},
    {"keeps-document", "parse.released"},
    {"accepts-anything", "parse.invalid"},
    {"crashes-for-empty", "parse.empty"},
    {"crashes-for-null", "parse.no-data"},
    {"crashes-for-truncated", "parse.truncated"},
    {"readers-share-place", "parse.two-readers"},
    {"destroy-fails", "parse.destroy"},
    {"miscounts-lists", "list.count"},
    {"counts-missing-lists", "list.missing"},
    {"ignores-item-number", "list.items"},
    {"enters-first-for-beyond", "list.beyond"},
    {"crashes-for-negative-item", "list.negative"},
    {"failed-open-stays", "list.failed-open"},
    {"dict-is-not-closed", "list.close"},
    {"closes-too-much", "list.close-too-many"},
    {"short-numbers", "value.long"},
    {"clears-missing-numbers", "value.long-missing"},
    {"finds-missing-numbers", "value.long-missing"},
    {"whole-doubles", "value.double"},
    {"trims-texts", "value.text"},
    {"texts-in-ascii", "value.text"},
    {"empty-texts-are-missing", "value.text-empty"},
    {"clears-missing-texts", "value.text-missing"},
    {"borrowed-texts", "value.text-owned"},
    {"shared-texts", "value.text-owned"},
    {"ignores-encoding", "value.encoding"},
    {"bytes-as-text", "value.binary"},
    {"numbers-of-texts", "value.wrong-type"},
    {"texts-of-numbers", "value.wrong-type"},
    {"miscounts-arrays", "array.count"},
    {"empty-arrays-are-missing", "array.empty"},
    {"hangs-for-missing-array", "array.missing"},
    {"elements-from-1", "array.elements"},
    {"clears-wrong-elements", "array.mixed"},
    {"last-element-for-beyond", "array.beyond"},
    {"failed-array-stays", "array.failed-open"},
    {"array-is-not-closed", "array.close"},
    {"crashes-for-null-reader", "null.reader"},
    {"crashes-for-null-key", "null.key"},
    {"crashes-without-count", "null.output"},
    {"crashes-for-null-encoding", "null.encoding"},
    {"writes-short-numbers", "write.round-trip"},
    {"writer-closes-too-much", "write.close"},
    {"hangs-without-words", "write.give-up"},
    {"writer-crashes-for-null", "write.null-writer"},
    {"writes-null-texts", "write.null-value"},
    {"is-for-one-thread", "thread.readers"},
    {"leaks-readers", "leak.readers"},
    {"leaks-texts", "leak.values"},
    {"leaks-refused", "leak.refused"},
    {"leaks-writers", "leak.writers"},
    {"leaks-descriptors", "process.descriptors"},
    {"prints", "process.output"},
    {"changes-locale", "process.locale"},
    {"changes-signals", "process.signals"},
    {"changes-folder", "process.folder"},
    {"changes-mask", "process.mask"},
    {"changes-environment", "process.environment"},
};

class WrongLibrary : public ToolCommlib, public testing::WithParamInterface<Fault> {};

TEST_P(WrongLibrary, IsCaughtByTheClauseMeantForIt) {
  const Fault fault = GetParam();
  const auto broken = BrokenClauses(Answer(DriverFolderWith(fault.name)));
  ASSERT_THAT(broken, Contains(Key(fault.clause)));
  const std::string detail = broken.at(fault.clause);
  EXPECT_THAT(detail, Not(IsEmpty()));
  if (std::string(fault.name).starts_with("hangs")) {
    EXPECT_THAT(detail, HasSubstr("does not return within 1 s"));
  }
}

INSTANTIATE_TEST_SUITE_P(Faults, WrongLibrary, testing::ValuesIn(kFaults), [](const auto& info) {
  std::string name = info.param.name;
  std::ranges::replace(name, '-', '_');
  return name;
});

// So each clause that a wrong library breaks is broken by its fault.
TEST_F(ToolCommlib, WrongLibraryWithoutAFaultKeepsAllClauses) {
  EXPECT_THAT(BrokenClauses(Answer(DriverFolderWith("none"))), IsEmpty());
}

struct UnusableLibrary {
  const char* folder;
  const char* clause;
  const char* detail;
};

class Unusable : public ToolCommlib, public testing::WithParamInterface<UnusableLibrary> {};

TEST_P(Unusable, BreaksOneClauseAndTheRestIsNotTested) {
  const auto& [folder, clause, detail] = GetParam();
  const Json answer = Answer(IA_TEST_SUPPORT_BUILD "/" + std::string(folder));
  EXPECT_THAT(BrokenClauses(answer), ElementsAre(Pair(clause, HasSubstr(detail))));
  const std::string first = answer["clauses"][0]["clause"];
  EXPECT_EQ(answer["kept"], first == clause ? 0 : 1) << answer;
}

INSTANTIATE_TEST_SUITE_P(
    Libraries, Unusable,
    testing::Values(
        UnusableLibrary{"unresolved", "load.library", "defined_nowhere"},
        UnusableLibrary{"foreign", "load.entry-points", "lacks qvsktwrapQueueListNew"},
        UnusableLibrary{"lacking/qvxmlwrapGet_Long", "load.entry-points",
                        "lacks qvxmlwrapGet_Long"},
        UnusableLibrary{"faulty/crash_when_loaded", "load.library", "SIGSEGV in loading it"},
        UnusableLibrary{"faulty/hang_when_loaded", "load.library", "does not return within 1 s"},
        UnusableLibrary{"faulty/exit_when_loaded", "load.library",
                        "ends the process with status 0"}),
    [](const auto& info) {
      std::string name = info.param.folder;
      std::ranges::replace_if(name, [](char c) { return c == '/'; }, '_');
      return name;
    });

TEST_F(ToolCommlib, StubsKeepWhatTheyCan) {
  EXPECT_THAT(BrokenClauses(Answer(IA_TEST_SUPPORT_BUILD "/faulty/stub")),
              AllOf(Contains(Key("null.reader")), Not(Contains(Key("load.entry-points")))));
}

}  // namespace

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::SamplePrinter;
using testing::AllOf;
using testing::HasSubstr;

class ToolCommandLine : public SamplePrinter {};

const std::vector<std::vector<std::string>> kVerbs = {{"calibration", "settings"},
                                                      {"calibration", "defaults"},
                                                      {"calibration", "curves"},
                                                      {"completion"},
                                                      {"diff"},
                                                      {"doctor"},
                                                      {"explain"},
                                                      {"function-version"},
                                                      {"models"},
                                                      {"query"},
                                                      {"queues", "cups"},
                                                      {"queues", "daemon"},
                                                      {"queues", "find"},
                                                      {"snapshot"},
                                                      {"uri"}};

std::string Words(const std::vector<std::string>& verb) {
  std::string text = "info-analyze";
  for (const std::string& word : verb) text += " " + word;
  return text;
}

TEST_F(ToolCommandLine, VersionIsPrinted) {
  const Finished run = RunTool({IA_TEST_TOOL, "--version"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "info-analyze " IA_TEST_VERSION "\n");
  EXPECT_EQ(run.err, "");
}

TEST_F(ToolCommandLine, HelpNamesTheVerbs) {
  const Finished run = RunTool({IA_TEST_TOOL, "--help"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, AllOf(HasSubstr("Usage: info-analyze"), HasSubstr("calibration"),
                             HasSubstr("function-version"), HasSubstr("query"), HasSubstr("queues"),
                             HasSubstr("uri")));
  EXPECT_EQ(run.err, "");
}

TEST_F(ToolCommandLine, HelpOfAVerbNamesItsOptions) {
  const Finished run = RunTool({IA_TEST_TOOL, "query", "--help"});
  EXPECT_EQ(run.status, 0);
  for (const char* option :
       {"--queue", "--driver-folder", "--device-info", "--cups-root", "--format"}) {
    EXPECT_THAT(run.out, HasSubstr(option));
  }
  EXPECT_EQ(run.err, "");
}

TEST_F(ToolCommandLine, HelpOfEveryVerbHasAnExample) {
  for (const std::vector<std::string>& verb : kVerbs) {
    std::vector<std::string> arguments = {IA_TEST_TOOL};
    arguments.insert(arguments.end(), verb.begin(), verb.end());
    arguments.push_back("--help");
    EXPECT_THAT(RunTool(arguments).out, HasSubstr(Words(verb) + " ")) << Words(verb);
    EXPECT_THAT(RunTool(arguments).out,
                testing::ContainsRegex("Examples:(\n.*)*  (source <\\()?" + Words(verb)));
  }
}

TEST_F(ToolCommandLine, ManualPageHasEveryOptionOfTheHelp) {
  const std::string manual = ia_test::ReadFile(IA_TEST_SOURCE "/docs/man/info-analyze.1");
  std::string help = RunTool({IA_TEST_TOOL, "--help"}).out;
  for (const std::vector<std::string>& verb : kVerbs) {
    std::vector<std::string> arguments = {IA_TEST_TOOL};
    arguments.insert(arguments.end(), verb.begin(), verb.end());
    arguments.push_back("--help");
    const std::string help_of_verb = RunTool(arguments).out;
    EXPECT_THAT(help_of_verb, HasSubstr("--"));
    EXPECT_THAT(manual, HasSubstr("It Cm " + verb.back() + "\n"));
    help += help_of_verb;
  }
  for (std::size_t at = help.find("--"); at != std::string::npos; at = help.find("--", at + 2)) {
    const std::size_t end = help.find_first_of(" \n", at);
    EXPECT_THAT(manual, HasSubstr("Fl " + help.substr(at + 1, end - at - 1)));
  }
}

TEST_F(ToolCommandLine, NoVerbIsRefused) {
  ExpectFailure(RunTool({IA_TEST_TOOL}), 2,
                AllOf(HasSubstr("a verb is required"), HasSubstr("see info-analyze --help")));
}

TEST_F(ToolCommandLine, NoVerbAfterAnotherIsRefused) {
  ExpectFailure(
      RunTool({IA_TEST_TOOL, "queues"}), 2,
      AllOf(HasSubstr("a verb is required"), HasSubstr("see info-analyze queues --help")));
}

TEST_F(ToolCommandLine, HintNamesBothVerbs) {
  ExpectFailure(RunTool({IA_TEST_TOOL, "queues", "find"}), 2,
                AllOf(HasSubstr("URI"), HasSubstr("see info-analyze queues find --help")));
}

TEST_F(ToolCommandLine, UnknownVerbIsRefused) {
  ExpectFailure(RunTool({IA_TEST_TOOL, "elephant"}), 2,
                AllOf(HasSubstr("unknown verb elephant; see"), Not(HasSubstr("did you mean"))));
  ExpectFailure(RunTool({IA_TEST_TOOL, "qurey"}), 2,
                HasSubstr("unknown verb qurey (did you mean query?); see info-analyze --help"));
  ExpectFailure(RunTool({IA_TEST_TOOL, "queues", "fnd"}), 2,
                HasSubstr("unknown verb fnd (did you mean find?); see info-analyze queues --help"));
}

TEST_F(ToolCommandLine, UnknownOptionsAreNamedBeforeMissingOnes) {
  ExpectFailure(
      RunTool({IA_TEST_TOOL, "query", "--que", "office", "--driver=x"}), 2,
      HasSubstr("error: unknown option --que (did you mean --queue?), unknown option "
                "--driver (did you mean --driver-folder?); see info-analyze query --help"));
}

TEST_F(ToolCommandLine, MisspeltVerbIsNamedRatherThanItsOptions) {
  ExpectFailure(RunTool({IA_TEST_TOOL, "explian", "QVFinisher", "--queue", "office"}), 2,
                HasSubstr("error: unknown verb explian (did you mean explain?); see"));
  ExpectFailure(RunTool({IA_TEST_TOOL, "--format=text", "query"}), 2,
                HasSubstr("error: --format must follow the verb; see info-analyze query --help"));
}

TEST_F(ToolCommandLine, UnexpectedWordsKeepTheirOrder) {
  ExpectFailure(RunTool({IA_TEST_TOOL, "queues", "cups", "one", "two"}), 2,
                HasSubstr("error: unexpected argument one, unexpected argument two; see"));
}

TEST_F(ToolCommandLine, HelpOfAVerbIsAlsoAVerb) {
  EXPECT_EQ(RunTool({IA_TEST_TOOL, "help"}).out, RunTool({IA_TEST_TOOL, "--help"}).out);
  EXPECT_EQ(RunTool({IA_TEST_TOOL, "help", "queues", "find"}).out,
            RunTool({IA_TEST_TOOL, "queues", "find", "--help"}).out);
  ExpectFailure(RunTool({IA_TEST_TOOL, "help", "qurey"}), 2, HasSubstr("did you mean query?"));
}

TEST_F(ToolCommandLine, HelpAndVersionThatCannotBeWrittenFail) {
  for (const char* argument : {"--help", "--version", "help"}) {
    ia_test::Command command = ToolCommand({IA_TEST_TOOL, argument});
    command.output = "/dev/full";
    ExpectFailure(ia_test::RunProgram(command), 1, HasSubstr("standard output"));
  }
}

TEST_F(ToolCommandLine, QueueHasTheShortOptionOfLpadmin) {
  std::vector<std::string> arguments = QueryArguments();
  std::ranges::replace(arguments, std::string("--queue"), std::string("-p"));
  EXPECT_EQ(RunTool(arguments).out, RunQuery({}).out);
}

TEST_F(ToolCommandLine, UnknownOptionIsRefused) {
  ExpectFailure(RunQuery({"--colour"}), 2, HasSubstr("--colour"));
}

TEST_F(ToolCommandLine, ArgumentWithoutOptionIsRefused) {
  ExpectFailure(RunQuery({"office"}), 2, HasSubstr("office"));
}

TEST_F(ToolCommandLine, OptionGivenTwiceIsRefused) {
  ExpectFailure(RunQuery({"--queue", "other"}), 2, HasSubstr("--queue"));
}

TEST_F(ToolCommandLine, OptionWithoutValueIsRefused) {
  ExpectFailure(RunQuery({"--format"}), 2, HasSubstr("--format"));
}

TEST_F(ToolCommandLine, UnknownFormatIsRefused) {
  ExpectFailure(RunQuery({"--format", "xml"}), 2,
                AllOf(HasSubstr("--format"), HasSubstr("xml"), HasSubstr("json")));
}

TEST_F(ToolCommandLine, ControlCharactersInItAreNotPrinted) {
  ExpectFailure(RunQuery({"\x1b[31m"}), 2, AllOf(HasSubstr("\\x1b[31m"), Not(HasSubstr("\x1b"))));
}

TEST_F(ToolCommandLine, IsCheckedBeforeAnythingIsOpened) {
  std::vector<std::string> arguments = QueryArguments();
  std::ranges::replace(arguments, std::string(IA_TEST_DRIVER_FOLDER), root_ / "nowhere");
  arguments.push_back("--colour");
  ExpectFailure(RunTool(arguments), 2, Not(HasSubstr("nowhere")));
}

class ToolRequiredOption : public SamplePrinter, public testing::WithParamInterface<const char*> {};

TEST_P(ToolRequiredOption, IsMissed) {
  std::vector<std::string> arguments = QueryArguments();
  const auto option = std::ranges::find(arguments, GetParam());
  arguments.erase(option, option + 2);
  ExpectFailure(RunTool(arguments), 2,
                AllOf(HasSubstr(GetParam()), HasSubstr("see info-analyze query --help")));
}

INSTANTIATE_TEST_SUITE_P(CommandLine, ToolRequiredOption,
                         testing::Values("--queue", "--driver-folder", "--device-info"),
                         [](const auto& test) {
                           std::string name = test.param;
                           std::erase(name, '-');
                           return name;
                         });

}  // namespace

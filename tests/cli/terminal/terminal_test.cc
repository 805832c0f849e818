// How the tool behaves towards terminals, and with texts of a device that mean harm to them.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "tests/cli/sample_printer.h"
#include "tests/support/silent_server.h"

namespace {

using ia_test::Command;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

using Environment = std::vector<std::pair<std::string, std::string>>;

[[noreturn]] void Become(const std::vector<std::string>& arguments,
                         const Environment& environment) {
  for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  execv(argv[0], argv.data());
  _exit(127);
}

// What a program writes to its terminal until it ends, or for so many seconds.
std::string WrittenToTerminal(const std::vector<std::string>& arguments,
                              const Environment& environment, int seconds) {
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) Become(arguments, environment);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  std::string written;
  fcntl(terminal, F_SETFL, O_NONBLOCK);
  int status = 0;
  bool has_ended = false;
  while (!has_ended && std::chrono::steady_clock::now() < end) {
    has_ended = waitpid(child, &status, WNOHANG) == child;
    std::array<char, 4096> buffer;
    ssize_t count = 0;
    while ((count = read(terminal, buffer.data(), buffer.size())) > 0) {
      written.append(buffer.data(), static_cast<std::size_t>(count));
    }
    usleep(10'000);
  }
  if (!has_ended) {
    kill(child, SIGTERM);
    waitpid(child, &status, 0);
  }
  close(terminal);
  return written;
}

class ToolTerminal : public SamplePrinter {
 protected:
  std::vector<std::string> Arguments(const std::string& verb) const {
    std::vector<std::string> arguments = QueryArguments();
    arguments[1] = verb;
    return arguments;
  }
};

// Colours ----------------------------------------------------------------------------------------

TEST_F(ToolTerminal, DoctorShowsColoursOnATerminal) {
  EXPECT_THAT(WrittenToTerminal(Arguments("doctor"), {{"TERM", "xterm"}}, 20),
              HasSubstr("\x1b[32mok"));
}

TEST_F(ToolTerminal, ShowsNoColoursWhereTheyAreNotWanted) {
  for (const Environment& environment :
       {Environment{{"TERM", "xterm"}, {"NO_COLOR", "1"}}, Environment{{"TERM", "dumb"}}}) {
    const std::string written = WrittenToTerminal(Arguments("doctor"), environment, 20);
    EXPECT_THAT(written, AllOf(HasSubstr("ok "), Not(HasSubstr("\x1b"))));
  }
  EXPECT_THAT(RunTool(Arguments("doctor")).out, Not(HasSubstr("\x1b")));
}

// Progress ---------------------------------------------------------------------------------------

class Waiting : public ToolTerminal {
 protected:
  std::vector<std::string> Query() const {
    return {IA_TEST_TOOL,          "query",         "--queue",    "office-mfp", "--driver-folder",
            IA_TEST_DRIVER_FOLDER, "--device-info", device_info()};
  }
  const std::string path_ = root_ / "socket";
  const ia_test::SilentServer server_{path_};
};

TEST_F(Waiting, IsReportedOnATerminal) {
  const std::string written = WrittenToTerminal(Query(), {{"CUPS_SERVER", path_}}, 3);
  EXPECT_THAT(written, HasSubstr("info-analyze: waiting for the PPD of queue office-mfp, 1 s"));
}

TEST_F(Waiting, IsNotReportedWhenQuiet) {
  std::vector<std::string> arguments = Query();
  arguments.push_back("--quiet");
  EXPECT_EQ(WrittenToTerminal(arguments, {{"CUPS_SERVER", path_}}, 3), "");
}

TEST_F(Waiting, IsReportedOnTerminalsOnly) {
  std::vector<std::string> arguments = Query();
  arguments.insert(arguments.begin(), {"/usr/bin/timeout", "3"});
  const Finished run = ia_test::RunProgram(
      {.arguments = arguments, .environment = {{"CUPS_SERVER", path_}}, .output = ""});
  EXPECT_EQ(run.status, 124);
  EXPECT_EQ(run.err, "");
}

// Words ------------------------------------------------------------------------------------------

TEST_F(ToolTerminal, QuietLeavesErrorsAlone) {
  RemoveDocument("Accessories.xml");
  EXPECT_THAT(RunQuery().err, HasSubstr("warning"));
  EXPECT_EQ(RunQuery({"--quiet"}).err, "");
  EXPECT_EQ(RunQuery({"--quiet"}).out, RunQuery().out);
  RemoveDocument("Devicename.xml");
  EXPECT_THAT(RunQuery({"--quiet"}).err, HasSubstr("error: "));
}

TEST_F(ToolTerminal, AsksNothing) {
  Command command = ToolCommand({"/bin/sh", "-c", "exec <&-; exec \"$@\"", "sh"});
  for (const std::string& argument : Arguments("doctor")) command.arguments.push_back(argument);
  EXPECT_EQ(ia_test::RunProgram(command).out, RunTool(Arguments("doctor")).out);
}

TEST_F(ToolTerminal, AnswerWithoutStandardOutputIsAFailure) {
  Command command = ToolCommand({"/bin/sh", "-c", "exec >&-; exec \"$@\"", "sh"});
  for (const std::string& argument : Arguments("query")) command.arguments.push_back(argument);
  const Finished run = ia_test::RunProgram(command);
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("standard output: "));
}

// Texts of a device ------------------------------------------------------------------------------

class HostileDevice : public ToolTerminal {
 protected:
  // Each text of the documents is one that harms.
  HostileDevice() {
    WriteDocument("Devicename.xml", Document("<string key=\"devicename\">" + kText + "</string>"));
    WriteDocument("Functions.xml",
                  Document("<long key=\"duplex\">1</long><string key=\"authentication_user\">" +
                           kText + "</string>"));
    WriteDocument("Finisher_list.xml",
                  Document("<dict key=\"list\"><string key=\"name\">" + kText +
                           "</string><array key=\"func\"><string>" + kText +
                           "</string></array><array key=\"detail_func\"><string>" + kText +
                           "</string></array></dict>"));
    ReplaceInPpd("Finisher-W1:BKFINW1", "Finisher-W1:BKFINW1,Vorel:\x1b]0;x\a$(x)\xff");
  }
  static std::string Document(const std::string& values) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<document version=\"1\">" + values +
           "</document>\n";
  }
  std::vector<std::string> WithHostileLibrary(std::vector<std::string> arguments) const {
    *(std::ranges::find(arguments, IA_TEST_DRIVER_FOLDER)) = IA_TEST_HOSTILE_FOLDER;
    return arguments;
  }
  const std::string kText =
      "Vorel(ESC)[2J(ESC)]0;title(BEL)'\"`$(id)\\&#10;\xc2\x9b(FF)" + std::string(100'000, 'n');
};

TEST_F(HostileDevice, ReachesNoTerminal) {
  for (const char* const verb : {"query", "explain", "doctor"}) {
    const Finished run = RunTool(WithHostileLibrary(Arguments(verb)));
    EXPECT_THAT(run.out, HasSubstr("QV")) << verb;
    for (const std::string& text : {run.out, run.err}) {
      EXPECT_TRUE(std::ranges::none_of(text, [](char byte) {
        return (byte >= 0 && byte < ' ' && byte != '\n') || byte == 0x7F;
      })) << verb;
      EXPECT_THAT(text, Not(HasSubstr("\xc2\x9b"))) << verb;
    }
  }
}

TEST_F(HostileDevice, DoesNotBreakJson) {
  for (const char* const verb : {"query", "explain", "doctor"}) {
    std::vector<std::string> arguments = WithHostileLibrary(Arguments(verb));
    arguments.insert(arguments.end(), {"--format", "json"});
    const Finished run = RunTool(arguments);
    EXPECT_FALSE(Json::parse(run.out, nullptr, false).is_discarded()) << verb;
    EXPECT_TRUE(std::ranges::all_of(run.out, [](char byte) { return byte == '\n' || byte >= ' '; }))
        << verb;
  }
}

TEST_F(HostileDevice, IsPrintedInFullByExplain) {
  std::vector<std::string> arguments = WithHostileLibrary(Arguments("explain"));
  arguments.insert(arguments.end(), {"QVUseCSModeJobAccount", "--format", "json"});
  const Json json = Json::parse(RunTool(arguments).out);
  const std::string value = json["explanations"][0]["inputs"][0]["value"];
  EXPECT_THAT(value,
              testing::StartsWith("Vorel\x1b[2J\x1b]0;title\a'\"`$(id)\\\n\xc2\x9b\xef\xbf\xbd"));
  EXPECT_THAT(value, testing::EndsWith(std::string(100'000, 'n')));
}

TEST_F(HostileDevice, ReachesNoShellLine) {
  const std::string sample = root_ / "sample";
  ASSERT_EQ(
      RunTool({IA_TEST_TOOL, "snapshot", sample, "--queue", "office-mfp", "--cups-root",
               ia_test::kSample, "--device-info", std::string(ia_test::kSample) + "/device-info"})
          .status,
      0);
  const Finished run = RunTool({IA_TEST_TOOL, "diff", sample, "queue:office-mfp", "--driver-folder",
                                IA_TEST_HOSTILE_FOLDER, "--cups-root", cups_root(), "--device-info",
                                device_info(), "--lpadmin"});
  EXPECT_EQ(run.status, 5) << run.err;  // the device lacks keys
  EXPECT_THAT(run.out, AllOf(HasSubstr("-o QVPuncher=None"), Not(HasSubstr("QVFinisher"))));
  EXPECT_THAT(run.err, HasSubstr("warning: QVFinisher="));
}

}  // namespace

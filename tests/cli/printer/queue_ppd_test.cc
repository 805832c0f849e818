// Each cause for which the PPD of a queue cannot be read has its own message.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/cli/sample_printer.h"
#include "tests/support/silent_server.h"

namespace {

using ia_test::Command;
using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::SamplePrinter;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr int kQueue = 3;
constexpr int kDoctorFailures = 8;

// Starts a program whose output is discarded.
pid_t Start(Command command) {
  const pid_t child = fork();
  if (child != 0) return child;
  for (const auto& [name, value] : command.environment) setenv(name.c_str(), value.c_str(), 1);
  const int nowhere = open("/dev/null", O_WRONLY);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
  std::vector<char*> argv;
  for (std::string& argument : command.arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  execv(argv[0], argv.data());
  _exit(127);
}

class QueuePpd : public SamplePrinter {
 protected:
  using Arguments = std::vector<std::string>;

  // A verb for the queue, which waits for a server at most two seconds.
  Arguments Verb(const std::string& verb, const std::string& queue) const {
    Arguments arguments = {IA_TEST_TOOL,    verb,          "--queue",   queue,
                           "--device-info", device_info(), "--timeout", "2"};
    if (verb == "snapshot") {
      arguments.push_back(temporary_ + "/saved");
    } else {
      arguments.insert(arguments.end(), {"--driver-folder", IA_TEST_DRIVER_FOLDER});
    }
    return arguments;
  }
  Arguments InRoot(Arguments arguments) const {
    arguments.insert(arguments.end(), {"--cups-root", cups_root()});
    return arguments;
  }
  Finished RunWith(const Arguments& arguments, const std::string& name,
                   const std::string& value) const {
    Command command = ToolCommand(arguments);
    command.environment.emplace_back(name, value);
    return RunProgram(command);
  }
  void ReplacePpd(const std::function<void(const std::string& path)>& make) const {
    std::filesystem::remove(ppd());
    make(ppd());
  }
};

TEST_F(QueuePpd, MissingFileIsNamed) {
  ExpectFailure(RunTool(InRoot(Verb("query", "lobby"))), kQueue,
                AllOf(HasSubstr("cannot read PPD of queue \"lobby\": " + cups_root() +
                                "/ppd/lobby.ppd: No such file or directory"),
                      HasSubstr("`info-analyze queues cups --cups-root " + cups_root() + "`")));
}

TEST_F(QueuePpd, FileThatTheUserMayNotReadIsNamed) {
  std::filesystem::permissions(ppd(), std::filesystem::perms::none);
  ExpectFailure(
      RunUnprivileged(InRoot(Verb("query", "office-mfp"))), kQueue,
      AllOf(HasSubstr(ppd() + ": Permission denied"), HasSubstr("run as a user who may read it")));
}

// None of these makes a verb wait, or read without end.
TEST_F(QueuePpd, FileThatIsNotRegularIsNamed) {
  const std::vector<std::pair<std::string, std::function<void(const std::string&)>>> files = {
      {"a FIFO", [](const std::string& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
      {"a device",
       [](const std::string& path) { std::filesystem::create_symlink("/dev/zero", path); }},
      {"a folder", [](const std::string& path) { std::filesystem::create_directory(path); }}};
  for (const auto& [type, make] : files) {
    ReplacePpd(make);
    const auto message = AllOf(HasSubstr("cannot read PPD of queue \"office-mfp\": " + ppd() +
                                         ": not a regular file but " + type),
                               HasSubstr("replace " + ppd()));
    for (const char* const verb : {"query", "snapshot", "explain", "function-version"}) {
      Arguments arguments = Verb(verb, "office-mfp");
      if (verb == std::string("function-version")) {
        std::erase_if(arguments, [&](const std::string& argument) {
          return argument == "--device-info" || argument == device_info();
        });
        arguments.push_back("1");
      }
      ExpectFailure(RunTool(InRoot(arguments)), kQueue, message);
    }
    const Finished doctor = RunTool(InRoot(Verb("doctor", "office-mfp")));
    EXPECT_EQ(doctor.status, kDoctorFailures);
    EXPECT_THAT(doctor.out, message);
  }
}

// libcups opens such a file itself when the server is on this machine.
TEST_F(QueuePpd, FifoInTheFolderOfALocalServerIsNamed) {
  ReplacePpd([](const std::string& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); });
  for (const char* const server : {"localhost", "/nowhere/socket"}) {
    for (const char* const verb : {"query", "snapshot"}) {
      Command command = ToolCommand(Verb(verb, "office-mfp"));
      command.environment.emplace_back("CUPS_SERVER", server);
      command.environment.emplace_back("CUPS_SERVERROOT", cups_root());
      ExpectFailure(RunProgram(command), kQueue, HasSubstr(ppd() + ": not a regular file"));
    }
  }
}

TEST_F(QueuePpd, FileInTheFolderOfALocalServerIsReadWithoutTheServer) {
  Command command = ToolCommand(Verb("query", "office-mfp"));
  command.environment.emplace_back("CUPS_SERVER", "/nowhere/socket");
  command.environment.emplace_back("CUPS_SERVERROOT", cups_root());
  const Finished run = RunProgram(command);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, RunQuery().out);
}

TEST_F(QueuePpd, TooLargeFileIsNamed) {
  std::filesystem::resize_file(ppd(), (16U << 20) + 1);
  ExpectFailure(RunTool(InRoot(Verb("query", "office-mfp"))), kQueue,
                HasSubstr(ppd() + ": larger than 16 MiB"));
}

TEST_F(QueuePpd, TemporaryDirectoryThatCannotBeWrittenIsNamed) {
  for (const std::string& folder : {root_ / "nowhere", std::string("/proc")}) {
    ExpectFailure(RunWith(InRoot(Verb("query", "office-mfp")), "TMPDIR", folder), kQueue,
                  AllOf(HasSubstr("cannot read PPD of queue \"office-mfp\": no temporary file can "
                                  "be written in " +
                                  folder + " (No such file or directory)"),
                        HasSubstr("set TMPDIR")));
  }
}

TEST_F(QueuePpd, PpdWithoutTheDriversLinesIsNamed) {
  WritePpd("*PPD-Adobe: \"4.3\"\n*ModelName: \"Other\"\n");
  ExpectFailure(
      RunTool(InRoot(Verb("query", "office-mfp"))), kQueue,
      AllOf(HasSubstr("PPD of queue \"office-mfp\": it has no option lines of the driver"),
            HasSubstr("lpadmin -p office-mfp -P FILE.ppd"), Not(HasSubstr("driverless"))));
}

TEST_F(QueuePpd, PpdThatCupsMadeForADriverlessPrinterIsNamed) {
  WritePpd("*PPD-Adobe: \"4.3\"\n*PCFileName: \"ippeve.ppd\"\n");
  ExpectFailure(RunTool(InRoot(Verb("query", "office-mfp"))), kQueue,
                HasSubstr("has no option lines of the driver (\"*QV\"), because CUPS made "
                          "it for driverless printing"));
}

TEST_F(QueuePpd, NameThatCupsRefusesIsNamed) {
  const std::string too_long(128, 'q');
  for (const std::string& name :
       {std::string("lob by"), std::string("a/b"), std::string("a#b"), std::string("tab\t"),
        std::string("del\x7f"), too_long, std::string("../office-mfp")}) {
    for (const char* const verb : {"query", "snapshot"}) {
      ExpectFailure(RunTool(InRoot(Verb(verb, name))), kQueue,
                    AllOf(HasSubstr("not the name of a queue: \""),
                          HasSubstr("\": CUPS refuses a name that "),
                          HasSubstr("`info-analyze queues cups`")));
    }
  }
}

TEST_F(QueuePpd, NamesThatCupsAcceptsAreAccepted) {
  const std::string longest(127, 'q');
  for (const std::string& name : {std::string("b\xc3\xbc\x63herei"), std::string(".office"),
                                  std::string("a%b?c"), std::string("\xe5\x8d\xb0"), longest}) {
    std::filesystem::copy(ppd(), root_ / "printer/ppd/" + name + ".ppd");
    for (const char* const verb : {"query", "doctor", "explain", "snapshot"}) {
      const Finished run = RunTool(InRoot(Verb(verb, name)));
      EXPECT_EQ(run.status, 0) << verb << " " << name << ": " << run.err << run.out;
    }
    const std::string saved = temporary_ + "/saved";
    const Finished replay = RunTool(
        {IA_TEST_TOOL, "query", "--snapshot", saved, "--driver-folder", IA_TEST_DRIVER_FOLDER});
    EXPECT_EQ(replay.out, RunQuery().out) << replay.err;
    std::filesystem::remove_all(saved);
  }
}

// Time limits and interrupts ---------------------------------------------------------------------

class SilentQueue : public QueuePpd {
 protected:
  Command Asking(Arguments arguments) const {
    Command command = ToolCommand(arguments);
    command.environment.emplace_back("CUPS_SERVER", socket_);
    return command;
  }
  const std::string socket_ = root_ / "socket";
  const ia_test::SilentServer server_{socket_};
};

TEST_F(SilentQueue, EndsAtTheTimeLimit) {
  const auto message =
      AllOf(HasSubstr("the CUPS server at " + socket_ + " has not answered within 2 s"),
            HasSubstr("--timeout"));
  for (const char* const verb : {"query", "snapshot", "explain"}) {
    const auto start = std::chrono::steady_clock::now();
    ExpectFailure(RunProgram(Asking(Verb(verb, "office"))), kQueue, message);
    const auto time = std::chrono::steady_clock::now() - start;
    EXPECT_GE(time, std::chrono::seconds(2)) << verb;
    EXPECT_LE(time, std::chrono::seconds(3)) << verb;
  }
  const Finished doctor = RunProgram(Asking(Verb("doctor", "office")));
  EXPECT_EQ(doctor.status, kDoctorFailures);
  EXPECT_THAT(doctor.out, message);
  ExpectFailure(RunProgram(Asking({IA_TEST_TOOL, "queues", "cups", "--timeout", "2"})), kQueue,
                message);
}

TEST_F(SilentQueue, TimeLimitIsANumberOfSeconds) {
  for (const char* const limit : {"0", "-1", "86401", "soon", "1.5"}) {
    ExpectFailure(RunProgram(Asking({IA_TEST_TOOL, "queues", "cups", "--timeout", limit})), 2,
                  HasSubstr("--timeout"));
  }
}

// What a signal leaves: the fixture expects that the temporary folder is empty.
TEST_F(SilentQueue, InterruptLeavesNoTemporaryFile) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    for (const char* const verb : {"query", "doctor", "snapshot"}) {
      const pid_t child = Start(Asking(Verb(verb, "office")));
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
      while (std::filesystem::is_empty(temporary_) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
      EXPECT_FALSE(std::filesystem::is_empty(temporary_)) << verb;
      kill(child, number);
      int status = 0;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == number) << verb << " " << status;
      EXPECT_TRUE(std::filesystem::is_empty(temporary_)) << verb;
    }
  }
}

// At any other moment, too.
TEST_F(QueuePpd, InterruptAtAnyTimeLeavesNoTemporaryFile) {
  for (int pause = 0; pause < 60; ++pause) {
    const pid_t child = Start(ToolCommand(InRoot(Verb("doctor", "office-mfp"))));
    std::this_thread::sleep_for(std::chrono::microseconds(pause * 500));
    kill(child, SIGINT);
    waitpid(child, nullptr, 0);
    ASSERT_TRUE(std::filesystem::is_empty(temporary_)) << pause;
  }
}

TEST_F(QueuePpd, VerbosePrintsEachStepAndItsTime) {
  const Finished run = RunQuery({"--verbose"});
  EXPECT_EQ(run.out, RunQuery().out);
  const auto step = [](const std::string& name) {
    return testing::Contains(
        testing::MatchesRegex("info-analyze: [0-9]+\\.[0-9][0-9][0-9] s for " + name));
  };
  EXPECT_THAT(ia_test::Lines(run.err),
              AllOf(step("the communication library .*"), step("the PPD of queue office-mfp"),
                    step("the documents and options of queue office-mfp")));
  EXPECT_THAT(RunQueryWith("--queue", "lobby").err, Not(HasSubstr(" s for ")));
}

TEST_F(QueuePpd, VerboseNamesTheStepThatFailed) {
  std::filesystem::remove(ppd());
  EXPECT_THAT(RunQuery({"--verbose"}).err,
              HasSubstr(" s for the PPD of queue office-mfp, which failed\n"));
}

TEST_F(QueuePpd, VerboseIsNotQuiet) { EXPECT_EQ(RunQuery({"--verbose", "--quiet"}).status, 2); }

}  // namespace

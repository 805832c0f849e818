#include "tests/integration/private_cupsd.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace ia_test {
namespace {

constexpr auto kStartDeadline = std::chrono::seconds(20);
constexpr auto kStopDeadline = std::chrono::seconds(10);
constexpr auto kPause = std::chrono::milliseconds(20);

// Empty when no folder of programs has it; cupsd is not on everybody's PATH.
std::string FindProgram(std::string_view name) {
  const char* path = getenv("PATH");
  std::istringstream folders((path != nullptr ? std::string(path) : "") + ":/usr/sbin:/sbin");
  for (std::string folder; std::getline(folders, folder, ':');) {
    const std::string program = folder + "/" + std::string(name);
    if (access(program.c_str(), X_OK) == 0) return program;
  }
  return "";
}

// Starts a program whose output goes to the file; it ends when this process does.
pid_t Spawn(const std::vector<std::string>& command, const std::vector<std::string>& environment,
            const std::string& output) {
  const auto pointers = [](const std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
    result.push_back(nullptr);
    return result;
  };
  const std::vector<char*> arguments = pointers(command);
  const std::vector<char*> variables = pointers(environment);
  const pid_t process = fork();
  if (process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(file, STDOUT_FILENO);
    dup2(file, STDERR_FILENO);
    execve(arguments[0], arguments.data(), variables.data());
    _exit(127);
  }
  return process;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool AcceptsConnections(const std::string& socket_path) {
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  if (socket_path.size() >= sizeof address.sun_path) return false;
  std::strcpy(address.sun_path, socket_path.c_str());
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const bool connected =
      connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(descriptor);
  return connected;
}

// False when the process still runs at the deadline.
bool WaitForEnd(pid_t process, std::chrono::seconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (std::chrono::steady_clock::now() < deadline) {
    if (waitpid(process, nullptr, WNOHANG) == process) return true;
    std::this_thread::sleep_for(kPause);
  }
  return false;
}

}  // namespace

bool PrivateCupsd::IsInstalled() {
  return !FindProgram("cupsd").empty() && !FindProgram("lpadmin").empty();
}

void PrivateCupsd::WriteConfiguration() const {
  for (const char* folder : {"etc", "run", "state", "cache", "tmp", "log"}) {
    std::filesystem::create_directory(folder_ / folder);
  }
  std::ostringstream server;
  server << "LogLevel info\n"
         << "Listen " << socket() << "\n"
         << "Browsing No\n"
         << "WebInterface No\n"
         << "DefaultAuthType None\n"
         << "IdleExitTimeout 0\n"
         << "<Location />\n  Order deny,allow\n  Allow all\n</Location>\n"
         << "<Policy default>\n  <Limit All>\n    Order deny,allow\n    Allow all\n  </Limit>\n"
         << "</Policy>\n";
  folder_.Write("cupsd.conf", server.str());
  std::ostringstream files;
  files << "ServerRoot " << server_root() << "\n"
        << "RequestRoot " << (folder_ / "run") << "\n"
        << "StateDir " << (folder_ / "state") << "\n"
        << "CacheDir " << (folder_ / "cache") << "\n"
        << "TempDir " << (folder_ / "tmp") << "\n"
        << "ErrorLog " << (folder_ / "log/error") << "\n"
        << "AccessLog " << (folder_ / "log/access") << "\n"
        << "PageLog " << (folder_ / "log/page") << "\n"
        << "Printcap " << folder_ / "printcap" << "\n"
        << "FileDevice Yes\n"
        << "SystemGroup root\n";
  folder_.Write("cups-files.conf", files.str());
}

std::string PrivateCupsd::ErrorLog() const {
  return ReadFile(folder_ / "log/output") + ReadFile(folder_ / "log/error");
}

testing::AssertionResult PrivateCupsd::Start() {
  WriteConfiguration();
  process_ = Spawn(
      {FindProgram("cupsd"), "-f", "-c", folder_ / "cupsd.conf", "-s", folder_ / "cups-files.conf"},
      {"PATH=/usr/sbin:/usr/bin:/sbin:/bin"}, folder_ / "log/output");
  return WaitForSocket();
}

testing::AssertionResult PrivateCupsd::WaitForSocket() {
  const auto deadline = std::chrono::steady_clock::now() + kStartDeadline;
  while (std::chrono::steady_clock::now() < deadline) {
    if (AcceptsConnections(socket())) return testing::AssertionSuccess();
    if (waitpid(process_, nullptr, WNOHANG) == process_) {
      process_ = -1;
      return testing::AssertionFailure() << "cupsd ended by itself:\n" << ErrorLog();
    }
    std::this_thread::sleep_for(kPause);
  }
  return testing::AssertionFailure() << "cupsd does not answer:\n" << ErrorLog();
}

void PrivateCupsd::Stop() {
  if (process_ < 0) return;
  kill(process_, SIGTERM);
  if (!WaitForEnd(process_, kStopDeadline)) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  process_ = -1;
}

testing::AssertionResult PrivateCupsd::AddQueue(const std::string& name,
                                                const std::string& ppd_path) const {
  return RunLpadmin({"-p", name, "-E", "-v", "file:///dev/null", "-P", ppd_path});
}

testing::AssertionResult PrivateCupsd::AddRawQueue(const std::string& name) const {
  return RunLpadmin({"-p", name, "-E", "-v", "file:///dev/null"});
}

testing::AssertionResult PrivateCupsd::RunLpadmin(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), FindProgram("lpadmin"));
  const std::string output = folder_ / "log/lpadmin";
  const pid_t lpadmin = Spawn(
      arguments,
      {"CUPS_SERVER=" + socket(), "HOME=" + folder_.path(), "TMPDIR=" + (folder_ / "tmp")}, output);
  int status = 0;
  waitpid(lpadmin, &status, 0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "lpadmin failed:\n" << ReadFile(output) << ErrorLog();
}

}  // namespace ia_test

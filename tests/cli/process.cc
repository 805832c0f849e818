#include "tests/cli/process.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <ios>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

void RedirectTo(int descriptor, const std::string& path) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT, 0600);
  if (file < 0 || dup2(file, descriptor) < 0) _exit(126);
}

[[noreturn]] void Become(const Command& command, const std::string& out, const std::string& err) {
  RedirectTo(STDOUT_FILENO, out);
  RedirectTo(STDERR_FILENO, err);
  if (!command.mounts.empty() && !ReplaceFolders(command.mounts)) _exit(kNoMounts);
  if (chdir(command.folder.c_str()) != 0) _exit(126);
  for (const auto& [name, value] : command.environment) setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> argv;
  for (const std::string& argument : command.arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  execv(argv[0], argv.data());
  _exit(127);
}

int WaitFor(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace

Finished RunProgram(const Command& command) {
  const TempFolder capture;
  const std::string out = command.output.empty() ? capture / "out" : command.output;
  const std::string err = capture / "err";
  const pid_t child = fork();
  if (child == 0) Become(command, out, err);
  const int status = WaitFor(child);
  return {status, command.output.empty() ? ReadFile(out) : "", ReadFile(err)};
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> Lines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace ia_test

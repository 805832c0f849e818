// Replaces folders of the system by folders of a test, for one child process only.
#ifndef TESTS_SUPPORT_PRIVATE_MOUNTS_H_
#define TESTS_SUPPORT_PRIVATE_MOUNTS_H_

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ia_test {

// Pairs of a folder and the folder that it replaces.
using Mounts = std::vector<std::pair<std::string, std::string>>;

inline constexpr char kNoNamespaces[] = "mount namespaces are not allowed here";

// For a process that is about to become or do something else: there is no way back. False where
// namespaces are not allowed.
inline bool ReplaceFolders(const Mounts& mounts) {
  const int user_too = geteuid() == 0 ? 0 : CLONE_NEWUSER;
  if (unshare(CLONE_NEWNS | user_too) != 0) return false;
  if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  for (const auto& [source, target] : mounts) {
    if (mount(source.c_str(), target.c_str(), nullptr, MS_BIND | MS_REC, nullptr) != 0) {
      return false;
    }
  }
  return true;
}

// What the action answers in a child process with these folders; nothing where namespaces are not
// allowed.
template <class Action>
std::optional<std::string> AnswerWithFolders(const Mounts& mounts, Action action) {
  constexpr int kNotAllowed = 77;
  std::array<int, 2> ends;
  if (pipe(ends.data()) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    if (!ReplaceFolders(mounts)) _exit(kNotAllowed);
    const std::string answer = action();
    _exit(write(ends[1], answer.data(), answer.size()) == static_cast<ssize_t>(answer.size()) ? 0
                                                                                              : 1);
  }
  close(ends[1]);
  std::string answer;
  std::array<char, 4096> buffer;
  for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;) {
    answer.append(buffer.data(), static_cast<std::size_t>(count));
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == kNotAllowed) return std::nullopt;
  return status == 0 ? answer : "ended with status " + std::to_string(status);
}

}  // namespace ia_test

#endif  // TESTS_SUPPORT_PRIVATE_MOUNTS_H_

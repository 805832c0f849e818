#ifndef TESTS_CLI_PROCESS_H_
#define TESTS_CLI_PROCESS_H_

#include <string>
#include <utility>
#include <vector>

#include "tests/support/private_mounts.h"

namespace ia_test {

struct Command {
  std::vector<std::string> arguments;                            // the first is the program's path
  std::vector<std::pair<std::string, std::string>> environment;  // beside the test's own
  std::string folder = "/";                                      // where the program runs
  std::string output;  // file that takes the standard output; empty: it is captured
  Mounts mounts = {};  // folders of the system that are others for the program
};

// Exit status where the program cannot have mounts of its own.
inline constexpr int kNoMounts = 125;

struct Finished {
  int status;  // exit status; minus the signal's number when one ended the program
  std::string out;
  std::string err;
};

// Runs a program to its end.
Finished RunProgram(const Command& command);

std::string ReadFile(const std::string& path);

// The lines of a text, without their line ends.
std::vector<std::string> Lines(const std::string& text);

}  // namespace ia_test

#endif  // TESTS_CLI_PROCESS_H_

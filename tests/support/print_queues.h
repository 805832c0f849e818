#ifndef TESTS_SUPPORT_PRINT_QUEUES_H_
#define TESTS_SUPPORT_PRINT_QUEUES_H_

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "tests/support/temp_folder.h"

namespace ia_test {

// The queues that libcups sees in this process. libcups takes its folders from the environment
// when it is first used, so there is one set of queues for the whole process.
class PrintQueues {
 public:
  static const PrintQueues& Get() {
    static const PrintQueues queues;
    return queues;
  }

  void Add(std::string_view queue, std::string_view ppd) const {
    root_.Write("ppd/" + std::string(queue) + ".ppd", ppd);
  }

  // Where libcups makes its temporary files.
  std::string temporary_folder() const { return root_ / "tmp"; }

 private:
  PrintQueues() {
    std::filesystem::create_directory(root_ / "ppd");
    std::filesystem::create_directory(temporary_folder());
    setenv("CUPS_SERVERROOT", root_.path().c_str(), 1);
    setenv("CUPS_SERVER", "localhost", 1);
    setenv("TMPDIR", temporary_folder().c_str(), 1);
    setenv("HOME", root_.path().c_str(), 1);
  }

  TempFolder root_;
};

}  // namespace ia_test

#endif  // TESTS_SUPPORT_PRINT_QUEUES_H_

// A print server of the test's own: it lives in a temporary folder, listens on a UNIX socket there
// and on nothing else, and ends with the test. The machine's own server is neither needed nor
// touched.
#ifndef TESTS_INTEGRATION_PRIVATE_CUPSD_H_
#define TESTS_INTEGRATION_PRIVATE_CUPSD_H_

#include <gtest/gtest.h>
#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/temp_folder.h"

namespace ia_test {

class PrivateCupsd {
 public:
  // False where the packages cups-daemon and cups-client are not installed.
  [[nodiscard]] static bool IsInstalled();

  PrivateCupsd() = default;
  ~PrivateCupsd() { Stop(); }
  PrivateCupsd(const PrivateCupsd&) = delete;
  PrivateCupsd& operator=(const PrivateCupsd&) = delete;

  [[nodiscard]] testing::AssertionResult Start();
  void Stop();

  // By lpadmin, as an administrator does.
  [[nodiscard]] testing::AssertionResult AddQueue(const std::string& name,
                                                  const std::string& ppd_path) const;
  [[nodiscard]] testing::AssertionResult AddRawQueue(const std::string& name) const;

  // What CUPS_SERVER names.
  [[nodiscard]] std::string socket() const { return folder_ / "socket"; }
  // What CUPS_SERVERROOT names for a client that reads the server's files itself.
  [[nodiscard]] std::string server_root() const { return folder_ / "etc"; }

 private:
  void WriteConfiguration() const;
  [[nodiscard]] testing::AssertionResult WaitForSocket();
  [[nodiscard]] testing::AssertionResult RunLpadmin(std::vector<std::string> arguments) const;
  [[nodiscard]] std::string ErrorLog() const;

  TempFolder folder_;
  pid_t process_ = -1;
};

}  // namespace ia_test

#endif  // TESTS_INTEGRATION_PRIVATE_CUPSD_H_

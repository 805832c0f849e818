#ifndef TESTS_SUPPORT_SILENT_SERVER_H_
#define TESTS_SUPPORT_SILENT_SERVER_H_

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <string>

namespace ia_test {

// A print server on a UNIX socket that accepts every connection and never answers.
class SilentServer {
 public:
  explicit SilentServer(const std::string& path)
      : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(socket_, 64), 0);
  }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;
  ~SilentServer() { close(socket_); }

  [[nodiscard]] int socket_descriptor() const { return socket_; }

 private:
  int socket_;
};

}  // namespace ia_test

#endif  // TESTS_SUPPORT_SILENT_SERVER_H_

#include "cli/printer/connection.h"

#include <cups/cups.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

namespace ia::cli {
namespace {

struct AddressListDeleter {
  void operator()(http_addrlist_t* list) const noexcept { httpAddrFreeList(list); }
};

}  // namespace

std::string FindConnectionFault(const std::string& host, int port) {
  const std::unique_ptr<http_addrlist_t, AddressListDeleter> list(
      httpAddrGetList(host.c_str(), AF_UNSPEC, std::to_string(port).c_str()));
  if (!list) return cupsLastErrorString();
  const int descriptor = socket(httpAddrFamily(&list->addr), SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return std::strerror(errno);
  const bool is_connected = connect(descriptor, &list->addr.addr,
                                    static_cast<socklen_t>(httpAddrLength(&list->addr))) == 0;
  const int error = errno;
  close(descriptor);
  return is_connected ? "it closes connections" : std::strerror(error);
}

}  // namespace ia::cli

// A folder that libcups takes for a print server's, so that the queues of a benchmark need no
// server.
#ifndef BENCH_SERVER_ROOT_H_
#define BENCH_SERVER_ROOT_H_

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace ia_bench {

class ServerRoot {
 public:
  // One for the whole program, because libcups reads its environment once.
  static const ServerRoot& Get() {
    static const ServerRoot root;
    return root;
  }
  ServerRoot(const ServerRoot&) = delete;
  ServerRoot& operator=(const ServerRoot&) = delete;

  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

  // Returns the path.
  std::filesystem::path WriteFile(const std::string& name, const std::string& content) const {
    const std::filesystem::path path = folder_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << content;
    return path;
  }
  std::filesystem::path WritePpd(const std::string& queue, const std::string& content) const {
    return WriteFile("ppd/" + queue + ".ppd", content);
  }

 private:
  ServerRoot() {
    std::string folder = std::filesystem::temp_directory_path() / "info_analyze_XXXXXX";
    if (mkdtemp(folder.data()) == nullptr) std::abort();
    folder_ = folder;
    setenv("CUPS_SERVERROOT", folder_.c_str(), 1);
    setenv("CUPS_SERVER", "localhost", 1);
  }
  ~ServerRoot() { std::filesystem::remove_all(folder_); }

  std::filesystem::path folder_;
};

}  // namespace ia_bench

#endif  // BENCH_SERVER_ROOT_H_

#ifndef TESTS_SUPPORT_TEMP_FOLDER_H_
#define TESTS_SUPPORT_TEMP_FOLDER_H_

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace ia_test {

// A folder of its own, removed with all it holds.
class TempFolder {
 public:
  TempFolder() {
    char name[] = "/tmp/info_analyze.XXXXXX";
    path_ = mkdtemp(name);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  // Replaces the file, so that one that is a link is not written through.
  void Write(std::string_view name, std::string_view text) const {
    const std::filesystem::path file(*this / name);
    std::filesystem::create_directories(file.parent_path());
    std::filesystem::remove(file);
    std::ofstream(file, std::ios::binary) << text;
  }
  void Remove(std::string_view name) const { std::filesystem::remove(*this / name); }

 private:
  std::string path_;
};

inline std::ptrdiff_t CountEntries(const std::string& folder) {
  return std::distance(std::filesystem::directory_iterator(folder),
                       std::filesystem::directory_iterator());
}

inline std::ptrdiff_t CountOpenDescriptors() { return CountEntries("/proc/self/fd"); }

}  // namespace ia_test

#endif  // TESTS_SUPPORT_TEMP_FOLDER_H_

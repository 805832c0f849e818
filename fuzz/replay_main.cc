// Runs a fuzzer's saved inputs, one after the other, in builds without libFuzzer: each input in
// full, and each of its prefixes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Run(std::string_view input) {
  const auto bytes = std::make_unique<std::uint8_t[]>(input.size());  // of the exact size
  std::copy(input.begin(), input.end(), bytes.get());
  LLVMFuzzerTestOneInput(bytes.get(), input.size());
}

void Replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  for (std::size_t length = 0; length <= text.size(); ++length) {
    // Printed first, because the input may end the process.
    std::cout << path.string() << ", " << length << " bytes" << std::endl;
    Run(std::string_view(text).substr(0, length));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: " << argv[0] << " FOLDER\n";
    return 2;
  }
  int inputs = 0;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1], error)) {
    Replay(entry.path());
    ++inputs;
  }
  if (inputs == 0) std::cerr << argv[1] << ": no inputs\n";
  return inputs > 0 ? 0 : 1;
}

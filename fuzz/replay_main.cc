// Runs a fuzzer's saved inputs, one after the other, in builds without libFuzzer.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Replay(const std::filesystem::path& path) {
  std::cout << path.string() << std::endl;  // told before it runs: the input may end the process
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const auto bytes = std::make_unique<std::uint8_t[]>(text.size());  // no byte to spare behind it
  std::copy(text.begin(), text.end(), bytes.get());
  LLVMFuzzerTestOneInput(bytes.get(), text.size());
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

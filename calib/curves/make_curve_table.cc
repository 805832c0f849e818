// Turns a file of known curve points into the numbers of the whole curves, which default_curves.cc
// includes.
// usage: make_curve_table FILE.csv NUMBERS
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "calib/curves/curve_table.h"

namespace ia {
namespace {

// The format of compiler errors, so that build tools and editors find the line.
int Fail(const std::string& where, const std::string& message) {
  std::cerr << where << ": error: " << message << '\n';
  return 1;
}

int MakeCurveTable(const std::filesystem::path& file, const std::string& numbers) {
  std::ifstream in(file);
  if (!in) return Fail(file.string(), std::strerror(errno));
  try {
    const CurveTable table = Interpolate(ReadKnownLevels(in));
    std::ofstream out(numbers);
    out << FormatNumbers(table) << std::flush;
    return out ? 0 : Fail(numbers, std::strerror(errno));
  } catch (const CurveFileError& error) {
    return Fail(file.string() + ":" + std::to_string(error.line()), error.what());
  }
}

}  // namespace
}  // namespace ia

int main(int argc, char** argv) {
  if (argc != 3) return ia::Fail("make_curve_table", "usage: make_curve_table FILE.csv NUMBERS");
  return ia::MakeCurveTable(argv[1], argv[2]);
}

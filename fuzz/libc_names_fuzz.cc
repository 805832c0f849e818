// Any texts through the functions with names of the C library. Lines: size, first text, second
// text; the rest is a buffer that may hold NUL bytes.
#include "info_analyze/libc_names.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/input.h"
#include "tests/info_common/guarded_buffer.h"

namespace {

using ia_fuzz::Require;

bool Holds(const char* buffer, const std::string& bytes) {
  return std::equal(bytes.begin(), bytes.end(), buffer);
}

// Buffers are cut to what can be written at most: sizes reach to the end of memory.
void CheckCopy(const std::string& source, std::size_t size) {
  std::string expected(std::clamp<std::size_t>(size, 1, source.size() + 1), '.');
  const auto buffer = ia_test::ExactBytes(expected);
  std::size_t result = source.size();
  if (size > 0) {
    result = std::min(source.size(), size - 1);
    if (result > 0) expected.replace(0, result + 1, source.substr(0, result) + '\0');
  }
  Require(info_strlcpy(buffer.get(), ia_test::ExactText(source).get(), size) == result);
  Require(Holds(buffer.get(), expected));
}

void CheckAppend(const std::string& head, const std::string& tail, std::size_t size) {
  const std::size_t whole = head.size() + tail.size() + 1;
  std::string expected = head + '\0';
  expected.resize(std::clamp(size, head.size() + 1, whole), '.');
  const auto buffer = ia_test::ExactBytes(expected);
  std::size_t added = 0;
  if (size > head.size() + 1) added = std::min(tail.size(), size - head.size() - 1);
  if (added > 0) expected.replace(head.size(), added + 1, tail.substr(0, added) + '\0');
  Require(info_strlcat(buffer.get(), ia_test::ExactText(tail).get(), size) == head.size() + added);
  Require(Holds(buffer.get(), expected));
}

void CheckFind(std::string_view haystack, const std::string& needle, std::int32_t length) {
  const auto buffer = ia_test::ExactBytes(haystack);
  length = std::min(length, static_cast<std::int32_t>(haystack.size()));
  const std::size_t place = length > 0
                                ? haystack.substr(0, static_cast<std::size_t>(length)).find(needle)
                                : haystack.npos;
  Require(info_strnstr(buffer.get(), ia_test::ExactText(needle).get(), length) ==
          (place != haystack.npos ? buffer.get() + place : nullptr));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ia_fuzz::Input input(data, size);
  const std::int32_t number = input.TakeNumber();
  const std::string first(input.TakeText());
  const std::string second(input.TakeText());
  CheckCopy(first, static_cast<std::size_t>(number));
  CheckAppend(first, second, static_cast<std::size_t>(number));
  CheckFind(input.Rest(), second, number);
  return 0;
}

// Any two texts through the string helpers. The first line is the first text, the rest the second.
#include "info_analyze/string_helpers.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "fuzz/input.h"
#include "tests/info_common/guarded_buffer.h"

namespace {

using ia_fuzz::Require;

// A buffer for the whole of what is expected, with a text at its start.
std::unique_ptr<char[]> Buffer(const std::string& expected, const std::string& text) {
  std::string bytes = text + '\0';
  bytes.resize(expected.size() + 1, '.');
  return ia_test::ExactBytes(bytes);
}

using Join = char* (*)(char*, const char*) noexcept;

void CheckCopy(Join copy, const std::string& source) {
  const auto buffer = Buffer(source, "");
  Require(copy(buffer.get(), ia_test::ExactText(source).get()) == buffer.get());
  Require(buffer.get() == source);
}

void CheckAppend(Join append, const std::string& head, const std::string& tail) {
  const auto buffer = Buffer(head + tail, head);
  Require(append(buffer.get(), ia_test::ExactText(tail).get()) == buffer.get());
  Require(buffer.get() == head + tail);
}

// Moves the text down and up by one byte, so that source and target overlap.
void CheckOverlap(Join copy, const std::string& text) {
  if (text.empty()) return;
  const auto down = ia_test::ExactText(text);
  copy(down.get(), down.get() + 1);
  Require(down.get() == text.substr(1));
  const auto up = Buffer(text.front() + text, text);
  copy(up.get() + 1, up.get());
  Require(up.get() == text.front() + text);
}

using Format = std::int32_t (*)(char*, const char*, ...) noexcept;

void CheckFormat(Format format, const std::string& head, const std::string& tail) {
  const std::string expected = head + "_" + std::to_string(tail.size()) + tail;
  const auto buffer = Buffer(expected, head);
  const auto length = format(buffer.get(), "%s_%d%s", buffer.get(), static_cast<int>(tail.size()),
                             ia_test::ExactText(tail).get());
  Require(length == static_cast<std::int32_t>(expected.size()) && buffer.get() == expected);
}

// A format without conversions, each "%" of it doubled.
void CheckPlainFormat(Format format, const std::string& text) {
  std::string doubled;
  for (const char byte : text) doubled.append(byte == '%' ? 2 : 1, byte);
  const auto buffer = Buffer(text, "");
  const auto length = format(buffer.get(), ia_test::ExactText(doubled).get());
  Require(length == static_cast<std::int32_t>(text.size()) && buffer.get() == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ia_fuzz::Input input(data, size);
  const std::string first(input.TakeText());
  const std::string second(input.Rest().substr(0, input.Rest().find('\0')));
  for (const Join copy : {util_strcpy, tb_util_strcpy}) {
    CheckCopy(copy, second);
    CheckOverlap(copy, second);
  }
  for (const Join append : {util_strcat, tb_util_strcat}) CheckAppend(append, first, second);
  for (const Format format : {util_sprintf, tb_util_sprintf}) {
    CheckFormat(format, first, second);
    CheckPlainFormat(format, second);
  }
  return 0;
}

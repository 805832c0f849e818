#include "info_common/ppd_lines.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "info_analyze/option_table.h"

namespace ia {
namespace {

// The parts of a line are short: a loop is faster than strspn() and strcspn().
template <char... kBytes>
bool IsOneOf(char byte) noexcept {
  return ((byte == kBytes) || ...);
}

template <char... kSkipped>
const char* SkipAll(const char* text) noexcept {
  while (IsOneOf<kSkipped...>(*text)) ++text;
  return text;
}

template <char... kStops>
std::string_view TextUpTo(const char* text) noexcept {
  const char* end = text;
  while (!IsOneOf<'\0', kStops...>(*end)) ++end;
  return {text, static_cast<std::size_t>(end - text)};
}

void CopyOut(std::string_view text, char* buffer) noexcept {
  *std::copy(text.begin(), text.end(), buffer) = '\0';
}

std::int32_t LengthPlusOne(std::string_view text) noexcept {
  return static_cast<std::int32_t>(text.size()) + 1;
}

}  // namespace

KeyAndValue SplitOptionLine(const char* source) noexcept {
  const std::string_view key = TextUpTo<' ', '\t', '\r', '\n', '"', ':'>(source);
  const char* rest = key.data() + key.size();
  if (*rest == '\0') return {key, {}};
  rest = SkipAll<' ', '\t'>(rest + 1);
  rest = SkipAll<':'>(rest);
  rest = SkipAll<' ', '\t'>(rest);
  rest = SkipAll<'"'>(rest);
  return {key, TextUpTo<'\r', '\t', '"', '\n'>(rest)};
}

}  // namespace ia

int32_t info_common_optlist_getoptkeyandvalue(const char* source, char* key, char* value,
                                              int32_t size) noexcept {
  if (source == nullptr || key == nullptr || value == nullptr) return -1;
  const auto [key_text, value_text] = ia::SplitOptionLine(source);
  const auto longest = static_cast<std::int64_t>(size) - 2;
  if (std::ssize(key_text) > longest || std::ssize(value_text) > longest) return -1;
  ia::CopyOut(key_text, key);
  ia::CopyOut(value_text, value);
  return ia::LengthPlusOne(value_text);
}

int32_t info_common_optlist_qvuivalue_getoptkeyandvalue(const char* source, char* key,
                                                        char* value) noexcept {
  if (source == nullptr || key == nullptr || value == nullptr) return -1;
  constexpr std::size_t kLongest = IA_PPD_TEXT_SIZE - 2;
  const std::string_view raw_key = ia::TextUpTo<'\r', '\n', '('>(source);
  const auto dropped = [](char byte) { return byte == ' ' || byte == '\t' || byte == '*'; };
  const auto key_length =
      raw_key.size() - static_cast<std::size_t>(std::ranges::count_if(raw_key, dropped));
  const char* const stop = raw_key.data() + raw_key.size();
  const std::string_view value_text =
      *stop != '\0' ? ia::TextUpTo<'\r', '\n', ')'>(stop + 1) : std::string_view();
  if (key_length > kLongest || value_text.size() > kLongest) return -1;
  *std::ranges::remove_copy_if(raw_key, key, dropped).out = '\0';
  ia::CopyOut(value_text, value);
  return ia::LengthPlusOne(value_text);
}

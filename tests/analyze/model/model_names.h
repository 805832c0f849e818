// Codes and product names that nearly match a rule.
#ifndef TESTS_ANALYZE_MODEL_MODEL_NAMES_H_
#define TESTS_ANALYZE_MODEL_MODEL_NAMES_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

namespace ia_test {

inline std::string WithoutLast(std::string text) {
  text.pop_back();
  return text;
}

inline std::string InLowerCase(std::string text) {
  for (char& letter : text) letter = static_cast<char>(std::tolower(letter));
  return text;
}

inline std::string InUpperCase(std::string text) {
  for (char& letter : text) letter = static_cast<char>(std::toupper(letter));
  return text;
}

// Of a test's name only letters and digits are allowed.
inline std::string TestName(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char letter) { return std::isalnum(letter) == 0; }, '_');
  return text;
}

// A failing row of a model table is known by its code.
template <class Row>
std::string ModelName(const testing::TestParamInfo<Row>& info) {
  return TestName(info.param.model);
}

}  // namespace ia_test

#endif  // TESTS_ANALYZE_MODEL_MODEL_NAMES_H_

#ifndef TESTS_INFO_COMMON_NAMED_ROW_H_
#define TESTS_INFO_COMMON_NAMED_ROW_H_

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>
#include <string>

namespace ia_test {

// Base of the rows of parametrised tests: a failing row is known by its name.
struct NamedRow {
  const char* name;
};

inline std::ostream& operator<<(std::ostream& out, const NamedRow& row) { return out << row.name; }

template <class Row>
auto Rows(std::initializer_list<Row> rows) {
  return testing::ValuesIn(rows.begin(), rows.end());
}

template <class Row>
std::string RowName(const testing::TestParamInfo<Row>& info) {
  return info.param.name;
}

}  // namespace ia_test

#endif  // TESTS_INFO_COMMON_NAMED_ROW_H_

// The model tables, as the library describes them to its callers, and their handlers by name.
#ifndef TESTS_ANALYZE_MODEL_MODEL_TABLES_H_
#define TESTS_ANALYZE_MODEL_MODEL_TABLES_H_

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "info_analyze/provenance.h"

namespace ia_test {

inline ModelRow RowOf(std::int32_t family, std::int32_t row) {
  ModelRow source = {};
  EXPECT_EQ(Analyze_Provenance_GetModelRow(family, row, &source, sizeof source), 1)
      << family << " " << row;
  return source;
}

inline std::vector<ModelRow> RowsOf(std::int32_t family) {
  std::vector<ModelRow> rows;
  ModelRow row = {};
  while (Analyze_Provenance_GetModelRow(family, static_cast<std::int32_t>(rows.size()), &row,
                                        sizeof row) != 0) {
    rows.push_back(row);
  }
  return rows;
}

// The codes of a table, in its order.
inline std::vector<std::string> CodesOf(std::int32_t family) {
  std::vector<std::string> codes;
  for (const ModelRow& row : RowsOf(family)) codes.emplace_back(row.code);
  return codes;
}

// The models of a test's own table, in its order.
template <class Rows>
std::vector<std::string> ModelsOf(const Rows& rows) {
  std::vector<std::string> models;
  for (const auto& row : rows) models.emplace_back(row.model);
  return models;
}

// The exported name of the function that decides for a code, which may be null; "" when none does.
inline std::string HandlerOf(std::int32_t family, const char* code) {
  const ModelRow row = RowOf(family, Analyze_Provenance_FindModelRow(family, code));
  return row.handler != nullptr ? row.handler : "";
}

// All handlers that decide for some model.
inline std::set<std::string> HandlersOf(std::int32_t family) {
  std::set<std::string> names = {HandlerOf(family, nullptr)};
  for (const ModelRow& row : RowsOf(family)) {
    if (row.handler != nullptr) names.insert(row.handler);
  }
  names.erase("");
  return names;
}

// An exported function; the program exports its own functions to be found here.
template <class Function>
Function FunctionOf(const std::string& name) {
  void* const found = dlsym(RTLD_DEFAULT, name.c_str());
  EXPECT_NE(found, nullptr) << name << " is not exported";
  return reinterpret_cast<Function>(found);
}

}  // namespace ia_test

#endif  // TESTS_ANALYZE_MODEL_MODEL_TABLES_H_

// Printers made up at random: documents of plausible and odd values for the model of a row.
#ifndef TESTS_CLI_EXPLAIN_RANDOM_PRINTER_H_
#define TESTS_CLI_EXPLAIN_RANDOM_PRINTER_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <random>
#include <string>

#include "info_analyze/device_documents.h"

namespace ia_test {

using Random = std::mt19937_64;

// What a document holds: values by key, and under "list" its items.
struct RandomPrinter {
  std::string model_code;
  std::array<nlohmann::ordered_json, IA_DOCUMENT_COUNT> documents;

  [[nodiscard]] std::string Xml(std::size_t document) const;
  [[nodiscard]] std::int32_t CountItems(std::size_t document) const;
};

[[nodiscard]] RandomPrinter MakePrinter(Random& random);

// A value that a device could report under a key; null: none.
[[nodiscard]] nlohmann::ordered_json MakeValue(Random& random, std::size_t document,
                                               const std::string& key);

}  // namespace ia_test

#endif  // TESTS_CLI_EXPLAIN_RANDOM_PRINTER_H_

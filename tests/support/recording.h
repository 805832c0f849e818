// A communication library that records its calls and gives the answers that a test sets.
#ifndef TESTS_SUPPORT_RECORDING_H_
#define TESTS_SUPPORT_RECORDING_H_

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "info_analyze/communication_library.h"

namespace ia_test {

// Numbers, words and pointers are words; a text is kept by its content, a null text as word 0.
using Argument = std::variant<std::intptr_t, double, std::string>;

template <class T>
Argument ArgumentOf(T value) {
  if constexpr (std::is_same_v<T, const char*>) {
    return value != nullptr ? Argument(std::string(value)) : Argument(std::intptr_t{0});
  } else if constexpr (std::is_same_v<T, double>) {
    return value;
  } else if constexpr (std::is_pointer_v<T>) {
    return reinterpret_cast<std::intptr_t>(value);
  } else {
    return static_cast<std::intptr_t>(value);
  }
}

struct Call {
  std::string name;
  std::vector<Argument> arguments;
  bool operator==(const Call&) const = default;
};

template <class... Ts>
Call CallTo(std::string name, Ts... arguments) {
  return Call{std::move(name), {ArgumentOf(arguments)...}};
}

inline void PrintTo(const Call& call, std::ostream* out) {
  *out << call.name << "(";
  for (const Argument& argument : call.arguments) {
    std::visit([out](const auto& value) { *out << " " << value; }, argument);
  }
  *out << " )";
}

// What a reader finds. A key has the same value at every place of the document; the recorded calls
// show where the reader was. A key that is not here is missing; a text without value is found as a
// null pointer.
struct ScriptedDocument {
  std::map<std::string, std::int32_t> longs = {};
  std::map<std::string, std::optional<std::string>> strings = {};
  std::map<std::string, std::int32_t> dict_counts = {};
  std::map<std::string, std::int32_t> array_counts = {};
  std::map<std::int32_t, std::int32_t> long_elements = {};
  std::map<std::int32_t, std::optional<std::string>> string_elements = {};
};

struct OpenReader {
  ScriptedDocument document;
  int depth = 0;  // dictionaries and arrays entered and not left
};

struct Recording {
  std::vector<Call> calls = {};
  // Uses that no communication library allows: unknown readers, unbalanced opening and closing.
  std::vector<std::string> faults = {};

  // What is answered. An entry point without result here answers truthfully.
  std::map<std::string, std::int32_t> results = {};
  void* socket = nullptr;
  QvXmlWriter* writer = nullptr;
  // By their bytes; other bytes are no document.
  std::map<std::string, ScriptedDocument> documents = {};

  std::map<QvXmlReader*, std::unique_ptr<OpenReader>> readers = {};

  QvXmlReader* Open(ScriptedDocument document) {
    auto opened = std::make_unique<OpenReader>(OpenReader{std::move(document)});
    auto* reader = reinterpret_cast<QvXmlReader*>(opened.get());
    readers[reader] = std::move(opened);
    return reader;
  }

  std::vector<std::string> NamesOfCalls() const {
    std::vector<std::string> names;
    for (const Call& call : calls) names.push_back(call.name);
    return names;
  }

  std::vector<Call> CallsTo(const std::string& name) const {
    std::vector<Call> found;
    for (const Call& call : calls) {
      if (call.name == name) found.push_back(call);
    }
    return found;
  }
};

// The name under which the unloading of the library is recorded.
inline constexpr char kUnloaded[] = "(unloaded)";

}  // namespace ia_test

// The library's own entry point: from now on it records there; null ends the recording.
extern "C" __attribute__((visibility("default"))) void recording_attach(
    ia_test::Recording* recording);

#endif  // TESTS_SUPPORT_RECORDING_H_

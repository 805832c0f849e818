#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <span>
#include <string>

#include "cli/commlib/clauses.h"
#include "cli/commlib/reader.h"
#include "cli/commlib/trial.h"
#include "cli/printer/regular_file.h"
#include "cli/provenance/provenance.h"
#include "info_analyze/bidi.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

[[nodiscard]] Reader ParseFile(Trial& trial, const std::string& name, const std::string& path) {
  trial.Begin("qvxmlwrapGet_New() of " + name);
  std::string text;
  try {
    text = ReadRegularFile(path, IA_DOCUMENT_MAX_SIZE);
  } catch (const FileFault& fault) {
    throw NotTested("cannot read " + name + ": " + fault.what());
  }
  QvXmlReader* const handle =
      Bidi_qvxmlwrapGet_New(&trial.library(), text.data(), static_cast<std::int32_t>(text.size()));
  if (handle == nullptr) throw Broken("qvxmlwrapGet_New() refuses " + name);
  return {trial, handle};
}

// Calls the function with each document that the directory has, parsed.
void ForEach(Trial& trial, const std::function<void(std::int32_t, const Reader&)>& use) {
  const std::string& folder = trial.tried().documents;
  if (folder.empty()) throw NotTested("pass --documents DIR");
  bool has_any = false;
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    const std::string name = Analyze_Provenance_GetDocumentName(i);
    const std::string path = std::string(folder).append("/").append(name);
    if (!std::filesystem::exists(path)) continue;
    has_any = true;
    const Reader reader = ParseFile(trial, name, path);
    use(i, reader);
    reader.Destroy();
  }
  if (!has_any) throw NotTested(folder + " has none of the nine documents");
}

[[nodiscard]] std::int32_t CountItems(const Reader& reader) {
  std::int32_t count = 0;
  reader.trial().Begin("qvxmlwrapGet_DictCount() of list");
  (void)Bidi_qvxmlwrapGet_DictCount(&reader.library(), reader.handle(), "list", &count);
  if (count < 0) throw Broken("qvxmlwrapGet_DictCount() of list stores " + std::to_string(count));
  return count;
}

// The elements, or "" when there is no such array.
[[nodiscard]] std::string ReadArray(const Reader& reader, const InputKey& input) {
  std::int32_t count = 0;
  if (Bidi_qvxmlwrapGet_ArrayCount(&reader.library(), reader.handle(), input.key, &count) == 0) {
    return "";
  }
  std::string values = "[";
  reader.OpenArray(input.key, true);
  for (std::int32_t i = 0; i < count; ++i) {
    std::int32_t number = 0;
    char* text = nullptr;
    if (input.type == IA_KEY_LONG_ELEMENTS) {
      (void)Bidi_qvxmlwrapGet_LongFromArray(&reader.library(), reader.handle(), i, &number, 0);
    } else {
      (void)Bidi_qvxmlwrapGet_StringFromArray(&reader.library(), reader.handle(), i, &text, nullptr,
                                              kUtf8, 0);
    }
    values += text != nullptr ? Quoted(text) : std::to_string(number);
    values += ' ';
    std::free(text);
  }
  reader.CloseArray();
  return values + "]";
}

// The value of an input as a query reads it.
[[nodiscard]] std::string ReadInput(const Reader& reader, const InputKey& input) {
  reader.trial().Begin(std::string("reading ") + input.key);
  if (input.type == IA_KEY_LONG) {
    std::int32_t number = 0;
    (void)Bidi_qvxmlwrapGet_Long(&reader.library(), reader.handle(), input.key, &number, 0);
    return std::to_string(number);
  }
  if (input.type != IA_KEY_STRING) return ReadArray(reader, input);
  char* text = nullptr;
  (void)Bidi_qvxmlwrapGet_String(&reader.library(), reader.handle(), input.key, &text, nullptr,
                                 kUtf8, 0);
  const std::string value = text != nullptr ? Quoted(text) : "NULL";
  std::free(text);
  return value;
}

// All values of a document that the library of options reads.
[[nodiscard]] std::string ReadValues(std::int32_t document, const Reader& reader) {
  std::string values;
  const std::int32_t items = CountItems(reader);
  for (std::int32_t number = 0; const InputKey* const input = FindInput(number); ++number) {
    if (input->document != document || input->type == IA_KEY_DICTIONARY) continue;
    if (input->in_list == 0) values += ReadInput(reader, *input) + "\n";
    for (std::int32_t item = 0; input->in_list != 0 && item < items; ++item) {
      reader.OpenDict("list", item, true);
      values += ReadInput(reader, *input) + "\n";
      reader.CloseDict();
    }
  }
  return values;
}

void TryParsing(Trial& trial) {
  ForEach(trial, [](std::int32_t, const Reader&) {});
}

void TryLists(Trial& trial) {
  ForEach(trial, [](std::int32_t, const Reader& reader) {
    const std::int32_t items = CountItems(reader);
    for (std::int32_t item = 0; item < items; ++item) {
      reader.OpenDict("list", item, true);
      reader.CloseDict();
    }
    reader.OpenDict("list", items, false);
    reader.CloseDict();
  });
}

void TryValues(Trial& trial) {
  ForEach(trial, [&](std::int32_t document, const Reader& reader) {
    const std::string first = ReadValues(document, reader);
    const std::string second = ReadValues(document, reader);
    trial.Begin("reading a document again");
    trial.Expect(second, first);
  });
}

void TryMissing(Trial& trial) {
  ForEach(trial, [](std::int32_t, const Reader& reader) {
    reader.Long("no such key", kMissing);
    reader.Text("no such key", kMissing);
    reader.ArrayCount("no such key", kMissing);
    reader.OpenArray("no such key", false);
    reader.LongAt(0, kMissing);
    reader.CloseArray();
  });
}

constexpr auto kClauses = std::to_array<Clause>({
    {"documents.parse", "The library parses the documents", TryParsing},
    {"documents.lists", "All items of their lists can be entered, and no more", TryLists},
    {"documents.values", "Their values are the same each time", TryValues},
    {"documents.missing", "A key that they lack stores nothing", TryMissing},
});

}  // namespace

std::span<const Clause> DocumentClauses() { return kClauses; }

}  // namespace ia::cli

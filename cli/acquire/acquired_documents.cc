#include "cli/acquire/acquired_documents.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/acquire/device_facts.h"
#include "cli/printer/handles.h"
#include "cli/terminal/failure.h"
#include "info_analyze/bidi.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

using nlohmann::ordered_json;

// Gaps -------------------------------------------------------------------------------------------

[[nodiscard]] bool Has(const Part& part, std::string_view key) { return part.known.contains(key); }

[[nodiscard]] bool HasFunction(const Part& part, std::string_view function) {
  const auto functions = part.known.find("func");
  if (functions == part.known.end()) return false;
  const ordered_json& list = functions->second.value;
  return std::find(list.begin(), list.end(), function) != list.end();
}

// An array that is missing means none. Only a unit that punches is seen to lack its details.
[[nodiscard]] std::string GapOf(std::int32_t document, const Part& part) {
  if (document == IA_DOCUMENT_FAX_LINE_LIST) {
    return Has(part, "communication_mode") ? "" : "communication_mode";
  }
  if (document != IA_DOCUMENT_FINISHER_LIST) return "";
  if (!Has(part, "func")) return "func";
  const bool needs_details = HasFunction(part, "trimming") || HasFunction(part, "inserter");
  return needs_details && !Has(part, "detail_func") ? "detail_func" : "";
}

// The library takes a number that is missing from the item before, except for trays.
[[nodiscard]] std::string InheritedKey(std::int32_t document, const Part& before,
                                       const Part& part) {
  if (document == IA_DOCUMENT_TRAY_LIST) return "";
  for (const DocumentKey& key : kDocumentKeys) {
    if (key.document != document || key.type != IA_KEY_LONG) continue;
    if (Has(before, key.name) && !Has(part, key.name)) return key.name;
  }
  return "";
}

[[nodiscard]] std::string WhyLeftOut(std::int32_t document, const std::vector<Part>& parts) {
  for (std::size_t i = 0; i < parts.size(); ++i) {
    std::string key = GapOf(document, parts[i]);
    if (key.empty() && i > 0) key = InheritedKey(document, parts[i - 1], parts[i]);
    if (!key.empty()) return key + " of " + parts[i].name + " is unknown";
  }
  return "";
}

// Writing ----------------------------------------------------------------------------------------

[[nodiscard]] std::string NameOf(std::int32_t document) {
  return Analyze_Provenance_GetDocumentName(document);
}

[[noreturn]] void Fail(std::int32_t document, const std::string& cause) {
  throw Failure(ExitStatus::kCommunicationLibrary,
                {.action = "cannot write",
                 .object = "document " + NameOf(document),
                 .cause = "the communication library " + cause,
                 .hint = "use one whose writer has the interface of libmqpd_util.so"});
}

// A document that is being written.
class Writer {
 public:
  Writer(BidiContext& library, std::int32_t document)
      : library_(library), document_(document), writer_(Bidi_qvxmlwrapSet_New(&library)) {
    if (writer_ == nullptr) Fail(document_, "starts no document");
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer() {
    if (writer_ != nullptr) (void)Bidi_qvxmlwrapSet_Destroy(&library_, writer_, 0, 0, 0);
  }

  void WritePart(const Part& part) {
    for (const DocumentKey& key : kDocumentKeys) {
      const auto known = part.known.find(key.name);
      if (key.document == document_ && known != part.known.end()) Write(key, known->second.value);
    }
  }

  void WriteItem(const Part& part) {
    Require(Bidi_qvxmlwrapSet_OpenDict(&library_, writer_, "list", 0), "list");
    WritePart(part);
    Require(Bidi_qvxmlwrapSet_CloseDict(&library_, writer_), "list");
  }

  // The whole document; nothing can be written after it.
  [[nodiscard]] std::string Finish() {
    char* text = nullptr;
    std::int32_t size = -1;
    const std::int32_t result = Bidi_qvxmlwrapSet_Destroy(
        &library_, std::exchange(writer_, nullptr), reinterpret_cast<std::intptr_t>(&text),
        reinterpret_cast<std::intptr_t>(&size), 0);
    const TextPtr owner(text);
    if (result != 0 || text == nullptr || size < 0) Fail(document_, "returns no document");
    return {text, static_cast<std::size_t>(size)};
  }

 private:
  void Require(std::int32_t result, const char* key) const {
    if (result != 0) Fail(document_, std::string("refuses the value of ") + key);
  }

  void Write(const DocumentKey& key, const ordered_json& value) {
    if (key.type == IA_KEY_LONG) {
      return Require(Bidi_qvxmlwrapSet_Long(&library_, writer_, key.name, value.get<int>()),
                     key.name);
    }
    if (key.type == IA_KEY_STRING) {
      const auto text = value.get<std::string>();
      return Require(Bidi_qvxmlwrapSet_String(&library_, writer_, key.name, text.c_str(), kUtf8, 0),
                     key.name);
    }
    Require(Bidi_qvxmlwrapSet_OpenArray(&library_, writer_, key.name), key.name);
    for (const ordered_json& element : value) Append(key, element);
    Require(Bidi_qvxmlwrapSet_CloseArray(&library_, writer_), key.name);
  }

  void Append(const DocumentKey& key, const ordered_json& element) {
    if (key.type == IA_KEY_LONG_ELEMENTS) {
      return Require(Bidi_qvxmlwrapSet_LongToArray(&library_, writer_, element.get<int>()),
                     key.name);
    }
    const auto text = element.get<std::string>();
    Require(Bidi_qvxmlwrapSet_StringToArray(&library_, writer_, text.c_str(), kUtf8, 0), key.name);
  }

  static constexpr std::intptr_t kUtf8 = 0;  // the encoding that a writer takes by default

  BidiContext& library_;
  std::int32_t document_;
  QvXmlWriter* writer_;
};

[[nodiscard]] std::string WriteDocument(BidiContext& library, const AcquiredDocument& acquired) {
  Writer writer(library, acquired.document);
  for (const Part& part : acquired.parts) {
    if (IsList(acquired.document)) {
      writer.WriteItem(part);
    } else {
      writer.WritePart(part);
    }
  }
  std::string text = writer.Finish();
  QvXmlReader* const reader =
      Bidi_qvxmlwrapGet_New(&library, text.data(), static_cast<std::int32_t>(text.size()));
  if (reader == nullptr) Fail(acquired.document, "does not read what it has written");
  (void)Bidi_qvxmlwrapGet_Destroy(&library, reader);
  return text;
}

}  // namespace

std::vector<AcquiredDocument> DocumentsOf(const DeviceFacts& facts) {
  std::vector<AcquiredDocument> documents;
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    AcquiredDocument& document = documents.emplace_back();
    document.document = i;
    if (!IsList(i)) {
      document.parts = {facts.device};
      continue;
    }
    const auto list = facts.lists.find(i);
    if (list == facts.lists.end()) {
      document.left_out = "the device does not report this list";
      continue;
    }
    document.parts = list->second;
    document.left_out = WhyLeftOut(i, document.parts);
  }
  return documents;
}

std::map<std::string, std::string> WriteDocuments(BidiContext& library,
                                                  const std::vector<AcquiredDocument>& documents) {
  std::map<std::string, std::string> files;
  for (const AcquiredDocument& document : documents) {
    if (document.left_out.empty()) {
      files[NameOf(document.document)] = WriteDocument(library, document);
    }
  }
  return files;
}

}  // namespace ia::cli

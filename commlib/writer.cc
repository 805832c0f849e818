// The document writer and its entry points.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "commlib/base64.h"
#include "commlib/c_boundary.h"
#include "commlib/document_format.h"
#include "commlib/numbers.h"
#include "commlib/xml_text.h"
#include "info_analyze/communication_library.h"

using commlib::Guarded;
using commlib::Type;

namespace {

std::string Indent(std::size_t depth) { return std::string(2 * depth, ' '); }

std::string EndTag(std::string_view element_name) {
  return std::string("</").append(element_name).append(">\n");
}

}  // namespace

// Writes the document's text as values arrive, so that a value that would make it longer than a
// reader accepts is refused at once. A refused call changes nothing, even when an allocation fails.
struct QvXmlWriter {
 public:
  QvXmlWriter();

  [[nodiscard]] bool IsIn(Type type) const { return levels_.back().type == type; }
  // The key is ignored in an array.
  bool Add(Type type, const char* key, std::string_view content);
  bool Open(Type type, const char* key);
  bool Close(Type type);
  // Closes all open containers; the writer is unusable afterwards.
  std::string_view Finish();

 private:
  struct Level {
    Type type;
    std::string end_tag;
    std::set<std::pair<Type, std::string>> names;  // of the values in it, except dictionaries
  };

  [[nodiscard]] std::optional<std::string> StartTag(Type type, const char* key) const;
  bool Reserve(std::size_t bytes);
  void RecordName(Type type, const char* key);
  void CloseInnermost();

  std::string text_;
  std::vector<Level> levels_;
  std::size_t end_tag_bytes_ = 0;  // of all levels; text_ always has room for them
};

QvXmlWriter::QvXmlWriter() {
  text_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  text_.append("<").append(commlib::kRootElement).append(" ").append(commlib::kVersionAttribute);
  text_.append("=\"").append(commlib::kVersion).append("\">\n");
  levels_.reserve(commlib::kMaxDepth);
  levels_.push_back({Type::kDict, EndTag(commlib::kRootElement), {}});
  end_tag_bytes_ = levels_.back().end_tag.size();
  Reserve(0);
}

bool QvXmlWriter::Add(Type type, const char* key, std::string_view content) {
  auto element = StartTag(type, key);
  if (!element) return false;
  element->append(content).append(EndTag(ElementName(type)));
  if (!Reserve(element->size())) return false;
  RecordName(type, key);
  text_ += *element;
  return true;
}

bool QvXmlWriter::Open(Type type, const char* key) {
  auto start_tag = StartTag(type, key);
  if (!start_tag) return false;
  *start_tag += '\n';
  Level level{type, Indent(levels_.size()) + EndTag(ElementName(type)), {}};
  if (!Reserve(start_tag->size() + level.end_tag.size())) return false;
  RecordName(type, key);
  text_ += *start_tag;
  end_tag_bytes_ += level.end_tag.size();
  levels_.push_back(std::move(level));
  return true;
}

bool QvXmlWriter::Close(Type type) {
  if (levels_.size() == 1 || !IsIn(type)) return false;
  CloseInnermost();
  return true;
}

std::string_view QvXmlWriter::Finish() {
  while (!levels_.empty()) CloseInnermost();
  return text_;
}

// Nullopt when such a value is not allowed here.
std::optional<std::string> QvXmlWriter::StartTag(Type type, const char* key) const {
  if (levels_.size() >= commlib::kMaxDepth) return std::nullopt;
  std::string tag = Indent(levels_.size()).append("<").append(ElementName(type));
  const Level& parent = levels_.back();
  if (parent.type == Type::kArray) {
    if (type == Type::kArray) return std::nullopt;
    return tag += '>';
  }
  if (key == nullptr || *key == '\0' || !commlib::IsXmlText(key)) return std::nullopt;
  if (parent.names.contains({type, key})) return std::nullopt;
  tag.append(" ").append(commlib::kKeyAttribute).append("=\"");
  return tag.append(commlib::Escape(key)).append("\">");
}

// Reserves memory for more bytes and all end tags; false when a document cannot be that long.
bool QvXmlWriter::Reserve(std::size_t bytes) {
  const std::size_t total = text_.size() + bytes + end_tag_bytes_;
  if (total > commlib::kMaxDocumentBytes) return false;
  if (total > text_.capacity()) text_.reserve(std::max(total, 2 * text_.capacity()));
  return true;
}

void QvXmlWriter::RecordName(Type type, const char* key) {
  Level& parent = levels_.back();
  if (parent.type == Type::kDict && type != Type::kDict) parent.names.emplace(type, key);
}

void QvXmlWriter::CloseInnermost() {
  const std::string& end_tag = levels_.back().end_tag;
  text_ += end_tag;
  end_tag_bytes_ -= end_tag.size();
  levels_.pop_back();
}

namespace {

std::int32_t Status(bool done) { return done ? 0 : -1; }

// Adds the value that make_content() returns. The place is the type that the current container must
// have.
template <class MakeContent>
std::int32_t AddValue(QvXmlWriter* writer, Type place, const char* key, Type type,
                      MakeContent make_content) {
  if (writer == nullptr || !writer->IsIn(place)) return -1;
  return Guarded(-1, [&] {
    const std::optional<std::string> content = make_content();
    return Status(content && writer->Add(type, key, *content));
  });
}

std::optional<std::string> TextContent(const char* text, std::intptr_t encoding_word) {
  const auto* const encoding = reinterpret_cast<const char*>(encoding_word);
  if (text == nullptr || !commlib::IsSupportedEncoding(encoding)) return std::nullopt;
  const std::string_view view = text;
  if (view.size() > commlib::kMaxDocumentBytes || !commlib::IsXmlText(view)) return std::nullopt;
  return commlib::Escape(view);
}

std::optional<std::string> BinaryContent(const void* data, std::int32_t length) {
  if (length < 0 || (data == nullptr && length > 0)) return std::nullopt;
  const std::string_view bytes(static_cast<const char*>(data), static_cast<std::size_t>(length));
  if (bytes.size() > commlib::kMaxDocumentBytes) return std::nullopt;
  return commlib::EncodeBase64(bytes);
}

std::int32_t OpenContainer(QvXmlWriter* writer, const char* key, Type type) {
  if (writer == nullptr) return -1;
  return Guarded(-1, [&] { return Status(writer->Open(type, key)); });
}

std::int32_t CloseContainer(QvXmlWriter* writer, Type type) {
  return Status(writer != nullptr && writer->Close(type));
}

}  // namespace

QvXmlWriter* qvxmlwrapSet_New(void) {
  return Guarded<QvXmlWriter*>(nullptr, [] { return new QvXmlWriter; });
}

int32_t qvxmlwrapSet_OpenDict(QvXmlWriter* writer, const char* key, intptr_t /*word*/) {
  return OpenContainer(writer, key, Type::kDict);
}

int32_t qvxmlwrapSet_Long(QvXmlWriter* writer, const char* key, int32_t value) {
  return AddValue(writer, Type::kDict, key, Type::kLong,
                  [&] { return commlib::FormatLong(value); });
}

int32_t qvxmlwrapSet_Double(QvXmlWriter* writer, const char* key, double value) {
  return AddValue(writer, Type::kDict, key, Type::kDouble,
                  [&] { return commlib::FormatDouble(value); });
}

int32_t qvxmlwrapSet_String(QvXmlWriter* writer, const char* key, const char* text, intptr_t word1,
                            intptr_t /*word2*/) {
  return AddValue(writer, Type::kDict, key, Type::kString,
                  [&] { return TextContent(text, word1); });
}

int32_t qvxmlwrapSet_Binary(QvXmlWriter* writer, const char* key, const void* data,
                            int32_t length) {
  return AddValue(writer, Type::kDict, key, Type::kBinary,
                  [&] { return BinaryContent(data, length); });
}

int32_t qvxmlwrapSet_OpenArray(QvXmlWriter* writer, const char* key) {
  return OpenContainer(writer, key, Type::kArray);
}

int32_t qvxmlwrapSet_LongToArray(QvXmlWriter* writer, int32_t value) {
  return AddValue(writer, Type::kArray, nullptr, Type::kLong,
                  [&] { return commlib::FormatLong(value); });
}

int32_t qvxmlwrapSet_DoubleToArray(QvXmlWriter* writer, double value) {
  return AddValue(writer, Type::kArray, nullptr, Type::kDouble,
                  [&] { return commlib::FormatDouble(value); });
}

int32_t qvxmlwrapSet_StringToArray(QvXmlWriter* writer, const char* text, intptr_t word1,
                                   intptr_t /*word2*/) {
  return AddValue(writer, Type::kArray, nullptr, Type::kString,
                  [&] { return TextContent(text, word1); });
}

int32_t qvxmlwrapSet_BinaryToArray(QvXmlWriter* writer, const void* data, int32_t length) {
  return AddValue(writer, Type::kArray, nullptr, Type::kBinary,
                  [&] { return BinaryContent(data, length); });
}

int32_t qvxmlwrapSet_CloseArray(QvXmlWriter* writer) {
  return CloseContainer(writer, Type::kArray);
}

int32_t qvxmlwrapSet_CloseDict(QvXmlWriter* writer) { return CloseContainer(writer, Type::kDict); }

// word1 is the address of a char* that receives the malloc'd document, word2 that of an int32_t
// that receives its length; either may be 0. word3 is reserved.
int32_t qvxmlwrapSet_Destroy(QvXmlWriter* writer, intptr_t word1, intptr_t word2,
                             intptr_t /*word3*/) {
  if (writer == nullptr) return -1;
  const std::unique_ptr<QvXmlWriter> owned(writer);
  const std::string_view document = writer->Finish();
  if (word1 != 0) {
    char* const copy = commlib::DuplicateForCaller(document);
    if (copy == nullptr) return -1;
    *reinterpret_cast<char**>(word1) = copy;
  }
  if (word2 != 0) {
    *reinterpret_cast<std::int32_t*>(word2) = static_cast<std::int32_t>(document.size());
  }
  return 0;
}

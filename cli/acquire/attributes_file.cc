#include "cli/acquire/attributes_file.h"

#include <cups/ipp.h>
#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/acquire/fields.h"
#include "cli/acquire/printer_attributes.h"
#include "cli/printer/regular_file.h"
#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

[[noreturn]] void Fail(const std::string& file, const std::string& cause) {
  throw Failure(ExitStatus::kUsage, {.object = "attributes file " + file, .cause = cause});
}

constexpr std::string_view kHexDigits = "0123456789abcdef";

// Writing ----------------------------------------------------------------------------------------

// Readers of these files replace variables, which start with a dollar sign.
[[nodiscard]] std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') quoted += '\\';
    if (character == '$') quoted += '$';
    quoted += character;
  }
  return quoted + '"';
}

[[nodiscard]] std::string OctetsAsText(ipp_attribute_t* attribute, int i) {
  int size = 0;
  const auto* const data = static_cast<const char*>(ippGetOctetString(attribute, i, &size));
  const std::string_view octets(data != nullptr ? data : "", static_cast<std::size_t>(size));
  bool is_plain = !octets.starts_with('<');
  for (const char octet : octets) is_plain = is_plain && octet >= ' ' && octet <= '~';
  if (is_plain) return Quoted(octets);
  std::string hex = "<";
  for (const char octet : octets) {
    const auto code = static_cast<unsigned char>(octet);
    hex += kHexDigits[code >> 4U];
    hex += kHexDigits[code & 0xFU];
  }
  return hex + '>';
}

[[nodiscard]] std::string FormatAttribute(std::string_view word, ipp_attribute_t* attribute);

[[nodiscard]] std::string FormatCollection(ipp_t* collection) {
  std::string text = "{";
  for (ipp_attribute_t* member = ippFirstAttribute(collection); member != nullptr;
       member = ippNextAttribute(collection)) {
    if (ippGetName(member) != nullptr) text += " " + FormatAttribute("MEMBER", member);
  }
  return text + " }";
}

// Nothing for a type that is not written.
[[nodiscard]] std::optional<std::string> FormatValue(ipp_attribute_t* attribute, int i) {
  switch (ippGetValueTag(attribute)) {
    case IPP_TAG_INTEGER:
    case IPP_TAG_ENUM:
      return std::to_string(ippGetInteger(attribute, i));
    case IPP_TAG_BOOLEAN:
      return ippGetBoolean(attribute, i) != 0 ? "true" : "false";
    case IPP_TAG_RANGE: {
      int upper = 0;
      const int lower = ippGetRange(attribute, i, &upper);
      return std::to_string(lower) + "-" + std::to_string(upper);
    }
    case IPP_TAG_RESOLUTION: {
      int feed = 0;
      int units = IPP_RES_PER_INCH;
      const int cross = ippGetResolution(attribute, i, &feed, reinterpret_cast<ipp_res_t*>(&units));
      return std::to_string(cross) + "x" + std::to_string(feed) +
             (units == IPP_RES_PER_CM ? "dpcm" : "dpi");
    }
    case IPP_TAG_STRING:
      return OctetsAsText(attribute, i);
    case IPP_TAG_BEGIN_COLLECTION:
      return FormatCollection(ippGetCollection(attribute, i));
    default: {
      const char* const text = ippGetString(attribute, i, nullptr);
      return text != nullptr ? std::optional(Quoted(text)) : std::nullopt;
    }
  }
}

// Empty when no value is written.
std::string FormatAttribute(std::string_view word, ipp_attribute_t* attribute) {
  std::string values;
  for (int i = 0; i < ippGetCount(attribute); ++i) {
    const auto value = FormatValue(attribute, i);
    if (value) values += (values.empty() ? "" : ",") + *value;
  }
  if (values.empty()) return "";
  return std::string(word) + " " + ippTagString(ippGetValueTag(attribute)) + " " +
         ippGetName(attribute) + " " + values;
}

// Reading ----------------------------------------------------------------------------------------

constexpr std::string_view kSeparators = ",{}";
constexpr std::string_view kBlanks = " \t\r\n";

class Parser {
 public:
  Parser(std::string_view text, const std::string& file) : rest_(text), file_(file) {}

  [[nodiscard]] AttributeValues ReadFile() {
    AttributeValues attributes;
    for (std::optional<std::string> word = Next(); word; word = Next()) {
      if (strcasecmp(word->c_str(), "ATTR") != 0) Refuse("\"" + *word + "\" is not ATTR");
      ReadAttribute(attributes);
    }
    return attributes;
  }

 private:
  [[noreturn]] void Refuse(const std::string& cause) const {
    Fail(file_, "line " + std::to_string(line_) + ": " + cause);
  }

  void Skip(std::size_t count) {
    for (const char character : rest_.substr(0, count)) line_ += character == '\n' ? 1 : 0;
    rest_.remove_prefix(std::min(count, rest_.size()));
  }

  void SkipBlanks() {
    while (!rest_.empty()) {
      if (rest_.front() == '#') {
        Skip(rest_.find('\n'));
      } else if (kBlanks.find(rest_.front()) != std::string_view::npos) {
        Skip(1);
      } else {
        return;
      }
    }
  }

  // The first character of the next token; NUL at the end.
  [[nodiscard]] char Peek() {
    SkipBlanks();
    return rest_.empty() ? '\0' : rest_.front();
  }

  // A word, a quoted text, or one of the characters that separate values; nothing at the end.
  [[nodiscard]] std::optional<std::string> Next() {
    const char first = Peek();
    if (rest_.empty()) return std::nullopt;
    if (first == '"' || first == '\'') return NextQuoted(first);
    if (kSeparators.find(first) != std::string_view::npos) {
      Skip(1);
      return std::string(1, first);
    }
    const std::size_t size = std::min(rest_.find_first_of(" \t\r\n,{}\"'#"), rest_.size());
    std::string word(rest_.substr(0, size));
    Skip(size);
    return word;
  }

  [[nodiscard]] std::string NextQuoted(char quote) {
    std::string text;
    Skip(1);
    while (!rest_.empty() && rest_.front() != quote) {
      const bool is_escape = rest_.size() > 1 && (rest_.front() == '\\' || rest_.starts_with("$$"));
      if (is_escape) Skip(1);
      text += rest_.front();
      Skip(1);
    }
    if (rest_.empty()) Refuse("a quotation has no end");
    Skip(1);
    return text;
  }

  [[nodiscard]] std::string Need(const char* what) {
    const std::optional<std::string> token = Next();
    if (!token) Refuse(std::string("the file ends where ") + what + " must follow");
    return *token;
  }

  void ReadAttribute(AttributeValues& attributes) {
    const std::string type = Need("a type");
    const ipp_tag_t tag = ippTagValue(type.c_str());
    if (tag < IPP_TAG_UNSUPPORTED_VALUE) Refuse("\"" + type + "\" is not a type of attributes");
    const std::string name = Need("a name");
    std::vector<std::string> values = ReadValues(tag, name);
    if (!values.empty()) attributes.emplace(name, std::move(values));
  }

  [[nodiscard]] std::vector<std::string> ReadValues(ipp_tag_t tag, const std::string& name) {
    std::vector<std::string> values;
    bool has_more = true;
    while (has_more) {
      const auto value = tag == IPP_TAG_BEGIN_COLLECTION ? ReadCollection() : ReadValue(tag, name);
      if (value) values.push_back(*value);
      has_more = Peek() == ',';
      if (has_more) (void)Next();
    }
    return values;
  }

  [[nodiscard]] std::string ReadCollection() {
    if (Need("a collection") != "{") Refuse("a collection does not start with {");
    if (++depth_ > kMaxNesting) Refuse("collections are nested too deep");
    std::string text;
    AttributeValues members;
    for (std::string word = Need("}"); word != "}"; word = Need("}")) {
      if (strcasecmp(word.c_str(), "MEMBER") != 0) Refuse("\"" + word + "\" is not MEMBER");
      ReadAttribute(members);
    }
    --depth_;
    for (const auto& [name, values] : members) AppendField(name, values.front(), text);
    return text;
  }

  // Nothing for types without a text.
  [[nodiscard]] std::optional<std::string> ReadValue(ipp_tag_t tag, const std::string& name) {
    std::string text = Need("a value");
    switch (tag) {
      case IPP_TAG_INTEGER:
        return std::to_string(Number(text));
      case IPP_TAG_ENUM:
        return ippEnumString(name.c_str(), Number(text));
      case IPP_TAG_BOOLEAN:
        if (text != "true" && text != "false") Refuse("\"" + text + "\" is neither true nor false");
        return text;
      case IPP_TAG_RESOLUTION:
        return ReadResolution(text);
      case IPP_TAG_STRING:
        return text.size() > 1 && text.starts_with('<') && text.ends_with('>') ? Octets(text)
                                                                               : text;
      default:
        return IsText(tag) ? std::optional(CleanText(text)) : std::nullopt;
    }
  }

  [[nodiscard]] int Number(std::string_view text) const {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end) {
      Refuse("\"" + std::string(text) + "\" is not a number");
    }
    return number;
  }

  // "600dpi", "600x1200dpi" or with "dpcm".
  [[nodiscard]] std::string ReadResolution(const std::string& text) const {
    const std::size_t unit = text.find('d');
    const std::string units = unit != std::string::npos ? text.substr(unit) : "";
    if (units != "dpi" && units != "dpcm") Refuse("\"" + text + "\" is not a resolution");
    const std::string dots = text.substr(0, unit);
    const std::size_t by = std::min(dots.find('x'), dots.size());
    const int cross_feed = Number(dots.substr(0, by));
    const int feed = by < dots.size() ? Number(dots.substr(by + 1)) : cross_feed;
    return ResolutionText(cross_feed, feed, units == "dpi" ? IPP_RES_PER_INCH : IPP_RES_PER_CM);
  }

  // Of hexadecimal digits between angle brackets.
  [[nodiscard]] std::string Octets(const std::string& text) const {
    std::string octets;
    const std::string digits = text.substr(1, text.size() - 2);
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
      unsigned code = 0;
      const char* const end = digits.data() + i + 2;
      if (std::from_chars(digits.data() + i, end, code, 16).ptr != end) break;
      octets += static_cast<char>(code);
    }
    if (octets.size() * 2 != digits.size()) Refuse("\"" + text + "\" is not hexadecimal");
    return octets;
  }

  std::string_view rest_;
  const std::string& file_;
  std::size_t line_ = 1;
  std::size_t depth_ = 0;
};

}  // namespace

std::string FormatAttributes(ipp_t& message) {
  std::string text;
  for (ipp_attribute_t* attribute = ippFirstAttribute(&message); attribute != nullptr;
       attribute = ippNextAttribute(&message)) {
    const bool is_of_printer = ippGetGroupTag(attribute) == IPP_TAG_PRINTER;
    if (!is_of_printer || ippGetName(attribute) == nullptr) continue;
    const std::string line = FormatAttribute("ATTR", attribute);
    if (!line.empty()) text += line + "\n";
  }
  return text;
}

AttributeValues ParseAttributes(std::string_view text, const std::string& file) {
  return Parser(text, file).ReadFile();
}

AttributeValues ReadAttributesFile(const std::string& file) {
  try {
    return ParseAttributes(ReadRegularFile(file, kMaxMessageSize), file);
  } catch (const FileFault& fault) {
    Fail(file, fault.what());
  }
}

}  // namespace ia::cli

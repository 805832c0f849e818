#include "cli/acquire/printer_attributes.h"

#include <cups/ipp.h>
#include <sys/types.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/acquire/fields.h"
#include "cli/printer/connection.h"

namespace ia::cli {
namespace {

// Bytes ------------------------------------------------------------------------------------------

// libcups limits the size of a value only, so a message is walked through before it is parsed.
class MessageWalk {
 public:
  explicit MessageWalk(std::string_view bytes) : rest_(bytes) {}

  void Check() {
    if (rest_.size() > kMaxMessageSize) throw MessageFault("is larger than 1 MiB");
    (void)Take(8);  // version, operation or status, number of the request
    for (unsigned tag = TakeByte(); tag != IPP_TAG_END; tag = TakeByte()) {
      if (tag >= IPP_TAG_UNSUPPORTED_VALUE) CheckValue(tag);
    }
    if (depth_ != 0) throw MessageFault("has a collection without an end");
  }

 private:
  void CheckValue(unsigned tag) {
    const bool has_name = !Take(TakeSize()).empty();
    (void)Take(TakeSize());
    if (has_name && ++attributes_ > kMaxAttributes) throw MessageFault("has too many attributes");
    if (++values_ > kMaxValues) throw MessageFault("has too many values");
    if (tag == IPP_TAG_BEGIN_COLLECTION && ++depth_ > kMaxNesting) {
      throw MessageFault("has collections that are nested too deep");
    }
    if (tag == IPP_TAG_END_COLLECTION && depth_-- == 0) {
      throw MessageFault("has the end of a collection without its start");
    }
  }

  std::string_view Take(std::size_t count) {
    if (count > rest_.size()) throw MessageFault("ends in the middle");
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }
  unsigned TakeByte() { return static_cast<unsigned char>(Take(1).front()); }
  std::size_t TakeSize() {
    const std::size_t high = TakeByte();
    return high << 8U | TakeByte();
  }

  std::string_view rest_;
  std::size_t attributes_ = 0;
  std::size_t values_ = 0;
  std::size_t depth_ = 0;
};

// The callback of libcups that reads from a std::string_view.
ssize_t TakeBytes(void* context, ipp_uchar_t* buffer, std::size_t size) {
  auto& rest = *static_cast<std::string_view*>(context);
  const std::size_t count = std::min(size, rest.size());
  std::memcpy(buffer, rest.data(), count);
  rest.remove_prefix(count);
  return static_cast<ssize_t>(count);
}

// Texts ------------------------------------------------------------------------------------------

// Devices that count by centimetres round: 236 is 600 dots per inch. Those are multiples of ten.
[[nodiscard]] int DotsPerInch(int dots, int units) {
  constexpr double kTensPerInch = 0.254;  // of dots
  if (units != IPP_RES_PER_CM) return dots;
  return static_cast<int>(std::lround(std::min(dots, 1'000'000) * kTensPerInch)) * 10;
}

[[nodiscard]] std::string ResolutionOf(ipp_attribute_t* attribute, int i) {
  int feed = 0;
  int units = IPP_RES_PER_INCH;
  const int cross_feed =
      ippGetResolution(attribute, i, &feed, reinterpret_cast<ipp_res_t*>(&units));
  return ResolutionText(cross_feed, feed, units);
}

[[nodiscard]] std::string OctetsOf(ipp_attribute_t* attribute, int i) {
  int size = 0;
  const auto* const octets = static_cast<const char*>(ippGetOctetString(attribute, i, &size));
  if (octets == nullptr || size <= 0) return "";
  return {octets, static_cast<std::size_t>(size)};
}

[[nodiscard]] std::string StringOf(ipp_attribute_t* attribute, int i) {
  const char* const text = ippGetString(attribute, i, nullptr);
  return text != nullptr ? CleanText(text) : "";
}

[[nodiscard]] std::optional<std::string> TextOf(ipp_attribute_t* attribute, int i);

[[nodiscard]] std::string CollectionOf(ipp_t* collection) {
  std::string text;
  for (ipp_attribute_t* member = ippFirstAttribute(collection); member != nullptr;
       member = ippNextAttribute(collection)) {
    const char* const name = ippGetName(member);
    if (name == nullptr || ippGetValueTag(member) == IPP_TAG_BEGIN_COLLECTION) continue;
    const auto value = TextOf(member, 0);
    if (value) AppendField(name, *value, text);
  }
  return text;
}

std::optional<std::string> TextOf(ipp_attribute_t* attribute, int i) {
  switch (ippGetValueTag(attribute)) {
    case IPP_TAG_INTEGER:
      return std::to_string(ippGetInteger(attribute, i));
    case IPP_TAG_ENUM:
      return ippEnumString(ippGetName(attribute), ippGetInteger(attribute, i));
    case IPP_TAG_BOOLEAN:
      return ippGetBoolean(attribute, i) != 0 ? "true" : "false";
    case IPP_TAG_RESOLUTION:
      return ResolutionOf(attribute, i);
    case IPP_TAG_STRING:
      return OctetsOf(attribute, i);
    case IPP_TAG_BEGIN_COLLECTION:
      return CollectionOf(ippGetCollection(attribute, i));
    default:
      return IsText(ippGetValueTag(attribute)) ? std::optional(StringOf(attribute, i))
                                               : std::nullopt;
  }
}

[[nodiscard]] std::vector<std::string> TextsOf(ipp_attribute_t* attribute) {
  std::vector<std::string> texts;
  for (int i = 0; i < ippGetCount(attribute); ++i) {
    const auto text = TextOf(attribute, i);
    if (text) texts.push_back(*text);
  }
  return texts;
}

}  // namespace

IppPtr ReadMessage(std::string_view bytes) {
  MessageWalk(bytes).Check();
  IppPtr message(ippNew());
  ipp_state_t state = IPP_STATE_IDLE;
  while (state != IPP_STATE_DATA && state != IPP_STATE_ERROR) {
    state = ippReadIO(&bytes, TakeBytes, 1, nullptr, message.get());
  }
  if (state == IPP_STATE_ERROR) throw MessageFault("breaks the rules of IPP");
  return message;
}

AttributeValues ValuesOf(ipp_t& message) {
  AttributeValues values;
  for (ipp_attribute_t* attribute = ippFirstAttribute(&message); attribute != nullptr;
       attribute = ippNextAttribute(&message)) {
    const char* const name = ippGetName(attribute);
    if (name == nullptr || ippGetGroupTag(attribute) != IPP_TAG_PRINTER) continue;
    std::vector<std::string> texts = TextsOf(attribute);
    if (!texts.empty()) values.emplace(name, std::move(texts));
  }
  return values;
}

bool IsText(ipp_tag_t tag) {
  return tag >= IPP_TAG_TEXT || tag == IPP_TAG_TEXTLANG || tag == IPP_TAG_NAMELANG;
}

std::string ResolutionText(int cross_feed, int feed, int units) {
  const std::string width = std::to_string(DotsPerInch(cross_feed, units));
  const std::string height = std::to_string(DotsPerInch(feed, units));
  return (width == height ? width : width + "x" + height) + "dpi";
}

const std::vector<std::string>& FindValues(const AttributeValues& attributes,
                                           std::string_view name) {
  static const std::vector<std::string> kNone;
  const auto hit = attributes.find(name);
  return hit != attributes.end() ? hit->second : kNone;
}

}  // namespace ia::cli

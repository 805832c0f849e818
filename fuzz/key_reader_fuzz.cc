// Any key descriptors, read from documents of a communication library that lies.
//
// The first line is "plain", or the number of a list's item. Each line up to the first empty one is
// a descriptor: type, document, number, key and omissions, with blanks between. The number is that
// of the descriptors inside a dictionary, which follow, or the capacity of elements. The key "-" is
// none; the letters d, e and c omit destination, encoding and count. The rest is the library's
// script.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/input.h"
#include "fuzz/lying_analyzer.h"

namespace {

using ia_fuzz::Input;
using ia_fuzz::Require;

constexpr std::size_t kLongest = 1024;
constexpr int kDeepest = 8;
constexpr std::int32_t kHighestNumber = 64;
constexpr const char* kEncoding = "UTF-8";

std::string_view TakeWord(std::string_view& line) {
  const std::string_view word = line.substr(0, line.find(' '));
  line.remove_prefix(std::min(word.size() + 1, line.size()));
  return word;
}

// A descriptor with all that it points to.
class Key {
 public:
  explicit Key(Input& lines, int depth = 0) {
    std::string_view line = lines.TakeText();
    type_ = ia_fuzz::NumberOf(TakeWord(line));
    document_ = ia_fuzz::NumberOf(TakeWord(line));
    number_ = std::clamp(ia_fuzz::NumberOf(TakeWord(line)), 0, kHighestNumber);
    name_ = TakeWord(line);
    omissions_ = line;
    count_ = number_;
    longs_.resize(static_cast<std::size_t>(number_));
    texts_.resize(static_cast<std::size_t>(number_));
    if (type_ == IA_KEY_DICTIONARY) TakeInner(lines, number_, depth + 1);
    if (type_ == IA_KEY_ARRAY) TakeInner(lines, 1, depth + 1);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    std::free(text_);
    for (char* text : texts_) std::free(text);
  }

  XmlKeyDescriptor Descriptor() {
    return {document_, name_.empty() || name_ == "-" ? nullptr : name_.c_str(), type_,
            Omits('d') ? nullptr : Destination(), Omits('e') ? nullptr : &kEncoding, nullptr,
            // Elements without a capacity are as many as the library says: their caller's risk.
            Omits('c') && !IsElements() ? nullptr : &count_};
  }

  // No array has more elements than there is room for.
  void Check() const {
    if (type_ == IA_KEY_ARRAY && !inner_.empty() && inner_.front().IsElements()) {
      Require(count_ >= 0 && count_ <= std::max(number_, inner_.front().number_));
    }
    for (const Key& key : inner_) key.Check();
  }

 private:
  void TakeInner(Input& lines, std::int32_t count, int depth) {
    for (; count > 0 && depth < kDeepest && !lines.IsEmpty(); --count) {
      inner_descriptors_.push_back(inner_.emplace_back(lines, depth).Descriptor());
    }
    inner_address_ = inner_descriptors_.empty() ? nullptr : inner_descriptors_.data();
    if (type_ == IA_KEY_DICTIONARY) count_ = static_cast<std::int32_t>(inner_.size());
  }

  bool Omits(char part) const { return omissions_.find(part) != omissions_.npos; }
  bool IsElements() const {
    return type_ == IA_KEY_LONG_ELEMENTS || type_ == IA_KEY_STRING_ELEMENTS;
  }
  void* Destination() {
    switch (type_) {
      case IA_KEY_LONG:
        return &long_;
      case IA_KEY_STRING:
        return &text_;
      case IA_KEY_LONG_ELEMENTS:
        return longs_.data();
      case IA_KEY_STRING_ELEMENTS:
        return texts_.data();
      default:
        return &inner_address_;
    }
  }

  std::int32_t type_ = 0;
  std::int32_t document_ = 0;
  std::int32_t number_ = 0;
  std::string name_;
  std::string omissions_;

  std::int32_t long_ = 0;
  char* text_ = nullptr;
  std::vector<std::int32_t> longs_;
  std::vector<char*> texts_;
  std::int32_t count_ = 0;
  std::deque<Key> inner_;
  std::vector<XmlKeyDescriptor> inner_descriptors_;
  XmlKeyDescriptor* inner_address_ = nullptr;
};

std::string TakeDescriptors(Input& input) {
  std::string lines;
  for (std::string_view line = input.TakeText(); !line.empty(); line = input.TakeText()) {
    lines.append(line).append("\n");
  }
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input input(data, std::min(size, kLongest));
  const std::string way(input.TakeText());
  const std::string lines = TakeDescriptors(input);
  Input rest(reinterpret_cast<const std::uint8_t*>(lines.data()), lines.size());
  std::deque<Key> keys;
  std::vector<XmlKeyDescriptor> descriptors;
  while (!rest.IsEmpty()) descriptors.push_back(keys.emplace_back(rest).Descriptor());

  ia_fuzz::AttachScript(input.Rest(), std::numeric_limits<std::int32_t>::max());
  const ia_test::AnalyzerPtr context = ia_fuzz::NewAnalyzer();
  ia_fuzz::LoadDocuments(context.get());
  const auto count = static_cast<std::int32_t>(descriptors.size());
  const std::int32_t status =
      way == "plain" ? analyze_common_readxml(context.get(), descriptors.data(), count)
                     : analyze_common_readxml_for_list(context.get(), descriptors.data(), count,
                                                       ia_fuzz::NumberOf(way));
  Require(status == 0 || status == -1);
  for (const Key& key : keys) key.Check();
  return 0;
}

// Reading values of device documents through key descriptors. That a value is missing is no error:
// its destination keeps the default that the caller put there.
#include "bidi/key_reader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "info_analyze/bidi.h"
#include "info_analyze/device_documents.h"
#include "info_common/owned.h"

namespace ia {
namespace {

// Where values are read from.
struct Source {
  BidiContext* bidi;
  QvXmlReader* reader;
};

std::int32_t ReadLong(Source source, const XmlKeyDescriptor& descriptor) noexcept {
  if (descriptor.key == nullptr) return -1;
  Bidi_qvxmlwrapGet_Long(source.bidi, source.reader, descriptor.key,
                         static_cast<std::int32_t*>(descriptor.destination), 0);
  return 0;
}

std::int32_t ReadString(Source source, const XmlKeyDescriptor& descriptor) noexcept {
  if (descriptor.key == nullptr || descriptor.encoding == nullptr) return -1;
  Bidi_qvxmlwrapGet_String(source.bidi, source.reader, descriptor.key,
                           static_cast<char**>(descriptor.destination), descriptor.auxiliary,
                           *descriptor.encoding, 0);
  return 0;
}

// Elements beyond the destination's capacity, if the descriptor has one, are dropped.
std::int32_t ElementsThatFit(const XmlKeyDescriptor& elements, std::int32_t count) noexcept {
  const bool has_room_for_some =
      elements.type == IA_KEY_LONG_ELEMENTS || elements.type == IA_KEY_STRING_ELEMENTS;
  return has_room_for_some && elements.count != nullptr ? std::min(count, *elements.count) : count;
}

std::int32_t ReadLongElements(Source source, const XmlKeyDescriptor& descriptor,
                              std::int32_t count) noexcept {
  auto* const numbers = static_cast<std::int32_t*>(descriptor.destination);
  for (std::int32_t i = 0; i < ElementsThatFit(descriptor, count); ++i) {
    Bidi_qvxmlwrapGet_LongFromArray(source.bidi, source.reader, i, &numbers[i], 0);
  }
  return 0;
}

std::int32_t ReadStringElements(Source source, const XmlKeyDescriptor& descriptor,
                                std::int32_t count) noexcept {
  if (descriptor.encoding == nullptr) return -1;
  auto* const texts = static_cast<char**>(descriptor.destination);
  for (std::int32_t i = 0; i < ElementsThatFit(descriptor, count); ++i) {
    char* text = nullptr;
    const bool found =
        Bidi_qvxmlwrapGet_StringFromArray(source.bidi, source.reader, i, &text,
                                          descriptor.auxiliary, *descriptor.encoding, 0) != 0;
    const CString owned_text(text);
    if (!found || !owned_text) continue;
    CString copy = Duplicate(text);
    if (!copy) return -1;
    texts[i] = copy.release();
  }
  return 0;
}

std::int32_t ReadPlain(Source source, const XmlKeyDescriptor& descriptor,
                       std::int32_t elements) noexcept {
  if (descriptor.destination == nullptr) return -1;
  switch (descriptor.type) {
    case IA_KEY_LONG:
      return ReadLong(source, descriptor);
    case IA_KEY_STRING:
      return ReadString(source, descriptor);
    case IA_KEY_LONG_ELEMENTS:
      return ReadLongElements(source, descriptor, elements);
    case IA_KEY_STRING_ELEMENTS:
      return ReadStringElements(source, descriptor, elements);
    default:
      return -1;
  }
}

std::int32_t ReadNested(Source source, const XmlKeyDescriptor* descriptors, std::int32_t count,
                        std::int32_t index) noexcept;

bool HasInner(const XmlKeyDescriptor& descriptor) noexcept {
  return descriptor.key != nullptr && descriptor.destination != nullptr &&
         descriptor.count != nullptr;
}

// The descriptors inside a dictionary, or the one of an array's elements; null for a caller's null.
const XmlKeyDescriptor* Inner(const XmlKeyDescriptor& descriptor) noexcept {
  return *static_cast<const XmlKeyDescriptor* const*>(descriptor.destination);
}

std::int32_t ReadArray(Source source, const XmlKeyDescriptor& descriptor) noexcept {
  if (!HasInner(descriptor)) return -1;
  *descriptor.count = 0;
  std::int32_t count = 0;
  Bidi_qvxmlwrapGet_ArrayCount(source.bidi, source.reader, descriptor.key, &count);
  if (count < 1) return 0;
  const XmlKeyDescriptor* const element = Inner(descriptor);
  if (element == nullptr) return -1;
  count = ElementsThatFit(*element, count);
  *descriptor.count = count;
  Bidi_qvxmlwrapGet_OpenArray(source.bidi, source.reader, descriptor.key);
  const std::int32_t status = ReadNested(source, element, 1, count);
  Bidi_qvxmlwrapGet_CloseArray(source.bidi, source.reader);
  return status;
}

// Entered even when the open failed: the communication library then reads nothing in it.
std::int32_t ReadDictionary(Source source, const XmlKeyDescriptor& descriptor,
                            std::int32_t index) noexcept {
  if (!HasInner(descriptor)) return -1;
  Bidi_qvxmlwrapGet_OpenDict(source.bidi, source.reader, descriptor.key, index);
  const std::int32_t status = ReadNested(source, Inner(descriptor), *descriptor.count, 0);
  Bidi_qvxmlwrapGet_CloseDict(source.bidi, source.reader);
  return status;
}

std::int32_t ReadAny(Source source, const XmlKeyDescriptor& descriptor,
                     std::int32_t index) noexcept {
  switch (descriptor.type) {
    case IA_KEY_ARRAY:
      return ReadArray(source, descriptor);
    case IA_KEY_DICTIONARY:
      return ReadDictionary(source, descriptor, index);
    default:
      return ReadPlain(source, descriptor, index);
  }
}

std::int32_t ReadNested(Source source, const XmlKeyDescriptor* descriptors, std::int32_t count,
                        std::int32_t index) noexcept {
  if (descriptors == nullptr) return -1;
  std::int32_t status = 0;
  for (std::int32_t i = 0; i < count && status == 0; ++i) {
    status = ReadAny(source, descriptors[i], index);
  }
  return status;
}

QvXmlReader* ReaderOf(const AnalyzeContext& context, const XmlKeyDescriptor& descriptor) noexcept {
  const bool is_document = descriptor.document >= 0 && descriptor.document < IA_DOCUMENT_COUNT;
  return is_document ? context.documents[descriptor.document].xml : nullptr;
}

}  // namespace

std::int32_t ReadKeys(const AnalyzeContext& context,
                      std::span<const XmlKeyDescriptor> keys) noexcept {
  for (const XmlKeyDescriptor& key : keys) {
    QvXmlReader* const reader = ReaderOf(context, key);
    if (reader == nullptr) return -1;
    const std::int32_t status = ReadPlain({context.bidi, reader}, key, 0);
    if (status != 0) return status;
  }
  return 0;
}

}  // namespace ia

int32_t analyze_common_readxml(AnalyzeContext* context, const XmlKeyDescriptor* descriptors,
                               int32_t count) noexcept {
  if (context == nullptr || descriptors == nullptr) return -1;
  return ia::ReadKeys(*context, {descriptors, static_cast<std::size_t>(std::max(count, 0))});
}

int32_t analyze_common_getxmlkeydata(AnalyzeContext* context, QvXmlReader* reader,
                                     const XmlKeyDescriptor* descriptor,
                                     int32_t elements) noexcept {
  if (context == nullptr || reader == nullptr || descriptor == nullptr) return -1;
  return ia::ReadPlain({context->bidi, reader}, *descriptor, elements);
}

int32_t analyze_common_getxmloneinfo(AnalyzeContext* context, QvXmlReader* reader,
                                     const XmlKeyDescriptor* descriptors, int32_t count,
                                     int32_t index) noexcept {
  if (context == nullptr || reader == nullptr) return -1;
  return ia::ReadNested({context->bidi, reader}, descriptors, count, index);
}

int32_t analyze_common_readxml_for_list(AnalyzeContext* context,
                                        const XmlKeyDescriptor* descriptors, int32_t count,
                                        int32_t list_index) noexcept {
  if (context == nullptr || descriptors == nullptr) return -1;
  for (int32_t i = 0; i < count; ++i) {
    QvXmlReader* const reader = ia::ReaderOf(*context, descriptors[i]);
    if (reader == nullptr) return -1;
    const int32_t status = ia::ReadNested({context->bidi, reader}, &descriptors[i], 1, list_index);
    if (status != 0) return status;
  }
  return 0;
}

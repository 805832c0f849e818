// The reader returns exactly what the writer wrote.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "info_analyze/communication_library.h"
#include "tests/commlib/documents.h"

namespace ia_test {
namespace {

// A dictionary of single values and lists, as a test thinks of it.
struct Bytes {
  std::string bytes;
  bool operator==(const Bytes&) const = default;
};
using Scalar = std::variant<std::int32_t, double, std::string, Bytes>;

struct Dict {
  std::map<std::string, Scalar> values;
  std::map<std::string, std::vector<Scalar>> arrays;
  std::map<std::string, std::vector<Dict>> lists;
};

template <class... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;  // clang 14 does not deduce it by itself

std::int32_t Length(const Bytes& bytes) { return static_cast<std::int32_t>(bytes.bytes.size()); }

std::int32_t Write(const Writer& writer, const char* key, const Scalar& scalar) {
  return std::visit(
      Overloaded{[&](std::int32_t value) { return qvxmlwrapSet_Long(writer.get(), key, value); },
                 [&](double value) { return qvxmlwrapSet_Double(writer.get(), key, value); },
                 [&](const std::string& text) {
                   return qvxmlwrapSet_String(writer.get(), key, text.c_str(), 0, 0);
                 },
                 [&](const Bytes& bytes) {
                   return qvxmlwrapSet_Binary(writer.get(), key, bytes.bytes.data(), Length(bytes));
                 }},
      scalar);
}

std::int32_t WriteElement(const Writer& writer, const Scalar& scalar) {
  return std::visit(
      Overloaded{[&](std::int32_t value) { return qvxmlwrapSet_LongToArray(writer.get(), value); },
                 [&](double value) { return qvxmlwrapSet_DoubleToArray(writer.get(), value); },
                 [&](const std::string& text) {
                   return qvxmlwrapSet_StringToArray(writer.get(), text.c_str(), 0, 0);
                 },
                 [&](const Bytes& bytes) {
                   return qvxmlwrapSet_BinaryToArray(writer.get(), bytes.bytes.data(),
                                                     Length(bytes));
                 }},
      scalar);
}

bool WriteAll(const Writer& writer, const Dict& dict) {
  bool is_written = true;
  for (const auto& [key, scalar] : dict.values) {
    is_written &= Write(writer, key.c_str(), scalar) == 0;
  }
  for (const auto& [key, elements] : dict.arrays) {
    is_written &= qvxmlwrapSet_OpenArray(writer.get(), key.c_str()) == 0;
    for (const Scalar& element : elements) is_written &= WriteElement(writer, element) == 0;
    is_written &= qvxmlwrapSet_CloseArray(writer.get()) == 0;
  }
  for (const auto& [key, items] : dict.lists) {
    for (const Dict& item : items) {
      is_written &= qvxmlwrapSet_OpenDict(writer.get(), key.c_str(), 0) == 0;
      is_written &= WriteAll(writer, item);
      is_written &= qvxmlwrapSet_CloseDict(writer.get()) == 0;
    }
  }
  return is_written;
}

// The same bits, so that -0.0 is not 0.0.
bool IsSame(const std::optional<double>& read, double written) {
  return read && std::bit_cast<std::uint64_t>(*read) == std::bit_cast<std::uint64_t>(written);
}

bool Holds(const Reader& reader, const char* key, const Scalar& scalar) {
  return std::visit(
      Overloaded{[&](std::int32_t value) { return GetLong(reader, key) == value; },
                 [&](double value) { return IsSame(GetDouble(reader, key), value); },
                 [&](const std::string& text) { return GetString(reader, key) == text; },
                 [&](const Bytes& bytes) { return GetBinary(reader, key) == bytes.bytes; }},
      scalar);
}

bool HoldsAt(const Reader& reader, std::int32_t index, const Scalar& scalar) {
  return std::visit(
      Overloaded{[&](std::int32_t value) { return LongAt(reader, index) == value; },
                 [&](double value) { return IsSame(DoubleAt(reader, index), value); },
                 [&](const std::string& text) { return StringAt(reader, index) == text; },
                 [&](const Bytes& bytes) { return BinaryAt(reader, index) == bytes.bytes; }},
      scalar);
}

bool HoldsAll(const Reader& reader, const Dict& dict) {
  bool is_same = true;
  for (const auto& [key, scalar] : dict.values) is_same &= Holds(reader, key.c_str(), scalar);
  for (const auto& [key, elements] : dict.arrays) {
    const auto count = static_cast<std::int32_t>(elements.size());
    is_same &= CountElements(reader, key.c_str()) == count;
    is_same &= OpenArray(reader, key.c_str());
    for (std::int32_t i = 0; i < count; ++i) {
      is_same &= HoldsAt(reader, i, elements[static_cast<std::size_t>(i)]);
    }
    is_same &= CloseArray(reader) == 0;
  }
  for (const auto& [key, items] : dict.lists) {
    const auto count = static_cast<std::int32_t>(items.size());
    is_same &= CountDicts(reader, key.c_str()) == count;
    for (std::int32_t i = 0; i < count; ++i) {
      is_same &= OpenDict(reader, key.c_str(), i);
      is_same &= HoldsAll(reader, items[static_cast<std::size_t>(i)]);
      is_same &= CloseDict(reader) == 0;
    }
  }
  return is_same;
}

bool SurvivesRoundTrip(const Dict& dict) {
  Writer writer = NewWriter();
  if (!WriteAll(writer, dict)) return false;
  const Reader reader = Read(Finish(std::move(writer)));
  return reader != nullptr && HoldsAll(reader, dict) && CloseDict(reader) == -1;
}

// Generators.

void AppendUtf8(char32_t code, std::string& out) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
  } else if (code < 0x10000) {
    out += {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
            static_cast<char>(0x80 | (code & 0x3F))};
  } else {
    out += {static_cast<char>(0xF0 | code >> 18), static_cast<char>(0x80 | (code >> 12 & 0x3F)),
            static_cast<char>(0x80 | (code >> 6 & 0x3F)), static_cast<char>(0x80 | (code & 0x3F))};
  }
}

// Half of the characters are those that markup is made of.
rc::Gen<char32_t> Character() {
  const std::u32string markup = U"<>&\"'\r\n\t ];#x[!-?/=";
  return rc::gen::oneOf(rc::gen::elementOf(markup), rc::gen::inRange<char32_t>(0x20, 0x7F),
                        rc::gen::inRange<char32_t>(0x80, 0xD800),
                        rc::gen::inRange<char32_t>(0xE000, 0xFFFE),
                        rc::gen::inRange<char32_t>(0x10000, 0x110000), rc::gen::elementOf(markup));
}

rc::Gen<std::string> Text() {
  return rc::gen::map(rc::gen::container<std::vector<char32_t>>(Character()),
                      [](const std::vector<char32_t>& codes) {
                        std::string text;
                        for (const char32_t code : codes) AppendUtf8(code, text);
                        return text;
                      });
}

rc::Gen<std::string> Key() {
  return rc::gen::suchThat(Text(), [](const std::string& text) { return !text.empty(); });
}

// Any bits, so that tiny and huge numbers are as frequent as others.
rc::Gen<double> FiniteDouble() {
  return rc::gen::suchThat(rc::gen::map(rc::gen::arbitrary<std::uint64_t>(),
                                        [](std::uint64_t bits) {
                                          return std::bit_cast<double>(bits * 0x9E3779B97F4A7C15u);
                                        }),
                           [](double value) { return std::isfinite(value); });
}

rc::Gen<Scalar> AnyScalar() {
  return rc::gen::oneOf(
      rc::gen::cast<Scalar>(rc::gen::arbitrary<std::int32_t>()),
      rc::gen::cast<Scalar>(FiniteDouble()), rc::gen::cast<Scalar>(Text()),
      rc::gen::map(rc::gen::arbitrary<std::string>(),
                   [](std::string bytes) -> Scalar { return Bytes{std::move(bytes)}; }));
}

rc::Gen<Dict> AnyDict(int levels) {
  const auto values = rc::gen::container<std::map<std::string, Scalar>>(Key(), AnyScalar());
  const auto arrays = rc::gen::container<std::map<std::string, std::vector<Scalar>>>(
      Key(), rc::gen::container<std::vector<Scalar>>(AnyScalar()));
  if (levels == 0) {
    return rc::gen::build<Dict>(rc::gen::set(&Dict::values, values),
                                rc::gen::set(&Dict::arrays, arrays));
  }
  const auto items = rc::gen::nonEmpty(
      rc::gen::scale(0.3, rc::gen::container<std::vector<Dict>>(AnyDict(levels - 1))));
  return rc::gen::build<Dict>(
      rc::gen::set(&Dict::values, values), rc::gen::set(&Dict::arrays, arrays),
      rc::gen::set(&Dict::lists,
                   rc::gen::scale(0.2, rc::gen::container<std::map<std::string, std::vector<Dict>>>(
                                           Key(), items))));
}

// Found by the property checker, which else would print nothing of a dictionary.
void showValue(const Dict& dict, std::ostream& out) {
  out << dict.values.size() << " values, " << dict.arrays.size() << " arrays, " << dict.lists.size()
      << " lists";
}

RC_GTEST_PROP(RoundTripTest, AnyDictionaryOfAnyValues, ()) {
  RC_ASSERT(SurvivesRoundTrip(*rc::gen::scale(0.3, AnyDict(2))));
}

RC_GTEST_PROP(RoundTripTest, AnyText, ()) {
  Dict dict;
  dict.values["a"] = *Text();
  RC_ASSERT(SurvivesRoundTrip(dict));
}

RC_GTEST_PROP(RoundTripTest, AnyKey, ()) {
  Dict dict;
  dict.values[*Key()] = 1;
  RC_ASSERT(SurvivesRoundTrip(dict));
}

RC_GTEST_PROP(RoundTripTest, AnyNumber, ()) {
  Dict dict;
  dict.values["long"] = *rc::gen::arbitrary<std::int32_t>();
  dict.values["double"] = *FiniteDouble();
  RC_ASSERT(SurvivesRoundTrip(dict));
}

RC_GTEST_PROP(RoundTripTest, AnyBytes, (const std::string& bytes)) {
  Dict dict;
  dict.values["a"] = Bytes{bytes};
  RC_ASSERT(SurvivesRoundTrip(dict));
}

RC_GTEST_PROP(RoundTripTest, AnyTextIsReadBackOrRefused, (const std::string& bytes)) {
  const std::string text = bytes.c_str();
  Writer writer = NewWriter();
  const bool is_written = qvxmlwrapSet_String(writer.get(), "a", text.c_str(), 0, 0) == 0;
  const Reader reader = Read(Finish(std::move(writer)));
  const bool is_document = reader != nullptr;
  RC_ASSERT(is_document);
  RC_ASSERT(GetString(reader, "a") == (is_written ? std::optional(text) : std::nullopt));
}

TEST(RoundTripTest, LimitsOfNumbers) {
  Dict dict;
  dict.values["smallest"] = std::numeric_limits<std::int32_t>::min();
  dict.values["largest"] = std::numeric_limits<std::int32_t>::max();
  dict.arrays["doubles"] = {0.0,
                            -0.0,
                            0.1,
                            1.0 / 3,
                            1e23,
                            std::numeric_limits<double>::min(),
                            std::numeric_limits<double>::denorm_min(),
                            std::numeric_limits<double>::max(),
                            std::numeric_limits<double>::lowest(),
                            std::nextafter(1.0, 2.0)};
  EXPECT_TRUE(SurvivesRoundTrip(dict));
}

TEST(RoundTripTest, TextsThatXmlTendsToChange) {
  Dict dict;
  dict.arrays["texts"] = {std::string(""),
                          std::string(" "),
                          std::string("\r"),
                          std::string("\n"),
                          std::string("\r\n"),
                          std::string("\t"),
                          std::string(" a "),
                          std::string("]]>"),
                          std::string("<![CDATA[x]]>"),
                          std::string("<!-- x -->"),
                          std::string("&amp;"),
                          std::string("&#13;"),
                          std::string("&"),
                          std::string("\"'"),
                          std::string("\xEF\xBB\xBF"),
                          std::string("\xC2\x85\xE2\x80\xA8\x7F")};
  EXPECT_TRUE(SurvivesRoundTrip(dict));
}

TEST(RoundTripTest, EveryLengthOfBytes) {
  Dict dict;
  std::string bytes;
  for (int i = 0; i < 512; ++i) {
    dict.arrays["bytes"].push_back(Bytes{bytes});
    bytes += static_cast<char>(i * 37);
  }
  EXPECT_TRUE(SurvivesRoundTrip(dict));
}

}  // namespace
}  // namespace ia_test

#include "cli/acquire/attributes_file.h"

#include <cups/cups.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "cli/acquire/printer_attributes.h"
#include "cli/printer/connection.h"
#include "cli/terminal/failure.h"
#include "tests/support/temp_folder.h"

namespace {

using ia::cli::AttributeValues;
using ia::cli::Failure;
using ia::cli::FormatAttributes;
using ia::cli::IppPtr;
using ia::cli::ParseAttributes;
using ia::cli::ValuesOf;
using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

AttributeValues Parse(const std::string& text) { return ParseAttributes(text, "f"); }

std::string FaultOf(const std::string& text) {
  try {
    (void)Parse(text);
  } catch (const Failure& failure) {
    return failure.parts().cause;
  }
  return "";
}

TEST(AttributesFile, HasAnAttributeInEachLine) {
  EXPECT_THAT(
      Parse("# A printer\n"
            "ATTR keyword sides-supported one-sided,\"two-sided-long-edge\"\n"
            "attr integer job-password-supported 4\n"
            "ATTR boolean job-account-id-supported true\n"
            "ATTR enum finishings-supported 3, 74,69\n"
            "ATTR resolution printer-resolution-supported 600dpi,600x1200dpi,118dpcm\n"
            "ATTR octetString printer-input-tray 'name=a \"b\";',<6E616D653D00>\n"
            "ATTR text printer-info \"a\\\"b\\\\c$$d\" # the rest\n"
            "ATTR no-value printer-kind none\n"),
      UnorderedElementsAre(
          Pair("sides-supported", ElementsAre("one-sided", "two-sided-long-edge")),
          Pair("job-password-supported", ElementsAre("4")),
          Pair("job-account-id-supported", ElementsAre("true")),
          Pair("finishings-supported", ElementsAre("none", "punch-dual-left", "69")),
          Pair("printer-resolution-supported", ElementsAre("600dpi", "600x1200dpi", "300dpi")),
          Pair("printer-input-tray", ElementsAre("name=a \"b\";", std::string("name=\0", 6))),
          Pair("printer-info", ElementsAre("a\"b\\c$d"))));
}

TEST(AttributesFile, HasCollections) {
  EXPECT_THAT(
      Parse("ATTR collection media-col-ready {\n"
            "  MEMBER keyword media-source tray-1\n"
            "  MEMBER collection media-size { MEMBER integer x-dimension 1 }\n"
            "}, { MEMBER keyword media-type labels }")
          .at("media-col-ready"),
      ElementsAre("media-size=x-dimension\\=1\\;;media-source=tray-1;", "media-type=labels;"));
}

TEST(AttributesFile, IsRefusedWithTheLineThatIsWrong) {
  EXPECT_EQ(FaultOf("\n\nHELLO"), "line 3: \"HELLO\" is not ATTR");
  EXPECT_EQ(FaultOf("ATTR"), "line 1: the file ends where a type must follow");
  EXPECT_EQ(FaultOf("ATTR what name x"), "line 1: \"what\" is not a type of attributes");
  EXPECT_EQ(FaultOf("ATTR text"), "line 1: the file ends where a name must follow");
  EXPECT_EQ(FaultOf("ATTR text a"), "line 1: the file ends where a value must follow");
  EXPECT_EQ(FaultOf("ATTR text a \"b"), "line 1: a quotation has no end");
  EXPECT_EQ(FaultOf("ATTR integer a 5x"), "line 1: \"5x\" is not a number");
  EXPECT_EQ(FaultOf("ATTR boolean a yes"), "line 1: \"yes\" is neither true nor false");
  EXPECT_EQ(FaultOf("ATTR resolution a 600"), "line 1: \"600\" is not a resolution");
  EXPECT_EQ(FaultOf("ATTR octetString a <0g>"), "line 1: \"<0g>\" is not hexadecimal");
  EXPECT_EQ(FaultOf("ATTR octetString a <012>"), "line 1: \"<012>\" is not hexadecimal");
  EXPECT_EQ(FaultOf("ATTR collection a b"), "line 1: a collection does not start with {");
  EXPECT_EQ(FaultOf("ATTR collection a { b"), "line 1: \"b\" is not MEMBER");
  EXPECT_EQ(FaultOf("ATTR collection a {"), "line 1: the file ends where } must follow");
  std::string deep = "ATTR collection a ";
  for (int i = 0; i < 9; ++i) deep += "{ MEMBER collection a ";
  EXPECT_EQ(FaultOf(deep), "line 1: collections are nested too deep");
}

// A message with a value of each type that is written.
IppPtr MakeMessage() {
  IppPtr message(ippNew());
  ipp_t* const ipp = message.get();
  const auto text = [&](ipp_tag_t tag, const char* name, const char* value) {
    ippAddString(ipp, IPP_TAG_PRINTER, tag, name, nullptr, value);
  };
  text(IPP_TAG_TEXT, "printer-info", "a \"quoted\" \\ text for $5 {,} # \xC3\xA4");
  text(IPP_TAG_KEYWORD, "sides-supported", "one-sided");
  text(IPP_TAG_URI, "printer-uuid", "urn:uuid:0");
  ippAddInteger(ipp, IPP_TAG_PRINTER, IPP_TAG_INTEGER, "job-password-supported", -4);
  constexpr auto kFinishings = std::to_array({3, 74, 69});
  ippAddIntegers(ipp, IPP_TAG_PRINTER, IPP_TAG_ENUM, "finishings-supported",
                 static_cast<int>(kFinishings.size()), kFinishings.data());
  ippAddBoolean(ipp, IPP_TAG_PRINTER, "job-account-id-supported", 0);
  ippAddResolution(ipp, IPP_TAG_PRINTER, "printer-resolution-supported", IPP_RES_PER_CM, 236, 118);
  ippAddRange(ipp, IPP_TAG_PRINTER, "copies-supported", 1, 99);
  ippAddOctetString(ipp, IPP_TAG_PRINTER, "printer-input-tray", "name=a\0\x1B;", 9);
  ippAddOctetString(ipp, IPP_TAG_PRINTER, "printer-output-tray", "name=Tray 1;", 12);
  const IppPtr collection(ippNew());
  ippAddString(collection.get(), IPP_TAG_ZERO, IPP_TAG_KEYWORD, "media-source", nullptr, "tray-1");
  ippAddCollection(ipp, IPP_TAG_PRINTER, "media-col-ready", collection.get());
  ippAddOutOfBand(ipp, IPP_TAG_PRINTER, IPP_TAG_NOVALUE, "printer-kind");
  ippAddString(ipp, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "of-another-group", nullptr, "x");
  return message;
}

TEST(AttributesFile, KeepsWhatAMessageHas) {
  const IppPtr message = MakeMessage();
  AttributeValues expected = ValuesOf(*message);
  EXPECT_EQ(expected.erase("copies-supported"), 0U) << "ranges have no text";
  EXPECT_EQ(Parse(FormatAttributes(*message)), expected);
}

TEST(AttributesFile, IsText) {
  EXPECT_EQ(FormatAttributes(*MakeMessage()).find('\x1B'), std::string::npos);
}

TEST(AttributesFile, ThatCannotBeReadIsAFailure) {
  const ia_test::TempFolder folder;
  EXPECT_THROW((void)ia::cli::ReadAttributesFile(folder / "missing"), Failure);
  folder.Write("large", std::string(ia::cli::kMaxMessageSize + 1, ' '));
  EXPECT_THROW((void)ia::cli::ReadAttributesFile(folder / "large"), Failure);
}

}  // namespace

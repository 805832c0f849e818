#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/process.h"
#include "tests/cli/sample_printer.h"

namespace {

using ia_test::ExpectFailure;
using ia_test::Finished;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::HasSubstr;

Finished RunTool(const std::vector<std::string>& arguments) {
  ia_test::Command command = {.arguments = {IA_TEST_TOOL, "uri"}, .environment = {}, .output = ""};
  command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
  return ia_test::RunProgram(command);
}

TEST(ToolUri, PrintsAllThatFollowsFromAUri) {
  const Finished run = RunTool({"net:192.0.2.10/PDLType=kappa2"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out,
            "endpoint_family=net:\n"
            "address=192.0.2.10\n"
            "pdl_type=kappa2\n"
            "driver_folder=/Library/Printers/Vorel/CUPSKAPPA2\n"
            "cache_folder=/var/cache/Vorel/CUPSKAPPA2\n"
            "endpoint_library=/Library/Printers/Vorel/CUPSKAPPA2/Bidi/vxio_tcpip.dylib\n"
            "communication_library=/Library/Printers/Vorel/CUPSKAPPA2/Bidi/libmqpd_util.so\n"
            "port=59790\n"
            "data_port=59690\n");
  EXPECT_EQ(run.err, "");
}

TEST(ToolUri, PrintsAllThatFollowsFromAUriAsJson) {
  const Finished run = RunTool({"usb://Vorel/X1/PDLType=fax", "--format", "json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Json::parse(run.out).dump(),
            R"({"schema_version":1,"verb":"uri","endpoint_family":"usb://","address":"Vorel/X1",)"
            R"("pdl_type":"fax","driver_folder":"/Library/Printers/Vorel/CUPSFAX",)"
            R"("cache_folder":"/var/cache/Vorel/CUPSFAX",)"
            R"("endpoint_library":"/Library/Printers/Vorel/CUPSFAX/Bidi/libvxio_usb.so",)"
            R"("communication_library":"/Library/Printers/Vorel/CUPSFAX/Bidi/libmqpd_util.so",)"
            R"("port":59792,"data_port":59692})");
}

TEST(ToolUri, NamesWhatCannotBeDerived) {
  const Finished run = RunTool({"notuse:/PDLType=sfp"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out,
            "endpoint_family=notuse:\n"
            "address=\n"
            "pdl_type=sfp\n"
            "driver_folder=/usr/lib/Vorel/CUPS_SFP\n"
            "cache_folder: cannot be derived\n"
            "endpoint_library: cannot be derived\n"
            "communication_library=/usr/lib/Vorel/CUPS_SFP/Bidi/libmqpd_util.so\n"
            "port: cannot be derived\n"
            "data_port: cannot be derived\n");
  EXPECT_EQ(run.err, "");
}

TEST(ToolUri, HasNullsForWhatCannotBeDerived) {
  const Finished run = RunTool({"net:192.0.2.10", "--format", "json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(
      Json::parse(run.out).dump(),
      R"({"schema_version":1,"verb":"uri","endpoint_family":"net:","address":null,"pdl_type":null,)"
      R"("driver_folder":null,"cache_folder":null,"endpoint_library":null,)"
      R"("communication_library":null,"port":null,"data_port":null})");
}

TEST(ToolUri, TakesAnyPrefixWithAKnownPdlType) {
  const Finished run = RunTool({"ipp://h/PDLType=ps"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, AllOf(HasSubstr("endpoint_family: cannot be derived\n"),
                             HasSubstr("driver_folder=/Library/Printers/Vorel/CUPSPS\n")));
}

TEST(ToolUri, LeavesNoControlCharacterInItsAnswer) {
  EXPECT_THAT(RunTool({"net:h\x1b/PDLType=kappa2"}).out, HasSubstr("address=h\\x1b\n"));
  const Finished run = RunTool({"net:h\x1b\xff/PDLType=kappa2", "--format", "json"});
  EXPECT_EQ(Json::parse(run.out)["address"], "h\x1b\ufffd");
}

TEST(ToolUri, FailsForATextFromWhichNothingFollows) {
  ExpectFailure(RunTool({"office\x1b"}), 6, HasSubstr("device URI office\\x1b: "));
}

TEST(ToolUri, NeedsAUri) {
  ExpectFailure(RunTool({}), 2, AllOf(HasSubstr("URI"), HasSubstr("see info-analyze uri --help")));
}

TEST(ToolUri, KnowsNoOtherFormats) {
  ExpectFailure(RunTool({"net:h", "--format", "xml"}), 2, HasSubstr("xml"));
}

}  // namespace

#include "tests/integration/allocation_scenarios.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "info_analyze/info_analyze.h"
#include "tests/integration/sample_setting.h"

namespace ia_test {
namespace {

CallFaults& Faults() { return CallFaults::Instance(); }

// Option setters and value getters.

template <OptionGetter kGetter, int32_t kNumber>
constexpr auto kGetsNumber = [](Round& round, const std::string& right) {
  const int32_t number = kNumber;
  ExpectText(round, round.Try([&] { return kGetter(&number); }), right);
};

void GetsTrue(Round& round) { kGetsNumber<zGetBoolString, 1>(round, "True"); }
void GetsFalse(Round& round) { kGetsNumber<zGetBoolString, 0>(round, "False"); }
void GetsDecimal(Round& round) { kGetsNumber<zGetBinaryString, -12>(round, "-12"); }
void GetsSpecId(Round& round) { kGetsNumber<zGetSpecIDString, 0x1A>(round, "001A"); }
void GetsHex(Round& round) { kGetsNumber<zGetHexString, 0x1B>(round, "001B"); }

void GetsString(Round& round) {
  const char* text = "mode2";
  ExpectText(round, round.Try([&] { return zGetString(&text); }), "mode2");
}

// A row whose getter finds no memory keeps its value.
void RunsGetters(Round& round) {
  const int32_t number = 7;
  OptionSetter rows[] = {{"A", Faults().NewText("old"), zGetBinaryString, &number, "none"},
                         {"B", nullptr, zGetBinaryString, &number, "none"}};
  round.Try([&] { return zGetOptionString(rows, 2); });
  const std::string first = Take(rows[0].value);
  const std::string second = Take(rows[1].value);
  round.Expect(first == "7" && second == "7",
               (first == "7" || first == "old") && (second == "7" || second == "(none)"),
               first + " " + second);
}

// A row whose entry finds no memory is left out.
void SetsOptions(Round& round) {
  const CallersList list;
  OptionSetter rows[] = {{"A", Faults().NewText("found"), nullptr, nullptr, "none"},
                         {nullptr, nullptr, nullptr, nullptr, "inert"},
                         {"B", nullptr, nullptr, nullptr, "none"}};
  const int32_t status = round.Try([&] { return zSetOptionList(rows, 3, list.head()); });
  const std::string right = "A=found\nB=none\n";
  round.Expect(status == 0 && list.Added() == right, status == 0 && IsSomeOf(list.Added(), right),
               list.Added());
}

// Queues and paths.

using FromText = int32_t (*)(const char* text, char** answer);

void ExpectDerived(Round& round, FromText derive, const char* text, const std::string& right) {
  char stale[] = "stale";
  char* answer = stale;
  const int32_t status = round.Try([&] { return derive(text, &answer); });
  const std::string shown = Take(answer);
  round.Expect(status == 0 && shown == right, status == -1 && shown == "(none)",
               std::to_string(status) + " " + shown);
}

constexpr char kUri[] = "net:192.0.2.10/PDLType=kappa2";
constexpr char kFolder[] = "/Library/Printers/Vorel/CUPSKAPPA2";

void FindsEndpoint(Round& round) { ExpectDerived(round, MqpdUriToEndpointFamily, kUri, "net:"); }
void FindsAddress(Round& round) {
  ExpectDerived(round, MqpdUriToPrinterAddress, kUri, "192.0.2.10");
}
void FindsFolder(Round& round) {
  ExpectDerived(round, MqpdUriToFullPathOfDriverFolder, kUri, kFolder);
}
void FindsOwnFolder(Round& round) {
  ExpectDerived(round, MqpdUriToFullPathOfDriverFolder, "net:h/PDLType=drv/opt/d", "/opt/d");
}
void FindsCache(Round& round) {
  ExpectDerived(round, MqpdUriToFullPathOfDriverCache, kUri, "/var/cache/Vorel/CUPSKAPPA2");
}
void FindsCacheOfFolder(Round& round) {
  ExpectDerived(round, FolderPathToDriverCache, kFolder, "/var/cache/Vorel/CUPSKAPPA2");
}
void FindsEndpointLibrary(Round& round) {
  ExpectDerived(round, MqpdUriToFullPathOfIOLib, kUri,
                std::string(kFolder) + "/Bidi/vxio_tcpip.dylib");
}
void FindsCommunicationLibrary(Round& round) {
  ExpectDerived(round, FolderPathToFullPathOfMqpdUtil, "/opt/d", "/opt/d/Bidi/libmqpd_util.so");
}

// Fails in any case, and returns the address if it can be allocated.
void FindsAddressWithoutEnd(Round& round) {
  char* address = nullptr;
  const int32_t status =
      round.Try([&] { return MqpdUriToPrinterAddress("net:192.0.2.10", &address); });
  const std::string answer = Take(address);
  round.Expect(status == -1 && answer == "192.0.2.10", status == -1 && answer == "(none)", answer);
}

void NamesCaches(Round& round) {
  ExpectText(round, round.Try([] { return drivsrctools_PathUtil_NSCachesDirectory(); }),
             "/var/cache");
}
void NamesTemporaryFiles(Round& round) {
  ExpectText(round, round.Try([] { return drivsrctools_PathUtil_NSTemporaryDirectory(); }),
             "/var/cache/Vorel/CUPS_SFP/");
}

}  // namespace

std::span<const Scenario> SetterAndPathScenarios() {
  static const auto scenarios = std::to_array<Scenario>({
      {"GetsTrue", GetsTrue},
      {"GetsFalse", GetsFalse},
      {"GetsDecimal", GetsDecimal},
      {"GetsSpecId", GetsSpecId},
      {"GetsHex", GetsHex},
      {"GetsString", GetsString},
      {"RunsGetters", RunsGetters},
      {"SetsOptions", SetsOptions},
      {"FindsEndpoint", FindsEndpoint},
      {"FindsAddress", FindsAddress},
      {"FindsAddressWithoutEnd", FindsAddressWithoutEnd},
      {"FindsFolder", FindsFolder},
      {"FindsOwnFolder", FindsOwnFolder},
      {"FindsCache", FindsCache},
      {"FindsCacheOfFolder", FindsCacheOfFolder},
      {"FindsEndpointLibrary", FindsEndpointLibrary},
      {"FindsCommunicationLibrary", FindsCommunicationLibrary},
      {"NamesCaches", NamesCaches},
      {"NamesTemporaryFiles", NamesTemporaryFiles},
  });
  return scenarios;
}

}  // namespace ia_test

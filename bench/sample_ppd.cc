#include "bench/sample_ppd.h"

#include <cups/file.h>
#include <cups/ppd.h>
#include <unistd.h>

#include "bench/driver_ppd.h"
#include "bench/sample_printer.h"
#include "bench/server_root.h"

namespace ia_bench {
namespace {

constexpr char kHead[] =
    "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n"
    "*LanguageVersion: English\n*LanguageEncoding: ISOLatin1\n*PCFileName: \"BENCH.PPD\"\n"
    "*Manufacturer: \"Sample\"\n*Product: \"(Sample)\"\n*ModelName: \"Sample\"\n"
    "*ShortNickName: \"Sample\"\n*NickName: \"Sample\"\n*PSVersion: \"(3010.0) 0\"\n"
    "*LanguageLevel: \"3\"\n*ColorDevice: True\n*DefaultColorSpace: RGB\n"
    "*FileSystem: False\n*Throughput: \"1\"\n";
constexpr std::int64_t kFirstNumber = 1'000'000;
constexpr int kOrdinaryBlocks = 100;
constexpr int kChoicesOfABlock = 22;

std::string OrdinaryBlock(int number) {
  const std::string option = "Option" + std::to_string(number);
  std::string block = "*OpenUI *" + option + "/Option " + std::to_string(number) +
                      ": PickOne\n*Default" + option + ": Choice0\n";
  for (int choice = 0; choice < kChoicesOfABlock; ++choice) {
    const std::string digits = std::to_string(choice);
    block += "*" + option + " Choice" + digits + "/Choice " + digits + ": \"<</Setting " + digits +
             ">>setpagedevice\"\n";
  }
  return block + "*CloseUI: *" + option + "\n";
}

// Keys of one width, so that none begins another, and in no order.
std::string UniformEntries(std::int64_t count) {
  std::string lines;
  for (std::int64_t i = 0; i < count; ++i) {
    lines += "*QVAnlz_Entry" + std::to_string(kFirstNumber + i * 7919 % count) + ": \"value " +
             std::to_string(i) + "\"\n";
  }
  return lines;
}

std::string Content(std::int64_t entries, PpdStyle style) {
  std::string ppd = kHead;
  int block = 0;
  while (block < kOrdinaryBlocks / 2) ppd += OrdinaryBlock(block++);
  ppd += kAnalyzerLines;
  ppd += style == PpdStyle::kDriver ? FunctionVersionFlags() + DriverEntries(entries)
                                    : UniformEntries(entries);
  while (block < kOrdinaryBlocks) ppd += OrdinaryBlock(block++);
  return ppd;
}

}  // namespace

SamplePpd::SamplePpd(std::int64_t entries, PpdStyle style)
    : queue_((style == PpdStyle::kDriver ? "driver-" : "bench-") + std::to_string(entries)),
      file_(ServerRoot::Get().WritePpd(queue_, Content(entries, style))) {}

void FetchPpd(const SamplePpd& ppd) {
// libcups 2 deprecates the call without offering another way to a queue's whole PPD.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  unlink(cupsGetPPD(ppd.queue().c_str()));
#pragma GCC diagnostic pop
}

void ReadLines(const SamplePpd& ppd) {
  cups_file_t* const file = cupsFileOpen(ppd.file().c_str(), "r");
  char line[512];
  while (cupsFileGets(file, line, sizeof line) != nullptr) {
  }
  cupsFileClose(file);
}

}  // namespace ia_bench

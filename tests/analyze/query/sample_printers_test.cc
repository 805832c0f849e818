// Queries the printers of examples/ as a caller of the library does.
#include <cups/ppd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "info_analyze/info_analyze.h"
#include "tests/support/analyzer_ptr.h"
#include "tests/support/build_folders.h"
#include "tests/support/option_lists.h"
#include "tests/support/print_queues.h"
#include "tests/support/temp_folder.h"
#include "tests/support/turkish_locale.h"

namespace ia_test {
namespace {

const std::string kExamples = IA_SOURCE_FOLDER "/examples";

struct Change {
  const char* keyword;
  const char* value;  // null: the option is not reported
};

struct SamplePrinter {
  const char* name;
  // The options of a printer whose output bins are unknown.
  const char* finisher_without_bins;
  const char* fin_tray_without_bins;
  // The options for which the common rules give a different value than the model's rules.
  std::vector<Change> without_model_code;
};

void PrintTo(const SamplePrinter& printer, std::ostream* out) { *out << printer.name; }

const SamplePrinter kPrinters[] = {
    {"colour-copier", "None", "None", {{"QVSrcOption", "None"}, {"QVFinisher", "None"}}},
    {"department-mfp", "SADFINU2", "FNTU1", {}},
    {"fax-centre", "STFINT1", "None", {{"QVPuncher", "PUNU3"}}},
    {"floor-printer", "STFINF1", "None", {{"QVSrcOption", "None"}}},
    {"light-production", "BKFINS1", "None", {{"QVInsertUnit", "INSU1"}, {"QVSrcOption", "None"}}},
    {"office-mfp", "BKFINW1", "None", {{"QVPuncher", "PUNF24"}}},
    {"print-room", "SADFINX2", "None", {{"QVPuncher", "PUNF24"}, {"QVSrcOption", "None"}}},
    {"production-press",
     "BKFIND1",
     "None",
     {{"QVSrcOption", "None"}, {"QVCas9MediaType", nullptr}, {"QVEnvelopeFeeder", nullptr}}},
    {"small-office",
     "INFINT1",
     "None",
     {{"QVSrcOption", "None"},
      {"QVManualMediaType", nullptr},
      {"QVCas1MediaType", nullptr},
      {"QVCas2MediaType", nullptr},
      {"QVCas3MediaType", nullptr}}},
    {"workgroup-mfp", "IN2TRAYB1", "None", {{"QVFinisher", "IN2TRAYB1"}}},
};

const Change kFinisherDefaults[] = {
    {"QVOptionStaple", "False"},
    {"QVPuncher", "None"},
    {"QVFolder", "None"},
    {"QVTrimmer", "None"},
    {"QVInnerTrimmer", "None"},
    {"QVInsertUnit", "None"},
    {"QVEnableMultiInserter", "False"},
    {"QVStacker", "None"},
    {"QVBinderOption", "None"},
    {"QVProPuncher", "None"},
    {"QVTopBottomTrimmer", "None"},
};

const Change kFaxDefaults[] = {
    {"QVFAXNumOfLine", "0"},      {"QVFAXLineType", "None"},
    {"QVFAXDialLineA", "False"},  {"QVFAXDialLineB", "False"},
    {"QVFAXDialLineC", "False"},  {"QVFAXDialLineD", "False"},
    {"QVFAXIPFAXINTRA", "False"}, {"QVFAXIPFAXVoIP", "False"},
    {"QVFAXIPFAXNGN", "False"},   {"QVFAXIPFAXMyNumberNGN", "False"},
};

const char* const kFunctions[] = {
    "QVDupUnit",         "QVUseJobAccount",       "QVEnableTrustPrint",
    "QVUseSecuredPrint", "QVUseCSModeJobAccount", "QVUseCSModeSecured",
    "QVUseCSModeFCode",  "QVUseUsrManagement",
};

std::string ReadFile(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

Entries ReadOptions(const std::string& path) {
  Entries options;
  std::istringstream lines(ReadFile(path));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t equals = line.find('=');
    EXPECT_NE(equals, std::string::npos) << path << ": " << line;
    options.emplace_back(line.substr(0, equals), line.substr(equals + 1));
  }
  return options;
}

auto IsOf(std::string_view keyword) {
  return [keyword](const Entry& entry) { return entry.first == keyword; };
}

// The options that are expected of a printer; a test changes them when the printer reports less.
class ExpectedOptions {
 public:
  explicit ExpectedOptions(Entries options) : options_(std::move(options)) {}

  [[nodiscard]] const Entries& entries() const { return options_; }
  [[nodiscard]] bool Has(std::string_view keyword) { return Find(keyword) != options_.end(); }

  void Set(std::string_view keyword, std::string_view value) {
    ASSERT_TRUE(Has(keyword)) << keyword;
    Find(keyword)->second = value;
  }
  void Remove(std::string_view keyword) { std::erase_if(options_, IsOf(keyword)); }
  void InsertBefore(std::string_view next, const Entry& entry) {
    ASSERT_TRUE(Has(next)) << next;
    options_.insert(Find(next), entry);
  }
  void EndAfter(std::string_view last) {
    ASSERT_TRUE(Has(last)) << last;
    options_.erase(Find(last) + 1, options_.end());
  }
  void RemoveWhereKeywordEnds(std::string_view end) {
    std::erase_if(options_, [&](const Entry& entry) { return entry.first.ends_with(end); });
  }
  template <class Changes>
  void Apply(const Changes& changes) {
    for (const Change& change : changes) {
      if (change.value == nullptr) {
        Remove(change.keyword);
      } else {
        Set(change.keyword, change.value);
      }
    }
  }

 private:
  Entries::iterator Find(std::string_view keyword) {
    return std::ranges::find_if(options_, IsOf(keyword));
  }

  Entries options_;
};

struct BidiDeleter {
  void operator()(BidiContext* bidi) const { Bidi_Destroy(bidi); }
};

class SamplePrinters : public testing::TestWithParam<SamplePrinter> {
 protected:
  SamplePrinters() : ppd_(ReadFile(ppd_file())) {
    std::filesystem::copy(folder() + "/device-info", documents_.path());
  }

  static std::string name() { return GetParam().name; }
  static std::string folder() { return kExamples + "/" + name(); }
  static std::string ppd_file() { return folder() + "/ppd/" + name() + ".ppd"; }
  // Only this model derives its insertion unit from the paper sources, after all other options.
  static bool IsLightProduction() { return name() == "light-production"; }

  void RemoveDocument(std::string_view file) const {
    ASSERT_TRUE(std::filesystem::exists(documents_ / file)) << file;
    documents_.Remove(file);
  }
  void RemoveModelCode() {
    const std::size_t at = ppd_.find("*QVAnlz_DriverName:");
    ASSERT_NE(at, std::string::npos);
    ppd_.erase(at, ppd_.find('\n', at) + 1 - at);
  }

  void ExpectQuery(int32_t result) const {
    PrintQueues::Get().Add(name(), ppd_);
    const std::unique_ptr<BidiContext, BidiDeleter> bidi(Bidi_Create(ia_test::kReferenceDriver));
    const AnalyzerPtr analyzer(
        Analyze_Create(bidi.get(), name().c_str(), documents_.path().c_str()));
    ASSERT_NE(analyzer, nullptr);
    CallersList list;
    EXPECT_EQ(Analyze_Info_FromPrinter(analyzer.get(), list.get(), 0), result);
    EXPECT_THAT(list.entries(), testing::ElementsAreArray(expected_.entries()));
  }

  TempFolder documents_;
  std::string ppd_;
  ExpectedOptions expected_{ReadOptions(folder() + "/expected-options.txt")};
};

TEST_P(SamplePrinters, ReportTheirOptions) { ExpectQuery(0); }

TEST_P(SamplePrinters, ReportTheirOptionsInTurkish) {
  const TurkishLocale locale;
  if (!locale.IsInForce()) GTEST_SKIP() << kNoTurkishLocale;
  ExpectQuery(0);
}

TEST_P(SamplePrinters, WithoutAccessoriesReportTheRest) {
  RemoveDocument("Accessories.xml");
  expected_.Remove("QVHardDisk");
  expected_.Remove("QVTotalMemSize");
  ExpectQuery(0);
}

TEST_P(SamplePrinters, WithoutFunctionsReportTheRest) {
  RemoveDocument("Functions.xml");
  for (const char* keyword : kFunctions) expected_.Remove(keyword);
  ExpectQuery(0);
}

// The query checks for the finishers before it reads the platform version from this document.
TEST_P(SamplePrinters, WithoutSpecificationFailAtThePlatform) {
  RemoveDocument("Specid.xml");
  expected_.EndAfter("QVUseUsrManagement");
  ExpectQuery(-1);
}

// The query skips the platform version instead of the finishers, which count as none.
TEST_P(SamplePrinters, WithoutFinishersReportNoneAndNoPlatform) {
  RemoveDocument("Finisher_list.xml");
  expected_.Remove("QVPlatformVersion");
  expected_.Apply(kFinisherDefaults);
  if (IsLightProduction()) expected_.Set("QVInsertUnit", "MINSU1");
  for (const char* keyword : {"QVFinisher", "QVCopyTray", "QVFinTray"}) {
    expected_.Set(keyword, "None");
  }
  ExpectQuery(0);
}

TEST_P(SamplePrinters, WithoutBinsReportNoFinishingFunctions) {
  RemoveDocument("Bin_list.xml");
  for (const Change& option : kFinisherDefaults) expected_.Remove(option.keyword);
  if (IsLightProduction()) expected_.InsertBefore("QVFinisher", {"QVInsertUnit", "MINSU1"});
  expected_.Set("QVTrayCSetting", "FinTopTray");
  expected_.Set("QVFinisher", GetParam().finisher_without_bins);
  expected_.Set("QVCopyTray", "None");
  expected_.Set("QVFinTray", GetParam().fin_tray_without_bins);
  ExpectQuery(0);
}

TEST_P(SamplePrinters, WithoutPaperSourcesReportNoneAndNoTrayC) {
  RemoveDocument("Tray_list.xml");
  expected_.Remove("QVTrayCSetting");
  expected_.RemoveWhereKeywordEnds("MediaType");
  if (expected_.Has("QVSidePaperDeck")) expected_.Set("QVSidePaperDeck", "None");
  expected_.Set("QVSrcOption", "None");
  if (expected_.Has("QVEnvelopeFeeder")) expected_.Set("QVEnvelopeFeeder", "False");
  if (IsLightProduction()) expected_.Set("QVInsertUnit", "None");
  ExpectQuery(0);
}

TEST_P(SamplePrinters, WithoutResolutionsFailAfterTheBins) {
  RemoveDocument("Resolutions.xml");
  expected_.EndAfter("QVTrayCSetting");
  if (IsLightProduction()) expected_.Set("QVInsertUnit", "INSU1");
  ExpectQuery(-1);
}

// Dial lines still follow from the device name.
TEST_P(SamplePrinters, WithoutFaxLinesReportNoneAndNoResolutions) {
  RemoveDocument("Fax_line_list.xml");
  for (const char* keyword : {"QVEnableQuick", "QVEnableFine", "QVEnableSuperFine"}) {
    expected_.Remove(keyword);
  }
  expected_.Apply(kFaxDefaults);
  if (name() == "floor-printer") {
    for (const char* keyword : {"QVFAXDialLineA", "QVFAXDialLineB", "QVFAXDialLineC"}) {
      expected_.Set(keyword, "True");
    }
  }
  ExpectQuery(0);
}

TEST_P(SamplePrinters, WithoutDeviceNameReportNothing) {
  RemoveDocument("Devicename.xml");
  expected_ = ExpectedOptions({});
  ExpectQuery(-1);
}

TEST_P(SamplePrinters, WithoutModelCodeFollowTheCommonRules) {
  RemoveModelCode();
  expected_.Set("QVOptionStaple", "False");
  if (!expected_.Has("QVSidePaperDeck")) {
    expected_.InsertBefore("QVSrcOption", {"QVSidePaperDeck", "None"});
  }
  expected_.Set("QVCopyTray", "None");
  expected_.Set("QVFinTray", "None");
  expected_.Apply(GetParam().without_model_code);
  ExpectQuery(0);
}

// libcups deprecates its PPD functions, but the parser of its programs is still this one.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

struct PpdCloser {
  void operator()(ppd_file_t* ppd) const { ppdClose(ppd); }
};

// The memory size is no choice, and the small office printer's specification ID is not limited to
// choices; every other reported value is a choice.
TEST_P(SamplePrinters, HavePpdsThatOfferTheReportedOptions) {
  ppdSetConformance(PPD_CONFORM_STRICT);
  const std::unique_ptr<ppd_file_t, PpdCloser> ppd(ppdOpenFile(ppd_file().c_str()));
  ASSERT_NE(ppd, nullptr);
  ppdMarkDefaults(ppd.get());
  EXPECT_EQ(ppdConflicts(ppd.get()), 0);
  for (const auto& [keyword, value] : expected_.entries()) {
    if (keyword == "QVTotalMemSize") continue;
    if (keyword == "QVSpecID" && name() == "small-office") continue;
    ppd_option_t* option = ppdFindOption(ppd.get(), keyword.c_str());
    ASSERT_NE(option, nullptr) << keyword;
    EXPECT_NE(ppdFindChoice(option, value.c_str()), nullptr) << keyword << "=" << value;
  }
}

#pragma GCC diagnostic pop

std::string TestName(const testing::TestParamInfo<SamplePrinter>& printer) {
  std::string name = printer.param.name;
  std::ranges::replace(name, '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, SamplePrinters, testing::ValuesIn(kPrinters), TestName);

TEST(SamplePrinterFolders, AreAllTested) {
  std::vector<std::string> folders;
  for (const auto& entry : std::filesystem::directory_iterator(kExamples)) {
    if (exists(entry.path() / "expected-options.txt")) {
      folders.push_back(entry.path().filename());
    }
  }
  std::vector<std::string> tested;
  for (const SamplePrinter& printer : kPrinters) tested.emplace_back(printer.name);
  EXPECT_THAT(tested, testing::UnorderedElementsAreArray(folders));
}

}  // namespace
}  // namespace ia_test

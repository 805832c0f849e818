// Users of the library that query the sample printers again and again.
#ifndef TESTS_INTEGRATION_SAMPLE_USERS_H_
#define TESTS_INTEGRATION_SAMPLE_USERS_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "info_analyze/info_analyze.h"
#include "tests/support/build_folders.h"
#include "tests/support/option_lists.h"
#include "tests/support/print_queues.h"

namespace ia_test {

inline std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

// A printer of examples/, which is also a print queue.
struct SampleQueue {
  explicit SampleQueue(const std::filesystem::path& folder)
      : name(folder.filename()),
        documents(folder / "device-info"),
        options(ContentOf(folder / "expected-options.txt")) {
    PrintQueues::Get().Add(name, ContentOf(folder / "ppd" / (name + ".ppd")));
  }

  static std::vector<SampleQueue> All() {
    std::vector<SampleQueue> queues;
    for (const auto& entry : std::filesystem::directory_iterator(IA_SOURCE_FOLDER "/examples")) {
      if (entry.is_directory()) queues.emplace_back(entry.path());
    }
    EXPECT_GT(queues.size(), 1u);
    return queues;
  }

  std::string name;
  std::string documents;
  std::string options;  // one line each
};

// Creates an analyser, queries it, queries it again with reloaded documents, queries the flags of a
// function version, and destroys it. Returns whether every answer was right.
inline bool AskOnce(const SampleQueue& queue) {
  BidiContext* const bidi = Bidi_Create(ia_test::kReferenceDriver);
  AnalyzeContext* const analyzer =
      Analyze_Create(bidi, queue.name.c_str(), queue.documents.c_str());
  bool is_right = analyzer != nullptr;
  for (const std::uint8_t reload : {0, 1}) {
    CallersList list;
    is_right = is_right && Analyze_Info_FromPrinter(analyzer, list.get(), reload) == 0;
    std::string options;
    for (const auto& [keyword, value] : list.entries()) options += keyword + "=" + value + "\n";
    is_right = is_right && options == queue.options;
  }
  CallersList flags;
  is_right = is_right && Analyze_Info_FromFunctionVersion(analyzer, 0x310, flags.get()) == 0;
  Analyze_Destroy(analyzer);
  Bidi_Destroy(bidi);
  return is_right;
}

}  // namespace ia_test

#endif  // TESTS_INTEGRATION_SAMPLE_USERS_H_

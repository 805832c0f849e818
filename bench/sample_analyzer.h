// Analysers of the sample printer, on one of the communication libraries.
#ifndef BENCH_SAMPLE_ANALYZER_H_
#define BENCH_SAMPLE_ANALYZER_H_

#include <cstdint>
#include <memory>
#include <string>

#include "bench/sample_ppd.h"
#include "bench/sample_printer.h"
#include "info_analyze/info_analyze.h"

namespace ia_bench {

// A communication library in its driver folder, and its form of the sample printer's documents.
struct Library {
  const char* driver_folder;
  const char* document_folder;
  std::string (*content)(const SampleDocument& document);

  // A link to the driver folder whose name has the same length in every tree. The library copies
  // the name to the heap, and its length shifts later allocations and so the instruction count.
  [[nodiscard]] std::string LinkDriverFolder() const;
  // Returns the folder.
  [[nodiscard]] std::string WriteDocuments() const;
};

std::string ToXml(const SampleDocument& document);
std::string ToDigit(const SampleDocument& document);

inline const Library kReference{IA_REFERENCE_DRIVER, "reference", ToXml};
inline const Library kFixedAnswers{IA_FIXED_ANSWERS_DRIVER, "fixed-answers", ToDigit};

template <auto kRelease>
struct Releaser {
  template <class T>
  void operator()(T* object) const {
    kRelease(object);
  }
};
using BidiPtr = std::unique_ptr<BidiContext, Releaser<Bidi_Destroy>>;
using AnalyzerPtr = std::unique_ptr<AnalyzeContext, Releaser<Analyze_Destroy>>;

// A list as callers hand one in.
class ResultList {
 public:
  ResultList() { info_common_optlist_additem_front(&list_, "", ""); }
  ~ResultList() { OptionList_Terminate(&list_); }
  ResultList(const ResultList&) = delete;
  ResultList& operator=(const ResultList&) = delete;

  [[nodiscard]] OptionList* get() const { return list_; }

 private:
  OptionList* list_ = nullptr;
};

class SampleAnalyzer {
 public:
  SampleAnalyzer(const Library& library, const SamplePpd& ppd);

  [[nodiscard]] AnalyzerPtr Create() const;
  [[nodiscard]] const AnalyzeContext& context() const { return *analyzer_; }

  // These abort when they fail.
  void Query(const ResultList& list, std::uint8_t reload);
  void FunctionVersion(const ResultList& list);

 private:
  std::string documents_;
  std::string queue_;
  BidiPtr bidi_;
  AnalyzerPtr analyzer_;
};

}  // namespace ia_bench

#endif  // BENCH_SAMPLE_ANALYZER_H_

#ifndef TESTS_SUPPORT_ANALYZER_PTR_H_
#define TESTS_SUPPORT_ANALYZER_PTR_H_

#include <memory>

#include "info_analyze/analyzer.h"

namespace ia_test {

struct AnalyzerDeleter {
  void operator()(AnalyzeContext* context) const { Analyze_Destroy(context); }
};
using AnalyzerPtr = std::unique_ptr<AnalyzeContext, AnalyzerDeleter>;

}  // namespace ia_test

#endif  // TESTS_SUPPORT_ANALYZER_PTR_H_

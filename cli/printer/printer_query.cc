#include "cli/printer/printer_query.h"

#include <cstdint>
#include <string>
#include <vector>

#include "cli/printer/documents.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

[[noreturn]] void FailForDocuments(const std::string& queue, std::int32_t result,
                                   const std::vector<std::string>& missing) {
  for (const std::string& sentence : missing) ReportError(sentence);
  throw Failure(ExitStatus::kDocuments,
                {.object = "queue " + queue,
                 .cause = "the query failed with result " + std::to_string(result)});
}

}  // namespace

OptionListPtr QueryPrinter(AnalyzeContext& analyzer, const std::string& queue) {
  OptionListPtr options = StartOptionList();
  const Step step("the documents and options of queue " + queue);
  const std::int32_t result = Analyze_Info_FromPrinter(&analyzer, options.get(), 0);
  const std::vector<std::string> missing = ExplainMissingDocuments(analyzer);
  if (result != 0) FailForDocuments(queue, result, missing);
  for (const std::string& sentence : missing) ReportWarning(sentence);
  return options;
}

}  // namespace ia::cli

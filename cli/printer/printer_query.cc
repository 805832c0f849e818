#include "cli/printer/printer_query.h"

#include <cstdint>
#include <string>
#include <vector>

#include "cli/printer/documents.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

[[noreturn]] void FailForDocuments(const std::string& queue,
                                   const std::vector<std::string>& missing) {
  for (const std::string& sentence : missing) ReportError(sentence);
  throw Failure(
      ExitStatus::kDocuments,
      {.object = "queue " + queue,
       .cause = missing.empty() ? "the query failed"
                                : "the query failed, because " + std::to_string(missing.size()) +
                                      " of 9 documents cannot be read",
       .hint = "find out why with info-analyze doctor"});
}

}  // namespace

OptionListPtr QueryPrinter(AnalyzeContext& analyzer, const std::string& queue) {
  OptionListPtr options = StartOptionList();
  const Step step("the documents and options of queue " + queue);
  const std::int32_t result = Analyze_Info_FromPrinter(&analyzer, options.get(), 0);
  const std::vector<std::string> missing = ExplainMissingDocuments(analyzer);
  const bool has_documents = missing.size() < IA_DOCUMENT_COUNT;
  if (result != 0 || !has_documents) FailForDocuments(queue, missing);
  for (const std::string& sentence : missing) ReportWarning(sentence);
  return options;
}

}  // namespace ia::cli

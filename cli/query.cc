#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "cli/documents.h"
#include "cli/failure.h"
#include "cli/output.h"
#include "cli/session.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

struct QueryOptions {
  PrinterLocation location;
  std::string format = "text";
};

// The library appends to lists that have a node, so a list begins with an empty one.
[[nodiscard]] OptionListPtr StartOptionList() {
  OptionList* list = nullptr;
  info_common_optlist_additem_front(&list, "", "");
  if (list == nullptr) throw std::bad_alloc();
  return OptionListPtr(list);
}

[[noreturn]] void FailForDocuments(const std::string& queue, int32_t result,
                                   const std::vector<std::string>& missing) {
  for (const std::string& sentence : missing) ReportError(sentence);
  throw Failure(ExitStatus::kDocuments,
                "queue " + queue + ": the query failed with result " + std::to_string(result));
}

void Query(const QueryOptions& query) {
  const Session session = OpenSession(query.location);
  const OptionListPtr options = StartOptionList();
  const int32_t result = Analyze_Info_FromPrinter(session.analyzer.get(), options.get(), 0);
  const std::vector<std::string> missing = ExplainMissingDocuments(*session.analyzer);
  if (result != 0) FailForDocuments(query.location.queue, result, missing);
  for (const std::string& sentence : missing) ReportWarning(sentence);
  const Answer answer = {session.analyzer->driver_name, options->next};
  WriteAnswer(FindFormatter(query.format)(answer));
}

}  // namespace

void DefineQuery(CLI::App& verb) {
  const auto query = std::make_shared<QueryOptions>();
  AddPrinterOptions(verb, query->location);
  AddFormatOption(verb, query->format);
  verb.callback([query] { Query(*query); });
}

}  // namespace ia::cli

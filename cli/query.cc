#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/printer/printer_query.h"
#include "cli/printer/session.h"
#include "cli/snapshot/locate.h"
#include "cli/terminal/output.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

struct QueryOptions {
  PrinterLocation location;
  std::string format = "text";
};

void Query(const QueryOptions& query) {
  const PrinterLocation location = Locate(query.location);
  const Session session = OpenSession(location);
  const OptionListPtr options = QueryPrinter(*session.analyzer, location.queue);
  const Answer answer = {session.analyzer->driver_name, options->next};
  WriteAnswer(FindFormatter(query.format)(answer));
}

}  // namespace

void DefineQuery(CLI::App& verb) {
  const auto query = std::make_shared<QueryOptions>();
  AddPrinterOptions(verb, query->location);
  AddFormatOption(verb, query->format);
  verb.footer(
      "Examples:\n"
      "  info-analyze query --queue office\n"
      "  info-analyze query --queue office --driver-folder /usr/lib/driver \\\n"
      "      --device-info /var/cache/office\n"
      "  info-analyze query --snapshot office.snapshot --format json");
  verb.callback([query] { Query(*query); });
}

}  // namespace ia::cli

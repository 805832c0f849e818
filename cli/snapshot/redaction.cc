#include "cli/snapshot/redaction.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "cli/snapshot/redacted_document.h"
#include "cli/snapshot/redacted_ppd.h"
#include "cli/terminal/failure.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

// Part of a device URI: the scheme and a colon, perhaps two slashes; the host; the rest.
struct UriParts {
  std::string_view start;
  std::string_view host;
  std::string_view rest;
};

[[nodiscard]] UriParts SplitUri(std::string_view uri) {
  const std::size_t colon = uri.find(':');
  if (colon == std::string_view::npos) return {"", "", uri};
  const bool has_slashes = uri.substr(colon + 1).starts_with("//");
  const std::string_view start = uri.substr(0, colon + (has_slashes ? 3 : 1));
  uri.remove_prefix(start.size());
  const bool has_brackets = uri.starts_with('[');
  const std::size_t end = has_brackets ? uri.find(']') + 1 : uri.find_first_of(":/?#");
  const std::string_view host = uri.substr(0, end);
  return {start, host, uri.substr(host.size())};
}

[[nodiscard]] std::string_view WithoutBrackets(std::string_view host) {
  return host.starts_with('[') ? host.substr(1, host.size() - 2) : host;
}

// Calls with each name=value of the part after the host.
template <class Use>
void ForEachParameter(std::string_view rest, Use use) {
  while (!rest.empty()) {
    rest.remove_prefix(std::min(rest.find_first_not_of("/?&;#"), rest.size()));
    const std::string_view part = rest.substr(0, rest.find_first_of("/?&;#"));
    const std::size_t equals = std::min(part.find('='), part.size());
    use(part.substr(0, equals), part.substr(std::min(equals + 1, part.size())));
    rest.remove_prefix(part.size());
  }
}

void AddSecretsOfUri(std::string_view uri, Secrets& secrets) {
  const UriParts parts = SplitUri(uri);
  secrets.AddAddresses(uri);
  secrets.AddHost(WithoutBrackets(parts.host));
  ForEachParameter(parts.rest, [&](std::string_view name, std::string_view value) {
    if (name == "serial" || name == "uuid") secrets.Add(Category::kSerial, value);
  });
}

// Of the rest only the port and what names the driver family says nothing of the owner.
[[nodiscard]] std::string RedactedUri(const std::string& uri, Secrets& secrets) {
  const UriParts parts = SplitUri(uri);
  const std::string_view port = parts.rest.substr(0, parts.rest.find_first_of("/?#"));
  std::string redacted = std::string(parts.start) + secrets.Replaced(parts.host);
  redacted += port;
  ForEachParameter(parts.rest, [&](std::string_view name, std::string_view value) {
    static_cast<void>(secrets.Replaced(value));  // counts those that are left out
    if (name == "PDLType") redacted += "/PDLType=" + std::string(value);
  });
  return redacted;
}

[[nodiscard]] std::string AllTexts(const Snapshot& snapshot) {
  std::string texts;
  for (const auto& [name, contents] : snapshot.files) texts += contents + "\n";
  return texts + snapshot.device_uri + "\n" + snapshot.queue;
}

// Calls with the number and the name of each document of a snapshot.
template <class Use>
void ForEachDocument(const Snapshot& snapshot, Use use) {
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    const std::string name = SnapshotDocumentName(Analyze_Provenance_GetDocumentName(i));
    if (snapshot.files.contains(name)) use(i, name);
  }
}

[[nodiscard]] Secrets SecretsOf(const Snapshot& snapshot, const QueueAttributes& facts) {
  Secrets secrets(AllTexts(snapshot));
  secrets.Add(Category::kQueue, snapshot.queue);
  secrets.Add(Category::kLocation, facts.location);
  secrets.Add(Category::kDescription, facts.description);
  AddSecretsOfUri(snapshot.device_uri, secrets);
  AddSecretsOfPpd(snapshot.files.at(SnapshotPpdName(snapshot.queue)), secrets);
  ForEachDocument(snapshot, [&](std::int32_t document, const std::string& name) {
    AddSecretsOfDocument(document, snapshot.files.at(name), secrets);
  });
  return secrets;
}

void WarnOfRemaining(const Snapshot& snapshot, const Secrets& secrets) {
  for (const auto& [name, contents] : snapshot.files) {
    for (const Category category : secrets.RemainingIn(contents)) {
      ReportWarning(name + ": the " + NameOf(category) +
                    " is also part of a text that decides on options, and stays there");
    }
  }
}

}  // namespace

Secrets Redact(Snapshot& snapshot, const QueueAttributes& facts) {
  Secrets secrets = SecretsOf(snapshot, facts);
  Snapshot redacted = snapshot;
  redacted.is_redacted = true;
  redacted.queue = secrets.Replaced(snapshot.queue);
  redacted.device_uri = RedactedUri(snapshot.device_uri, secrets);
  redacted.files.clear();
  redacted.files[SnapshotPpdName(redacted.queue)] =
      RedactedPpd(snapshot.files.at(SnapshotPpdName(snapshot.queue)), secrets);
  ForEachDocument(snapshot, [&](std::int32_t document, const std::string& name) {
    redacted.files[name] = RedactedDocument(document, snapshot.files.at(name), secrets);
  });
  WarnOfRemaining(redacted, secrets);
  snapshot = std::move(redacted);
  return secrets;
}

}  // namespace ia::cli

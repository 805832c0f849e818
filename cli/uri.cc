#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/printer/handles.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

struct UriOptions {
  std::string uri;
  std::string format = "text";
};

// Each returns null for what cannot be derived from the URI.
using Part = Json (*)(const std::string& uri);

template <auto kDerive>
Json Derived(const std::string& source) {
  char* text = nullptr;
  const int32_t status = kDerive(source.c_str(), &text);
  const TextPtr owned(text);  // a failed call may return one too
  return status == 0 ? Json(text) : Json(nullptr);
}

template <auto kDerive>
Json DerivedFromFolder(const std::string& uri) {
  const Json folder = Derived<MqpdUriToFullPathOfDriverFolder>(uri);
  return folder.is_null() ? folder : kDerive(folder.get<std::string>());
}

template <auto kLookUp>
Json Port(const std::string& folder) {
  Json answer;
  if (const int32_t port = kLookUp(folder.c_str()); port != 0) answer = port;
  return answer;
}

Json PdlType(const std::string& uri) {
  const std::string mark = "/PDLType=";
  const std::size_t at = uri.find(mark);
  return at != std::string::npos ? Json(uri.substr(at + mark.size())) : Json(nullptr);
}

struct Row {
  const char* name;
  Part part;
};

constexpr auto kRows = std::to_array<Row>({
    {"endpoint_family", Derived<MqpdUriToEndpointFamily>},
    {"address", Derived<MqpdUriToPrinterAddress>},
    {"pdl_type", PdlType},
    {"driver_folder", Derived<MqpdUriToFullPathOfDriverFolder>},
    {"cache_folder", Derived<MqpdUriToFullPathOfDriverCache>},
    {"endpoint_library", Derived<MqpdUriToFullPathOfIOLib>},
    {"communication_library", DerivedFromFolder<Derived<FolderPathToFullPathOfMqpdUtil>>},
    {"port", DerivedFromFolder<Port<FolderPathToPortNumber>>},
    {"data_port", DerivedFromFolder<Port<FolderPathToDataPortNumber>>},
});

[[nodiscard]] Json PartsOf(const std::string& uri) {
  Json parts;
  for (const Row& row : kRows) parts[row.name] = row.part(uri);
  return parts;
}

[[nodiscard]] std::string ToText(const Json& parts) {
  std::string text;
  for (const auto& [name, value] : parts.items()) {
    if (value.is_null()) {
      text += name + ": cannot be derived\n";
    } else {
      text += name + "=" + Printable(value.is_string() ? value.get<std::string>() : value.dump()) +
              "\n";
    }
  }
  return text;
}

void ShowParts(const UriOptions& options) {
  const Json parts = PartsOf(options.uri);
  if (std::ranges::all_of(parts, [](const Json& part) { return part.is_null(); })) {
    throw Failure(ExitStatus::kNotFound, {.object = "device URI " + options.uri,
                                          .cause = "has neither a known endpoint nor a PDL type"});
  }
  WriteAnswer(options.format == "json" ? DumpJson(parts) : ToText(parts));
}

}  // namespace

void DefineUri(CLI::App& verb) {
  const auto options = std::make_shared<UriOptions>();
  verb.add_option("URI", options->uri, "Device URI")->required();
  AddFormatOption(verb, options->format);
  verb.footer("Examples:\n  info-analyze uri net:192.0.2.10/PDLType=kappa2");
  verb.callback([options] { ShowParts(*options); });
}

}  // namespace ia::cli

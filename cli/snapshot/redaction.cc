#include "cli/snapshot/redaction.h"

#include <array>
#include <cstdint>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/failure.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

struct PrivateKey {
  std::int32_t document;
  const char* key;
};

constexpr auto kPrivateKeys = std::to_array<PrivateKey>({
    {IA_DOCUMENT_DEVICENAME, "devicename"},
    {IA_DOCUMENT_FAX_LINE_LIST, "id"},
});

void RemoveKey(pugi::xml_node node, std::string_view key) {
  const std::vector<pugi::xml_node> children(node.begin(), node.end());
  for (const pugi::xml_node child : children) {
    // A comment may repeat a private value.
    const bool is_private = key == child.attribute("key").value();
    if (is_private || child.type() == pugi::node_comment) {
      node.remove_child(child);
    } else {
      RemoveKey(child, key);
    }
  }
}

}  // namespace

std::string Redact(std::int32_t document, const std::string& contents) {
  for (const PrivateKey& row : kPrivateKeys) {
    if (document != row.document) continue;
    pugi::xml_document xml;
    const unsigned options = pugi::parse_default | pugi::parse_declaration | pugi::parse_ws_pcdata;
    if (!xml.load_buffer(contents.data(), contents.size(), options) ||
        xml.document_element().name() != std::string_view("document")) {
      throw Failure(ExitStatus::kDocuments,
                    std::string(Analyze_Provenance_GetDocumentName(document)) +
                        ": cannot be redacted, its format is not known");
    }
    RemoveKey(xml, row.key);
    std::ostringstream text;
    xml.save(text, "", pugi::format_raw);
    return text.str();
  }
  return contents;
}

}  // namespace ia::cli

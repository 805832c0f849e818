#include "cli/snapshot/redaction.h"

#include <array>
#include <pugixml.hpp>
#include <sstream>
#include <string_view>
#include <vector>

#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

struct PrivateKey {
  const char* file_name;
  const char* key;
};

constexpr auto kPrivateKeys = std::to_array<PrivateKey>({
    {"Devicename.xml", "devicename"},
    {"Fax_line_list.xml", "id"},
});

void RemoveKey(pugi::xml_node node, std::string_view key) {
  std::vector<pugi::xml_node> children(node.begin(), node.end());
  for (pugi::xml_node child : children) {
    // A comment may repeat what is left out.
    const bool is_private = key == child.attribute("key").value();
    if (is_private || child.type() == pugi::node_comment) {
      node.remove_child(child);
    } else {
      RemoveKey(child, key);
    }
  }
}

}  // namespace

std::string Redact(const std::string& file_name, const std::string& document) {
  for (const PrivateKey& row : kPrivateKeys) {
    if (file_name != row.file_name) continue;
    pugi::xml_document xml;
    const unsigned options = pugi::parse_default | pugi::parse_declaration | pugi::parse_ws_pcdata;
    if (!xml.load_buffer(document.data(), document.size(), options) ||
        xml.document_element().name() != std::string_view("document")) {
      throw Failure(ExitStatus::kDocuments,
                    file_name + ": cannot be redacted, its format is not known");
    }
    RemoveKey(xml, row.key);
    std::ostringstream text;
    xml.save(text, "", pugi::format_raw);
    return text.str();
  }
  return document;
}

}  // namespace ia::cli

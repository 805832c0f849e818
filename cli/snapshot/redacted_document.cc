#include "cli/snapshot/redacted_document.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/snapshot/addresses.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/printable.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

struct PrivateKey {
  std::string_view part;  // of the key, in lower case
  Category category;
};

constexpr auto kPrivateKeys = std::to_array<PrivateKey>({
    {"serial", Category::kSerial},
    {"location", Category::kLocation},
    {"host", Category::kHost},
    {"domain", Category::kHost},
    {"fqdn", Category::kHost},
    {"nickname", Category::kNickName},
    {"contact", Category::kContact},
    {"owner", Category::kContact},
    {"mail", Category::kContact},
    {"phone", Category::kContact},
});

// Names of models, by which the library decides on dial lines.
constexpr auto kDecidingDeviceNames = std::to_array<std::string_view>({"HZL-A", "HZL-B/HZL-C"});

constexpr std::string_view kDeviceName = "devicename";
constexpr std::string_view kFaxLineId = "id";

[[nodiscard]] pugi::xml_document Parse(std::int32_t document, const std::string& contents) {
  pugi::xml_document xml;
  const unsigned options = pugi::parse_default | pugi::parse_declaration | pugi::parse_ws_pcdata;
  if (xml.load_buffer(contents.data(), contents.size(), options) &&
      xml.document_element().name() == std::string_view("document")) {
    return xml;
  }
  throw Failure(ExitStatus::kDocuments,
                {.object = Analyze_Provenance_GetDocumentName(document),
                 .cause = "cannot be redacted, its format is not known",
                 .hint = "take the snapshot without --redact, or remove the document"});
}

[[nodiscard]] std::string_view KeyOf(pugi::xml_node node) { return node.attribute("key").value(); }

[[nodiscard]] bool Is(pugi::xml_node node, std::string_view element) {
  return node.name() == element;
}

[[nodiscard]] bool IsNumber(pugi::xml_node node) { return Is(node, "long") || Is(node, "double"); }

[[nodiscard]] bool IsDeviceName(std::int32_t document, std::string_view key) {
  return document == IA_DOCUMENT_DEVICENAME && key == kDeviceName;
}

[[nodiscard]] bool IsFaxLineId(std::int32_t document, std::string_view key) {
  return document == IA_DOCUMENT_FAX_LINE_LIST && key == kFaxLineId;
}

// Whether a rule of the library reads the key, for any model.
[[nodiscard]] bool Decides(std::int32_t document, std::string_view key) {
  if (IsDeviceName(document, key)) return false;
  InputKey input = {};
  for (std::int32_t i = 0; Analyze_Provenance_GetInput(i, &input, sizeof input) != 0; ++i) {
    if (input.document == document && key == input.key) return true;
  }
  return false;
}

[[nodiscard]] std::optional<Category> CategoryOf(std::int32_t document, std::string_view key) {
  if (IsDeviceName(document, key)) return Category::kDeviceName;
  const std::string lower = LowerCase(key);
  const auto row = std::ranges::find_if(kPrivateKeys, [&](const PrivateKey& known) {
    return lower.find(known.part) != std::string::npos;
  });
  if (row == kPrivateKeys.end()) return std::nullopt;
  return row->category;
}

// Collecting --------------------------------------------------------------------------------------

void AddValue(Category category, std::string_view value, Secrets& secrets) {
  if (category == Category::kDeviceName && std::ranges::count(kDecidingDeviceNames, value) > 0) {
    return;
  }
  if (category == Category::kHost) return secrets.AddHost(value);
  secrets.Add(category, value);
}

class Collector : public pugi::xml_tree_walker {
 public:
  Collector(std::int32_t document, Secrets& secrets) : document_(document), secrets_(secrets) {}

  bool for_each(pugi::xml_node& node) override {
    secrets_.AddAddresses(node.value());
    for (const pugi::xml_attribute attribute : node.attributes()) {
      secrets_.AddAddresses(attribute.value());
    }
    const std::string_view key = KeyOf(node);
    const std::string_view text = node.text().get();
    const auto category = CategoryOf(document_, key);
    if (category && !Decides(document_, key)) AddValue(*category, text, secrets_);
    if (IsMac(text) && !Decides(document_, key)) secrets_.Add(Category::kMac, text);
    return true;
  }

 private:
  std::int32_t document_;
  Secrets& secrets_;
};

// Replacing ---------------------------------------------------------------------------------------

class DocumentRedactor {
 public:
  DocumentRedactor(std::int32_t document, Secrets& secrets)
      : document_(document), secrets_(secrets) {}

  // The items of an array have the key of the array; those of a dictionary have their own.
  void RedactChildren(pugi::xml_node node, bool decides) {
    const std::vector<pugi::xml_node> children(node.begin(), node.end());
    for (const pugi::xml_node child : children) {
      const std::string_view key = KeyOf(child);
      if (IsFaxLineId(document_, key)) {
        secrets_.Count(Category::kFaxLine);
        node.remove_child(child);
      } else if (child.type() == pugi::node_element) {
        const bool has_own_key = child.attribute("key") && !Is(child, "dict");
        RedactElement(child, has_own_key ? Decides(document_, key) : decides);
      } else if (!decides) {
        RedactText(child);
      }
    }
  }

 private:
  void RedactElement(pugi::xml_node element, bool decides) {
    for (pugi::xml_attribute attribute : element.attributes()) {
      const bool is_key = std::string_view(attribute.name()) == "key";
      if (is_key && Decides(document_, attribute.value())) continue;
      attribute.set_value(secrets_.Replaced(attribute.value()).c_str());
    }
    if (Is(element, "binary") && !decides) {
      secrets_.Count(Category::kBinary);
      element.remove_children();
    }
    RedactChildren(element, decides && !Is(element, "dict"));
  }

  // What a number has to become is a number.
  void RedactText(pugi::xml_node text) {
    const std::string replaced = secrets_.Replaced(text.value());
    if (replaced == text.value()) return;
    text.set_value(IsNumber(text.parent()) ? "0" : replaced.c_str());
  }

  std::int32_t document_;
  Secrets& secrets_;
};

void DeclareUtf8(pugi::xml_document& xml) {
  const pugi::xml_node declaration = xml.first_child();
  if (declaration.type() != pugi::node_declaration) return;
  pugi::xml_attribute encoding = declaration.attribute("encoding");
  if (encoding) encoding.set_value("UTF-8");
}

}  // namespace

void AddSecretsOfDocument(std::int32_t document, const std::string& contents, Secrets& secrets) {
  Collector collector(document, secrets);
  pugi::xml_document xml = Parse(document, contents);
  xml.traverse(collector);
}

std::string RedactedDocument(std::int32_t document, const std::string& contents, Secrets& secrets) {
  pugi::xml_document xml = Parse(document, contents);
  DocumentRedactor(document, secrets).RedactChildren(xml, false);
  DeclareUtf8(xml);
  std::ostringstream text;
  xml.save(text, "", pugi::format_raw);
  return text.str();
}

}  // namespace ia::cli

#include "bench/sample_analyzer.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <span>
#include <variant>

#include "bench/driver_ppd.h"
#include "bench/server_root.h"

namespace ia_bench {
namespace {

struct XmlValue {
  std::string attribute;

  std::string operator()(std::int32_t number) const {
    return "<long" + attribute + ">" + std::to_string(number) + "</long>";
  }
  std::string operator()(const char* text) const {
    return "<string" + attribute + ">" + text + "</string>";
  }
  template <class Element>
  std::string operator()(std::span<Element> elements) const {
    std::string xml = "<array" + attribute + ">";
    for (const Element& element : elements) xml += XmlValue{""}(element);
    return xml + "</array>";
  }
};

std::string ToXml(const Fields& fields) {
  std::string xml;
  for (const auto& [key, value] : fields) {
    xml += std::visit(XmlValue{" key=\"" + std::string(key) + "\""}, value) + "\n";
  }
  return xml;
}

}  // namespace

std::string ToXml(const SampleDocument& document) {
  std::string xml = "<document version=\"1\">" + ToXml(document.fields);
  for (const Fields& item : document.list) {
    xml += "<dict key=\"list\">" + ToXml(item) + "</dict>\n";
  }
  return xml + "</document>\n";
}

std::string ToDigit(const SampleDocument& document) {
  return std::to_string(&document - kDocuments.data());
}

std::string Library::LinkDriverFolder() const {
  const std::string link = ServerRoot::Get().folder() / (document_folder + std::string("-driver"));
  if (symlink(driver_folder, link.c_str()) != 0 && errno != EEXIST) std::abort();
  return link;
}

std::string Library::WriteDocuments() const {
  const ServerRoot& root = ServerRoot::Get();
  for (const SampleDocument& document : kDocuments) {
    root.WriteFile(document_folder + ("/" + std::string(document.file)), content(document));
  }
  return root.folder() / document_folder;
}

SampleAnalyzer::SampleAnalyzer(const Library& library, const SamplePpd& ppd)
    : documents_(library.WriteDocuments()),
      queue_(ppd.queue()),
      bidi_(Bidi_Create(library.LinkDriverFolder().c_str())),
      analyzer_(Create()) {
  if (!analyzer_) std::abort();
}

AnalyzerPtr SampleAnalyzer::Create() const {
  return AnalyzerPtr(Analyze_Create(bidi_.get(), queue_.c_str(), documents_.c_str()));
}

void SampleAnalyzer::Query(const ResultList& list, std::uint8_t reload) {
  if (Analyze_Info_FromPrinter(analyzer_.get(), list.get(), reload) != 0) std::abort();
}

void SampleAnalyzer::FunctionVersion(const ResultList& list) {
  if (Analyze_Info_FromFunctionVersion(analyzer_.get(), kFunctionVersion, list.get()) != 0) {
    std::abort();
  }
}

}  // namespace ia_bench

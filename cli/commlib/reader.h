// A reader of a document, whose calls are compared with what they should give.
#ifndef INFO_ANALYZE_CLI_COMMLIB_READER_H_
#define INFO_ANALYZE_CLI_COMMLIB_READER_H_

#include <cstdint>
#include <string>

#include "cli/commlib/trial.h"
#include "info_analyze/communication_library.h"

namespace ia::cli {

// What a Get function should give when there is no such value: 0, and an unchanged output.
inline constexpr const char* kMissing = "nothing";

inline constexpr const char* kUtf8 = "UTF-8";

// The value of a trial's document as an expectation: a number as it is, texts and bytes in quotes.
[[nodiscard]] std::string Quoted(const std::string& text);

// Each function calls the entry point of its name and throws Broken unless it gives what is
// expected.
class Reader {
 public:
  // Takes the ownership of the handle, which is null in trials of null arguments.
  Reader(Trial& trial, QvXmlReader* handle) : Reader(trial, trial.library(), handle) {}
  Reader(Trial& trial, BidiContext& library, QvXmlReader* handle)
      : trial_(trial), library_(library), handle_(handle) {}

  void DictCount(const char* key, const std::string& expected) const;
  void OpenDict(const char* key, std::int32_t index, bool is_entered) const;
  void CloseDict(std::int32_t expected = 0) const;
  void ArrayCount(const char* key, const std::string& expected) const;
  void OpenArray(const char* key, bool is_entered) const;
  void CloseArray(std::int32_t expected = 0) const;
  void Long(const char* key, const std::string& expected) const;
  void Double(const char* key, const std::string& expected) const;
  void Text(const char* key, const std::string& expected, const char* encoding = kUtf8) const;
  void Binary(const char* key, const std::string& expected) const;
  void LongAt(std::int32_t index, const std::string& expected) const;
  void DoubleAt(std::int32_t index, const std::string& expected) const;
  void TextAt(std::int32_t index, const std::string& expected) const;
  void BinaryAt(std::int32_t index, const std::string& expected) const;
  void Destroy(std::int32_t expected = 0) const;

  [[nodiscard]] QvXmlReader* handle() const { return handle_; }
  [[nodiscard]] BidiContext& library() const { return library_; }
  [[nodiscard]] Trial& trial() const { return trial_; }

 private:
  Trial& trial_;
  BidiContext& library_;
  QvXmlReader* handle_;
};

// Parses a document; throws Broken when the library refuses it.
[[nodiscard]] Reader Parse(Trial& trial, BidiContext& library, const std::string& document);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_COMMLIB_READER_H_

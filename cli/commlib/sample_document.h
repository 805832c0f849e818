// The document with which clauses are tried. It has values of each type, a list and arrays.
#ifndef INFO_ANALYZE_CLI_COMMLIB_SAMPLE_DOCUMENT_H_
#define INFO_ANALYZE_CLI_COMMLIB_SAMPLE_DOCUMENT_H_

#include <string>

#include "cli/commlib/reader.h"
#include "cli/commlib/trial.h"
#include "info_analyze/bidi.h"

namespace ia::cli {

inline constexpr const char* kSampleText = " <A> & \"B\"\n\tGr\u00fc\u00dfe \u65e5\u672c ";
inline constexpr int kSampleItems = 3;

// The bytes "\0\1\xff\0", with no NUL after them.
[[nodiscard]] std::string SampleBytes();

// The document as the library writes it; throws Broken when its writer fails, NotTested when it has
// none.
[[nodiscard]] std::string WriteSample(Trial& trial, BidiContext& library);

// The document in a format that the library reads: that of document-format.md, or else its own, for
// which it needs a writer. Throws NotTested when there is neither.
[[nodiscard]] std::string FindSample(Trial& trial, BidiContext& library);
[[nodiscard]] std::string FindSample(Trial& trial);

// Starts reading it.
[[nodiscard]] Reader OpenSample(Trial& trial);

// Reads all of it.
void ExpectSample(const Reader& reader);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_COMMLIB_SAMPLE_DOCUMENT_H_

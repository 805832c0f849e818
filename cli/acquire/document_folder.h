#ifndef INFO_ANALYZE_CLI_ACQUIRE_DOCUMENT_FOLDER_H_
#define INFO_ANALYZE_CLI_ACQUIRE_DOCUMENT_FOLDER_H_

#include <map>
#include <string>

namespace ia::cli {

// Makes a document directory of these files, by name, or replaces one in a single step, so that no
// reader finds documents of different times. Throws a Failure, and changes nothing, when that is
// not possible or when the folder has other files.
void PublishDocuments(const std::map<std::string, std::string>& files, const std::string& folder);

// Writes the files into an existing folder; throws a std::system_error.
void WriteDocumentFiles(const std::map<std::string, std::string>& files, const std::string& folder);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_DOCUMENT_FOLDER_H_

// Sources with which a communication library begins.
#ifndef INFO_ANALYZE_CLI_COMMLIB_SKELETON_H_
#define INFO_ANALYZE_CLI_COMMLIB_SKELETON_H_

#include <span>
#include <string>
#include <vector>

namespace ia::cli {

struct SkeletonFile {
  const char* path;  // "LANGUAGE/..."
  const char* text;
};

// The files of skeleton/, in the order of their paths.
[[nodiscard]] std::span<const SkeletonFile> SkeletonFiles();

// The languages that there are skeletons in.
[[nodiscard]] std::vector<std::string> SkeletonLanguages();

// Makes the folder, which must not exist, with the skeleton in this language. Throws a Failure, and
// leaves nothing, when that is not possible.
void WriteSkeleton(const std::string& language, const std::string& folder);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_COMMLIB_SKELETON_H_

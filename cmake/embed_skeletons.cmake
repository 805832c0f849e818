# Writes a C++ source with the text of each file in FOLDER, for ia::cli::SkeletonFiles().
#
# usage: cmake -D FOLDER=... -D OUTPUT=... -P embed_skeletons.cmake

file(GLOB_RECURSE paths RELATIVE ${FOLDER} ${FOLDER}/*)
list(SORT paths)
set(rows "")
foreach(path IN LISTS paths)
  file(READ "${FOLDER}/${path}" text)
  string(APPEND rows "    {\"${path}\", R\"text(${text})text\"},\n")
endforeach()
file(WRITE ${OUTPUT} "#include <array>
#include <span>

#include \"cli/commlib/skeleton.h\"

namespace ia::cli {
namespace {

constexpr auto kFiles = std::to_array<SkeletonFile>({
${rows}});

}  // namespace

std::span<const SkeletonFile> SkeletonFiles() { return kFiles; }

}  // namespace ia::cli
")

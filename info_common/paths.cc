#include "info_common/paths.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <numeric>
#include <string_view>

namespace ia {

CString MakePath(std::initializer_list<std::string_view> pieces, std::size_t size) noexcept {
  const std::size_t length =
      std::accumulate(pieces.begin(), pieces.end(), std::size_t{0},
                      [](std::size_t sum, std::string_view piece) { return sum + piece.size(); });
  if (length >= size) return nullptr;
  CString path = NewText(length);
  if (!path) return nullptr;
  char* end = path.get();
  for (const std::string_view piece : pieces) end = std::copy(piece.begin(), piece.end(), end);
  *end = '\0';
  return path;
}

}  // namespace ia

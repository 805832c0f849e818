#include "info_common/key_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "info_common/ascii.h"

namespace ia {
namespace {

constexpr std::uint32_t kFirstCapacity = 256;
constexpr std::uint32_t kSlotsPerLeaf = 2;
constexpr std::uint32_t kByteBits = 8;
constexpr std::size_t kMaxBits = std::size_t{kByteBits} * IA_PPD_TEXT_SIZE;  // with the NUL's

// FNV-1a.
constexpr std::uint32_t kHashBasis = 2166136261;
constexpr std::uint32_t kHashPrime = 16777619;
constexpr std::uintptr_t kPageSize = 4096;

// A key is followed by NULs, and contains none.
std::size_t BitAt(std::string_view key, std::uint32_t bit) noexcept {
  const std::size_t index = bit / kByteBits;
  const auto byte = index < key.size() ? static_cast<unsigned char>(key[index]) : 0U;
  return byte >> (kByteBits - 1 - bit % kByteBits) & 1U;
}

// Nothing when the other key begins with this one.
std::optional<std::uint32_t> FirstDifferentBit(std::string_view key, const char* other) noexcept {
  const auto [at, other_at] = std::mismatch(key.begin(), key.end(), other);
  if (at == key.end()) return std::nullopt;
  const auto index = static_cast<std::uint32_t>(at - key.begin());
  const auto difference = static_cast<unsigned char>(*at ^ *other_at);
  return index * kByteBits + static_cast<std::uint32_t>(std::countl_zero(difference));
}

}  // namespace

KeyIndex::Result KeyIndex::Add(OptTable& node) noexcept {
  const std::string_view key = node.key;
  if (key.size() >= IA_PPD_TEXT_SIZE || (size_ == capacity_ && !Grow())) return Result::kFailed;
  if (size_ == 0) {
    root_ = -1;
  } else if (!AddBranch(key)) {
    return Result::kIsPrefix;
  }
  ++size_;
  const std::uint32_t hash = HashOf(key);
  std::uint32_t& slot = slots_[SlotOf(key, hash)];
  leaves_[size_] = {.node = &node, .hash = hash, .next_variant = std::exchange(slot, size_)};
  return Result::kAdded;
}

// Follows the bits of the key to a leaf. If any key begins with this one, that of the leaf does:
// the walk passes each bit in which keys differ, so all of its bits are those of the leaf.
bool KeyIndex::AddBranch(std::string_view key) noexcept {
  std::array<std::int32_t*, kMaxBits + 1> path;  // links, from the root to the leaf
  std::size_t depth = 0;
  path[0] = &root_;
  while (*path[depth] > 0) {
    Branch& branch = BranchAt(*path[depth]);
    path[++depth] = &branch.children[BitAt(key, branch.bit)];
  }
  const char* const nearest = leaves_[static_cast<std::size_t>(-*path[depth])].node->key;
  const auto bit = FirstDifferentBit(key, nearest);
  if (!bit) return false;
  // Bits ascend on each path: the new branch belongs below the last one with an earlier bit.
  while (depth > 0 && BranchAt(*path[depth - 1]).bit > *bit) --depth;
  const auto number = static_cast<std::int32_t>(size_ + 1);
  const std::size_t side = BitAt(key, *bit);
  Branch& added = BranchAt(number);
  added.bit = *bit;
  added.children[side] = -number;
  added.children[1 - side] = std::exchange(*path[depth], number);
  return true;
}

// Begins with the address, which differs from process to process, so that nobody can write a PPD
// whose keys all have one hash.
std::uint32_t KeyIndex::HashOf(std::string_view key) const noexcept {
  auto hash = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(this) / kPageSize);
  hash ^= kHashBasis;
  for (const char byte : key) {
    hash = (hash ^ static_cast<unsigned char>(ToLower(byte))) * kHashPrime;
  }
  return hash;
}

std::size_t KeyIndex::SlotOf(std::string_view key, std::uint32_t hash) const noexcept {
  const std::size_t mask = std::size_t{kSlotsPerLeaf} * capacity_ - 1;
  std::size_t at = hash & mask;
  for (; slots_[at] != kNone; at = (at + 1) & mask) {
    const Leaf& leaf = leaves_[slots_[at]];
    if (leaf.hash == hash && EqualsIgnoringCase(leaf.node->key, key)) break;
  }
  return at;
}

// Leaf and branch 0 are not used.
bool KeyIndex::Grow() noexcept {
  const std::size_t old_slots = std::size_t{kSlotsPerLeaf} * capacity_;
  capacity_ = std::max(kFirstCapacity, 2 * capacity_);
  if (!Resize(leaves_, capacity_ + 1) || !Resize(branches_, capacity_ + 1)) return false;
  const auto old =
      std::exchange(slots_, NewZeroedArray<std::uint32_t>(std::size_t{kSlotsPerLeaf} * capacity_));
  if (!slots_) return false;
  for (std::size_t i = 0; i < old_slots; ++i) {
    if (old[i] == kNone) continue;
    const Leaf& leaf = leaves_[old[i]];
    slots_[SlotOf(leaf.node->key, leaf.hash)] = old[i];
  }
  return true;
}

}  // namespace ia

// Private texts and what is written in their place.
#ifndef INFO_ANALYZE_CLI_SNAPSHOT_SECRETS_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_SECRETS_H_

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ia::cli {

enum class Category {
  kQueue,
  kDescription,
  kLocation,
  kContact,
  kSerial,
  kHost,
  kIpv4,
  kIpv6,
  kMac,
  kNickName,
  kDeviceName,
  kFaxLine,
  kBinary,
};
inline constexpr std::size_t kCategoryCount = 13;

[[nodiscard]] const char* NameOf(Category category);

class Secrets {
 public:
  // No replacement occurs in the texts, so that it cannot be taken for one of them.
  explicit Secrets(std::string_view texts);

  void Add(Category category, std::string_view secret);
  // An address or the name of a host, and the parts of a name.
  void AddHost(std::string_view host);
  // All addresses in a text.
  void AddAddresses(std::string_view text);

  // The text with a replacement for each secret in it, whatever its case; counts them.
  [[nodiscard]] std::string Replaced(std::string_view text);
  void Count(Category category) { ++places_[static_cast<std::size_t>(category)]; }

  // How many places of a category had a secret.
  [[nodiscard]] std::size_t places(Category category) const {
    return places_[static_cast<std::size_t>(category)];
  }
  // The categories whose secrets a text still has.
  [[nodiscard]] std::vector<Category> RemainingIn(std::string_view text) const;

 private:
  struct Secret {
    Category category;
    std::string text;  // in lower case
    std::string replacement;
  };

  [[nodiscard]] std::string NewReplacement(Category category);
  void Remember(Category category, std::string_view secret, const std::string& replacement);
  void AddMac(std::string_view mac);
  [[nodiscard]] const Secret* FindAt(std::string_view lower_case, std::size_t at) const;

  std::string texts_;
  std::vector<Secret> secrets_;                      // the longest first
  std::map<std::string, std::string> replacements_;  // by the plain form of a secret
  std::array<std::size_t, kCategoryCount> numbers_{};
  std::array<std::size_t, kCategoryCount> places_{};
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_SECRETS_H_

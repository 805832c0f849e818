#ifndef TESTS_SUPPORT_TURKISH_LOCALE_H_
#define TESTS_SUPPORT_TURKISH_LOCALE_H_

#include <ctype.h>
#include <locale.h>
#include <stdlib.h>

#include <string>

#include "tests/support/temp_folder.h"

namespace ia_test {

// Turkish folds "i" with a dotted capital and "I" with a dotless small letter, its numbers have a
// decimal comma, and the Latin alphabets fold bytes above 127. PPDs and devices know none of that.
// The locale is made for the test, and in force for as long as this object.
class TurkishLocale {
 public:
  TurkishLocale() {
    const std::string command =
        "localedef -i tr_TR -f ISO-8859-9 " + folder_ / "tr_TR.iso88599" + " > /dev/null 2>&1";
    setenv("LOCPATH", folder_.path().c_str(), 1);
    is_in_force_ = system(command.c_str()) == 0 && setlocale(LC_ALL, "tr_TR.ISO-8859-9") != nullptr;
    is_in_force_ = is_in_force_ && toupper('i') != 'I' && tolower(0xC4) == 0xE4;
  }
  ~TurkishLocale() {
    setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
  }
  TurkishLocale(const TurkishLocale&) = delete;
  TurkishLocale& operator=(const TurkishLocale&) = delete;

  // False where locales cannot be made.
  [[nodiscard]] bool IsInForce() const { return is_in_force_; }

 private:
  const TempFolder folder_;
  bool is_in_force_ = false;
};

inline constexpr char kNoTurkishLocale[] = "the Turkish locale cannot be made here";

}  // namespace ia_test

#endif  // TESTS_SUPPORT_TURKISH_LOCALE_H_

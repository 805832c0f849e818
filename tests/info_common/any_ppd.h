#ifndef TESTS_INFO_COMMON_ANY_PPD_H_
#define TESTS_INFO_COMMON_ANY_PPD_H_

#include <rapidcheck.h>

#include <string>

namespace ia_test {

// Whole PPDs out of the words that the reader knows, spoilt in every way.
rc::Gen<std::string> AnyPpd();

}  // namespace ia_test

#endif  // TESTS_INFO_COMMON_ANY_PPD_H_

// Where the build puts what tests load. In a source of their own, so that the tests themselves are
// the same in every build.
#ifndef TESTS_SUPPORT_BUILD_FOLDERS_H_
#define TESTS_SUPPORT_BUILD_FOLDERS_H_

namespace ia_test {

extern const char kReferenceDriver[];  // the driver folder of the reference communication library
extern const char kSupportDrivers[];   // the folder of driver folders with tests' own libraries

}  // namespace ia_test

#endif  // TESTS_SUPPORT_BUILD_FOLDERS_H_

// The places at which a library calls functions of others that can fail, found by disassembling its
// file.
#ifndef TESTS_INTEGRATION_CALL_SITES_H_
#define TESTS_INTEGRATION_CALL_SITES_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tests/integration/call_faults.h"

namespace ia_test {

struct CallSite {
  Callee callee;
  std::uintptr_t return_address;  // relative to the load address; 0 for a jump
  std::string text;               // the instruction and its function
  std::string source;  // the function and the line of the source; copies of one call share them
};

// In the order of the file; none when the file cannot be disassembled.
std::vector<CallSite> FindCallSites(const std::string& library_path);

// Functions that the file imports and that are neither made to fail nor known not to.
std::vector<std::string> FindUnknownImports(const std::string& library_path);

}  // namespace ia_test

#endif  // TESTS_INTEGRATION_CALL_SITES_H_

// Which handlers of the tables of trays and finishers are called, and with what. The linker leads
// their calls here (--wrap), so that handlers that decide alike are told apart too.
#ifndef TESTS_ANALYZE_MODEL_RECORDED_HANDLERS_H_
#define TESTS_ANALYZE_MODEL_RECORDED_HANDLERS_H_

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/analyze/intercepted_calls.h"
#include "tests/support/recording.h"

namespace ia_test {

// While one lives, the handlers do not run.
struct HandlerCalls : Interception<HandlerCalls> {
  std::vector<Call> calls;
  std::map<std::string, std::int32_t> results;  // of handlers that do not answer 0
};

}  // namespace ia_test

#endif  // TESTS_ANALYZE_MODEL_RECORDED_HANDLERS_H_

#include "tests/analyze/model/recorded_handlers.h"

#include "info_analyze/model_options.h"

using ia_test::CallTo;
using ia_test::HandlerCalls;

namespace {

template <class... Ts>
std::int32_t Record(const char* name, Ts... arguments) {
  HandlerCalls& recording = *HandlerCalls::active;
  recording.calls.push_back(CallTo(name, arguments...));
  const auto told = recording.results.find(name);
  return told != recording.results.end() ? told->second : 0;
}

}  // namespace

// Of a wrapped function calls go to __wrap_NAME, and __real_NAME is the function itself.
#define IA_INPUT(name)                                                                             \
  std::int32_t Real_##name(AnalyzeContext*, const TrayEntry*, std::int32_t, std::int32_t,          \
                           OptionSetter*, std::int32_t*) __asm__("__real_" #name);                 \
  std::int32_t Wrapped_##name(AnalyzeContext*, const TrayEntry*, std::int32_t, std::int32_t,       \
                              OptionSetter*, std::int32_t*) __asm__("__wrap_" #name);              \
  std::int32_t Wrapped_##name(AnalyzeContext* context, const TrayEntry* trays, std::int32_t count, \
                              std::int32_t extra_trays, OptionSetter* rows,                        \
                              std::int32_t* row_count) {                                           \
    return HandlerCalls::active != nullptr                                                         \
               ? Record(#name, context, trays, count, extra_trays, rows, row_count)                \
               : Real_##name(context, trays, count, extra_trays, rows, row_count);                 \
  }

#define IA_FINISHER(name)                                                              \
  std::int32_t Real_##name(AnalyzeContext*, const FinisherEntry*, std::int32_t,        \
                           const std::int32_t*, std::int32_t,                          \
                           OptionSetter*) __asm__("__real_" #name);                    \
  std::int32_t Wrapped_##name(AnalyzeContext*, const FinisherEntry*, std::int32_t,     \
                              const std::int32_t*, std::int32_t,                       \
                              OptionSetter*) __asm__("__wrap_" #name);                 \
  std::int32_t Wrapped_##name(AnalyzeContext* context, const FinisherEntry* finishers, \
                              std::int32_t count, const std::int32_t* aliases,         \
                              std::int32_t alias_count, OptionSetter* row) {           \
    return HandlerCalls::active != nullptr                                             \
               ? Record(#name, context, finishers, count, aliases, alias_count, row)   \
               : Real_##name(context, finishers, count, aliases, alias_count, row);    \
  }

extern "C" {
#include "tests/analyze/model/handlers.inc"
}

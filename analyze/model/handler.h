// The record of a model handler, to which the model tables point.
#ifndef ANALYZE_MODEL_HANDLER_H_
#define ANALYZE_MODEL_HANDLER_H_

#include "analyze/exported.h"
#include "analyze/inputs.h"

namespace ia {

template <class Function, class Rule>
struct Handler {
  const char* name;   // exported name
  Function function;  // exported function, which follows the rule
  InputList inputs;   // what the rule reads
  Rule rule;
};

}  // namespace ia

#endif  // ANALYZE_MODEL_HANDLER_H_

#ifndef TESTS_QUEUE_ANY_CONF_H_
#define TESTS_QUEUE_ANY_CONF_H_

#include <rapidcheck.h>

#include <string>

namespace ia_test {

// Mostly entries as the daemon writes them, and every way of coming close to one.
rc::Gen<std::string> AnyConf();

// Queue names and URIs to look up in such texts: often ones that they contain.
rc::Gen<std::string> AnyQueueName();
rc::Gen<std::string> AnyUri();

}  // namespace ia_test

#endif  // TESTS_QUEUE_ANY_CONF_H_

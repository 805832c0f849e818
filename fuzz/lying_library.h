// A communication library that gives the answers of a script, true or not.
//
// The script's first line answers, a character for each call and from the front again when it ends,
// the calls that return nothing or a reader: "0" is failure, anything else success. Each further
// line answers the next call that returns a value:
//
//   (empty)  the value is missing, as all are after the last line
//   ?        reported as found, but no value is stored
//   ~        found, as a null pointer or 0
//   !VALUE   stored, but reported as missing
//   *TEXT    found: TEXT again and again, to 64 KiB or more; but TEXT after four of them
//   VALUE    found: a number or a text
#ifndef FUZZ_LYING_LIBRARY_H_
#define FUZZ_LYING_LIBRARY_H_

#include <cstddef>
#include <cstdint>

// The library's own entry point: later answers come from the script, which is copied. No list has
// more than `max_items` dictionaries, because a caller reads all of them and takes long.
extern "C" __attribute__((visibility("default"))) void lying_attach(const char* script,
                                                                    std::size_t length,
                                                                    std::int32_t max_items);

#endif  // FUZZ_LYING_LIBRARY_H_

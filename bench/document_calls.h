// The calls that read documents: how another communication library's are written down, and how they
// are made again without the library that made them.
#ifndef BENCH_DOCUMENT_CALLS_H_
#define BENCH_DOCUMENT_CALLS_H_

#include <cstdint>
#include <string>
#include <vector>

namespace ia_bench {

enum class EntryPoint {
  kNew,
  kDictCount,
  kOpenDict,
  kLong,
  kString,
  kArrayCount,
  kOpenArray,
  kLongFromArray,
  kStringFromArray,
  kCloseArray,
  kCloseDict,
  kDestroy,
};

struct DocumentCall {
  EntryPoint entry_point;
  std::size_t reader;  // number of the reader, in the order in which they were made
  std::int32_t index = 0;
  std::string text = {};  // key, or content of a new reader's document
};

// The environment variable that tells the recording library whose calls to write down, and the name
// of the function of that library that hands out what it wrote.
inline constexpr char kRecordedLibrary[] = "IA_RECORDED_LIBRARY";
inline constexpr char kRecordedCalls[] = "RecordedCalls";
using RecordedCallsFunction = std::vector<DocumentCall>& (*)();

}  // namespace ia_bench

#endif  // BENCH_DOCUMENT_CALLS_H_

#ifndef BENCH_DOCUMENT_REPLAY_H_
#define BENCH_DOCUMENT_REPLAY_H_

#include <array>
#include <string>

#include "bench/document_calls.h"
#include "bench/sample_printer.h"
#include "info_analyze/communication_library.h"

namespace ia_bench {

// Makes the calls of a communication library that were recorded before. The first ones load all
// documents of the sample printer.
class DocumentReplay {
 public:
  // Aborts when the library cannot be loaded.
  explicit DocumentReplay(const std::string& library_path);
  ~DocumentReplay();
  DocumentReplay(const DocumentReplay&) = delete;
  DocumentReplay& operator=(const DocumentReplay&) = delete;

  void Make(const DocumentCall& call);

 private:
  void* handle_;
  decltype(&qvxmlwrapGet_New) new_;
  decltype(&qvxmlwrapGet_DictCount) dict_count_;
  decltype(&qvxmlwrapGet_OpenDict) open_dict_;
  decltype(&qvxmlwrapGet_Long) long_;
  decltype(&qvxmlwrapGet_String) string_;
  decltype(&qvxmlwrapGet_ArrayCount) array_count_;
  decltype(&qvxmlwrapGet_OpenArray) open_array_;
  decltype(&qvxmlwrapGet_LongFromArray) long_from_array_;
  decltype(&qvxmlwrapGet_StringFromArray) string_from_array_;
  decltype(&qvxmlwrapGet_CloseArray) close_array_;
  decltype(&qvxmlwrapGet_CloseDict) close_dict_;
  decltype(&qvxmlwrapGet_Destroy) destroy_;
  // Loading the documents again makes as many readers in the places of the old ones.
  std::array<QvXmlReader*, kDocuments.size()> readers_{};
};

}  // namespace ia_bench

#endif  // BENCH_DOCUMENT_REPLAY_H_

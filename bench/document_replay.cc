#include "bench/document_replay.h"

#include <dlfcn.h>

#include <cstdlib>

namespace ia_bench {
namespace {

constexpr const char* kEncoding = "UTF-8";

template <class Function>
void Bind(void* handle, const char* name, Function*& function) {
  function = reinterpret_cast<Function*>(dlsym(handle, name));
  if (function == nullptr) std::abort();
}

}  // namespace

DocumentReplay::DocumentReplay(const std::string& library_path)
    : handle_(dlopen(library_path.c_str(), RTLD_NOW)) {
  if (handle_ == nullptr) std::abort();
  Bind(handle_, "qvxmlwrapGet_New", new_);
  Bind(handle_, "qvxmlwrapGet_DictCount", dict_count_);
  Bind(handle_, "qvxmlwrapGet_OpenDict", open_dict_);
  Bind(handle_, "qvxmlwrapGet_Long", long_);
  Bind(handle_, "qvxmlwrapGet_String", string_);
  Bind(handle_, "qvxmlwrapGet_ArrayCount", array_count_);
  Bind(handle_, "qvxmlwrapGet_OpenArray", open_array_);
  Bind(handle_, "qvxmlwrapGet_LongFromArray", long_from_array_);
  Bind(handle_, "qvxmlwrapGet_StringFromArray", string_from_array_);
  Bind(handle_, "qvxmlwrapGet_CloseArray", close_array_);
  Bind(handle_, "qvxmlwrapGet_CloseDict", close_dict_);
  Bind(handle_, "qvxmlwrapGet_Destroy", destroy_);
}

DocumentReplay::~DocumentReplay() {
  for (QvXmlReader* reader : readers_) destroy_(reader);
  dlclose(handle_);
}

void DocumentReplay::Make(const DocumentCall& call) {
  QvXmlReader*& reader = readers_[call.reader % readers_.size()];
  const char* const key = call.text.c_str();
  std::int32_t number = 0;
  char* text = nullptr;
  switch (call.entry_point) {
    case EntryPoint::kNew:
      reader = new_(call.text.data(), static_cast<std::int32_t>(call.text.size()));
      break;
    case EntryPoint::kDictCount:
      dict_count_(reader, key, &number);
      break;
    case EntryPoint::kOpenDict:
      open_dict_(reader, key, call.index);
      break;
    case EntryPoint::kLong:
      long_(reader, key, &number, 0);
      break;
    case EntryPoint::kString:
      string_(reader, key, &text, nullptr, kEncoding, 0);
      break;
    case EntryPoint::kArrayCount:
      array_count_(reader, key, &number);
      break;
    case EntryPoint::kOpenArray:
      open_array_(reader, key);
      break;
    case EntryPoint::kLongFromArray:
      long_from_array_(reader, call.index, &number, 0);
      break;
    case EntryPoint::kStringFromArray:
      string_from_array_(reader, call.index, &text, nullptr, kEncoding, 0);
      break;
    case EntryPoint::kCloseArray:
      close_array_(reader);
      break;
    case EntryPoint::kCloseDict:
      close_dict_(reader);
      break;
    case EntryPoint::kDestroy:
      destroy_(reader);
      reader = nullptr;
      break;
  }
  std::free(text);
}

}  // namespace ia_bench

#ifndef TESTS_SUPPORT_RECORDING_LIBRARY_H_
#define TESTS_SUPPORT_RECORDING_LIBRARY_H_

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "info_analyze/bidi.h"
#include "tests/support/build_folders.h"
#include "tests/support/recording.h"

namespace ia_test {

struct BidiDeleter {
  void operator()(BidiContext* context) const { Bidi_Destroy(context); }
};
using BidiPtr = std::unique_ptr<BidiContext, BidiDeleter>;

inline std::string RecordingFolder() {
  return std::string(ia_test::kSupportDrivers) + "/recording";
}
inline std::string RecordingPath() { return RecordingFolder() + "/Bidi/libmqpd_util.so"; }

inline bool IsLoaded(const std::string& path) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

// Has the recording library, which must be loaded, record into `recording`.
inline void AttachRecording(Recording* recording) {
  void* handle = dlopen(RecordingPath().c_str(), RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(handle, nullptr);
  reinterpret_cast<decltype(&recording_attach)>(dlsym(handle, "recording_attach"))(recording);
  dlclose(handle);
}

// The recording library, kept loaded and recording from here to the end of the scope.
class RecordingLibrary {
 public:
  RecordingLibrary() : handle_(dlopen(RecordingPath().c_str(), RTLD_NOW)) {
    EXPECT_NE(handle_, nullptr) << RecordingPath();
    AttachRecording(&recording);
  }
  ~RecordingLibrary() {
    AttachRecording(nullptr);
    dlclose(handle_);
  }
  RecordingLibrary(const RecordingLibrary&) = delete;
  RecordingLibrary& operator=(const RecordingLibrary&) = delete;

  Recording recording;

 private:
  void* handle_;
};

}  // namespace ia_test

#endif  // TESTS_SUPPORT_RECORDING_LIBRARY_H_

#include "cli/commlib/trial.h"

#include <dlfcn.h>
#include <string.h>

#include <cstdlib>
#include <mutex>
#include <string>

#include "cli/printer/handles.h"
#include "info_analyze/bidi.h"
#include "info_analyze/device_uri.h"

namespace ia::cli {

void Trial::Begin(const std::string& step) {
  const std::lock_guard lock(mutex_);
  step_.Set(step);
}

void Trial::Expect(const std::string& got, const std::string& expected) const {
  if (got != expected) {
    throw Broken(std::string(step_.Get()) + " gives " + got + " instead of " + expected);
  }
}

BidiContext& Trial::Load() {
  const std::string step = step_.Get();
  Begin("loading it");
  BidiPtr context(static_cast<BidiContext*>(std::calloc(1, sizeof(BidiContext))));
  if (!context) throw NotTested("out of memory");
  context->driver_folder = strdup(tried_.folder.c_str());
  context->port = FolderPathToPortNumber(tried_.folder.c_str());
  context->library = z_LoadBidiLibrary(tried_.path.c_str());
  if (context->library == nullptr) {
    const char* const reason = dlerror();
    throw Broken(reason != nullptr ? reason : "an entry point is missing");
  }
  Begin(step);
  return *context.release();
}

void Trial::Unload(BidiContext& library) {
  Begin("unloading it");
  Bidi_Destroy(&library);
}

BidiContext& Trial::library() {
  if (library_ == nullptr) library_ = &Load();
  return *library_;
}

}  // namespace ia::cli

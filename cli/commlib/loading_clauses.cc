#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "cli/commlib/clauses.h"
#include "cli/commlib/reader.h"
#include "cli/commlib/sample_document.h"
#include "cli/commlib/trial.h"
#include "info_analyze/bidi.h"

namespace ia::cli {
namespace {

constexpr int kLoads = 10;

void TryLoading(Trial& trial) {
  trial.Begin("loading it");
  if (dlopen(trial.tried().path.c_str(), RTLD_NOW) != nullptr) return;
  const char* const reason = dlerror();
  throw Broken(reason != nullptr ? reason : "no reason is given");
}

void TryEntryPoints(Trial& trial) {
  trial.Begin("loading it");
  void* const library = dlopen(trial.tried().path.c_str(), RTLD_NOW);
  std::string missing;
  for (std::int32_t i = 0; const char* const name = Bidi_GetEntryPointName(i); ++i) {
    if (dlsym(library, name) != nullptr) continue;
    missing += (missing.empty() ? "" : ", ") + std::string(name);
  }
  if (!missing.empty()) throw Broken("the library lacks " + missing);
}

void TryUnloading(Trial& trial) { trial.Unload(trial.Load()); }

void LoadAndRead(Trial& trial) {
  BidiContext& library = trial.Load();
  const Reader reader = Parse(trial, library, FindSample(trial, library));
  ExpectSample(reader);
  reader.Destroy();
  trial.Unload(library);
}

void TryFreshLoads(Trial& trial) {
  for (int i = 0; i < kLoads; ++i) LoadAndRead(trial);
}

void TryLoadingAgain(Trial& trial) {
  (void)trial.library();
  for (int i = 0; i < kLoads; ++i) LoadAndRead(trial);
}

void TryCleanup(Trial& trial) {
  const std::string sample = FindSample(trial);
  const Reader reader = Parse(trial, trial.library(), sample);
  trial.Unload(trial.Load());
  ExpectSample(reader);
  reader.Destroy();
  ExpectSample(Parse(trial, trial.library(), sample));
}

void TryNoSocket(Trial& trial) {
  trial.Begin("qvsktwrapControl() of no connection");
  trial.Expect(Bidi_qvsktwrapControl(&trial.library(), 0, 0, 0, 0, 0) != 0 ? "a failure" : "0",
               "a failure");
  trial.Begin("qvsktwrapDestroy() of no connection");
  (void)Bidi_qvsktwrapDestroy(&trial.library());
}

constexpr auto kClauses = std::to_array<Clause>({
    {"load.library", "The library is loaded, with all that it needs", TryLoading},
    {"load.entry-points", "The library has all entry points", TryEntryPoints},
    {"load.unload", "The library is unloaded after qvxmlwrapCleanup()", TryUnloading},
    {"load.fresh", "The library can be loaded, used and unloaded several times", TryFreshLoads},
    {"load.again", "A library that is loaded already can be loaded and used again",
     TryLoadingAgain},
    {"load.cleanup", "qvxmlwrapCleanup() leaves the readers of other contexts usable", TryCleanup},
    {"socket.none", "Without a connection, qvsktwrapControl() fails and qvsktwrapDestroy() returns",
     TryNoSocket},
});

}  // namespace

std::span<const Clause> LoadingClauses() { return kClauses; }

}  // namespace ia::cli

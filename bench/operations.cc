// Runs one operation of the library, so that its instructions can be counted: without arguments,
// names the operations. The first run, which binds and fills caches, is not counted.
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/sample_analyzer.h"
#include "bench/sample_conf.h"
#include "bench/sample_flags.h"
#include "bench/sample_job.h"
#include "bench/sample_ppd.h"

namespace {

using ia_bench::PpdStyle;
using ia_bench::ResultList;
using ia_bench::SamplePpd;
using Run = std::function<void()>;

constexpr std::int64_t kEntries = 300;

// The function whose instructions are counted; see check.py.
extern "C" [[gnu::noinline]] void MeasuredOperation(const Run& run) { run(); }

Run OptionTable(std::int64_t entries, PpdStyle style) {
  return [ppd = SamplePpd(entries, style)] {
    info_common_optlist_destroy(info_common_optlist_create(ppd.queue().c_str()));
  };
}

template <class Action>
Run Analyzer(const SamplePpd& ppd, Action action) {
  auto analyzer = std::make_shared<ia_bench::SampleAnalyzer>(ia_bench::kFixedAnswers, ppd);
  return [analyzer, action] { action(*analyzer); };
}

Run Create(std::int64_t entries, PpdStyle style) {
  return Analyzer({entries, style}, [](auto& analyzer) { return analyzer.Create(); });
}

Run Query(std::uint8_t reload) {
  return Analyzer({kEntries, PpdStyle::kUniform},
                  [=](auto& analyzer) { analyzer.Query(ResultList(), reload); });
}

Run FunctionVersion(std::int64_t entries, PpdStyle style) {
  return Analyzer({entries, style}, [](auto& analyzer) { analyzer.FunctionVersion(ResultList()); });
}

Run FillFlagStore() {
  return [text = ia_bench::FlagText()] { ia_bench::FillFlagStore(text); };
}

Run FindFlag(int number) {
  auto store = std::make_shared<ia_bench::FlagStore>(ia_bench::FillFlagStore(ia_bench::FlagText()));
  return [store, name = ia_bench::FlagName(number)] { zflaginfo_find(store->get(), name.c_str()); };
}

template <auto kLookup>
Run Lookup(std::int64_t queues) {
  return [conf = ia_bench::SampleConf(queues)] { kLookup(conf); };
}

template <auto kQuestion>
Run Calibration(const char* model, std::int64_t options) {
  auto job = std::make_shared<ia_bench::SampleJob>(model, options);
  return [job] { ((*job).*kQuestion)(); };
}

struct Operation {
  const char* name;
  Run (*prepare)();
};

constexpr Operation kOperations[] = {
    {"option_table/300", [] { return OptionTable(300, PpdStyle::kUniform); }},
    {"option_table/3000", [] { return OptionTable(3000, PpdStyle::kUniform); }},
    {"option_table/30000", [] { return OptionTable(30000, PpdStyle::kUniform); }},
    {"option_table/driver/300", [] { return OptionTable(300, PpdStyle::kDriver); }},
    {"option_table/driver/3000", [] { return OptionTable(3000, PpdStyle::kDriver); }},
    {"option_table/driver/30000", [] { return OptionTable(30000, PpdStyle::kDriver); }},
    {"create/300", [] { return Create(300, PpdStyle::kUniform); }},
    {"create/driver/300", [] { return Create(300, PpdStyle::kDriver); }},
    {"query/reload", [] { return Query(1); }},
    {"query/plain", [] { return Query(0); }},
    {"function_version/300", [] { return FunctionVersion(300, PpdStyle::kUniform); }},
    {"function_version/3000", [] { return FunctionVersion(3000, PpdStyle::kUniform); }},
    {"function_version/driver/300", [] { return FunctionVersion(300, PpdStyle::kDriver); }},
    {"function_version/driver/3000", [] { return FunctionVersion(3000, PpdStyle::kDriver); }},
    {"flag_store_fill", [] { return FillFlagStore(); }},
    {"flag_store_find/last", [] { return FindFlag(ia_bench::kFlags - 1); }},
    {"flag_store_find/absent", [] { return FindFlag(ia_bench::kFlags); }},
    {"lookup_by_uri/10", [] { return Lookup<ia_bench::FindByUri>(10); }},
    {"lookup_by_uri/1000", [] { return Lookup<ia_bench::FindByUri>(1000); }},
    {"lookup_by_name/10", [] { return Lookup<ia_bench::FindByName>(10); }},
    {"lookup_by_name/1000", [] { return Lookup<ia_bench::FindByName>(1000); }},
    {"list_queues/1000", [] { return Lookup<ia_bench::ListQueues>(1000); }},
    {"calibration_defaults",
     [] { return Calibration<&ia_bench::SampleJob::CreateDefaults>("RB-J9", 4); }},
    {"calibration_settings/300",
     [] { return Calibration<&ia_bench::SampleJob::GetSettings>("RA-H2-MLT-JP", 300); }},
};

}  // namespace

int main(int argc, char** argv) {
  for (const Operation& operation : kOperations) {
    if (argc < 2) {
      std::puts(operation.name);
    } else if (argv[1] == std::string_view(operation.name)) {
      const Run run = operation.prepare();
      run();
      MeasuredOperation(run);
      return 0;
    }
  }
  return argc < 2 ? 0 : 2;
}

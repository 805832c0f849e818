#include <unistd.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>
#include <new>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/config/settings.h"
#include "cli/printer/cups_server.h"
#include "cli/printer/handles.h"
#include "cli/printer/session.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/terminal.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

struct QueuesOptions {
  PrinterLocation location;   // only its CUPS root and time limit
  std::string driver_folder;  // empty: all of them
  std::string uri;
  std::string format = "text";
};

[[nodiscard]] QueueListPtr Owned(QueueList* list) {
  if (list == nullptr) throw std::bad_alloc();
  return QueueListPtr(list);
}

// The queues in both formats.
struct Listing {
  std::string text;
  Json json = Json::array();
};

// A tab ends the name: Printable() leaves none in it.
void Add(Listing& listing, const Json& queue, const std::string& rest) {
  listing.text += Printable(queue["name"].get<std::string>()) + "\t" + Printable(rest) + "\n";
  listing.json.push_back(queue);
}

void Write(const Listing& listing, const std::string& format) {
  WriteAnswer(format == "json" ? DumpJson({{"queues", listing.json}}) : listing.text);
}

[[nodiscard]] std::string TimeText(std::int64_t seconds) {
  const std::time_t time = seconds;
  std::tm parts = {};
  std::array<char, 32> text = {};
  gmtime_r(&time, &parts);
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

[[nodiscard]] std::vector<ServerQueue> QueuesOf(const PrinterLocation& location) {
  const Progress progress("the list of queues");
  if (!location.cups_root.empty()) return ListQueuesOfRoot(location.cups_root);
  const int timeout = TimeoutOf(location, CurrentSettings(location.config_file));
  return ListServerQueues(std::chrono::seconds(timeout));
}

void ListCups(const QueuesOptions& options) {
  Listing listing;
  for (const auto& [name, time] : QueuesOf(options.location)) {
    Add(listing, {{"name", name}, {"modified", time ? Json(*time) : Json(nullptr)}},
        time ? TimeText(*time) : "-");
  }
  Write(listing, options.format);
}

// False when the family of this folder has no configuration.
bool AddQueuesOf(const std::string& driver_folder, Listing& listing) {
  const ConfPtr conf(FolderPathForConf_Initialize(driver_folder.c_str()));
  if (!conf) return false;
  int32_t count = 0;
  const QueueListPtr list = Owned(MqpdQueueList_Initialize(conf.get(), &count));
  for (int32_t i = 0; i < count; ++i) {
    Add(listing,
        {{"name", CupsQueueList_GetQueueName(list.get(), i)}, {"driver_folder", driver_folder}},
        driver_folder);
  }
  return true;
}

// The library reports only that it has no answer, so its file is checked again.
[[nodiscard]] std::string ExplainConf(char* cache_folder, const std::string& otherwise) {
  const std::string path = std::string(TextPtr(cache_folder).get()) + "/MQPD/mqpd.conf";
  return path + ": " + (access(path.c_str(), R_OK) != 0 ? std::strerror(errno) : otherwise);
}

[[noreturn]] void FailForFolder(const std::string& driver_folder) {
  char* cache = nullptr;
  const bool has_cache = FolderPathToDriverCache(driver_folder.c_str(), &cache) == 0;
  throw Failure(ExitStatus::kNotFound,
                {.object = "driver folder " + driver_folder,
                 .cause = has_cache ? ExplainConf(cache, "cannot be read")
                                    : "no driver family with a configuration is installed there"});
}

void ListDaemon(const QueuesOptions& options) {
  Listing listing;
  if (options.driver_folder.empty()) {
    for (std::int32_t i = 0; const char* const folder = DriverFamily_GetFolderPath(i); ++i) {
      AddQueuesOf(folder, listing);
    }
  } else if (!AddQueuesOf(options.driver_folder, listing)) {
    FailForFolder(options.driver_folder);
  }
  Write(listing, options.format);
}

[[noreturn]] void FailForUri(const std::string& uri, const std::string& reason) {
  char* cache = nullptr;
  const bool has_cache = MqpdUriToFullPathOfDriverCache(uri.c_str(), &cache) == 0;
  throw Failure(ExitStatus::kNotFound,
                {.object = "device URI " + uri,
                 .cause = has_cache ? ExplainConf(cache, reason)
                                    : "its PDL type has no driver family with a configuration"});
}

void Find(const QueuesOptions& options) {
  char* name = nullptr;
  const int32_t status = MqpdUriToQueueName(options.uri.c_str(), &name);
  if (status != 0) FailForUri(options.uri, status > 0 ? "cannot be read" : "no queue serves it");
  const TextPtr owned(name);
  WriteAnswer(options.format == "json" ? DumpJson({{"queue", name}}) : Printable(name) + "\n");
}

}  // namespace

void DefineQueues(CLI::App& verb) {
  const auto options = std::make_shared<QueuesOptions>();
  verb.require_subcommand(1);
  CLI::App* const cups = verb.add_subcommand("cups", "List the queues of the CUPS server");
  AddCupsRootOption(*cups, options->location);
  AddTimeoutOption(*cups, options->location);
  AddConfigOption(*cups, options->location);
  cups->callback([options] { ListCups(*options); });
  CLI::App* const daemon = verb.add_subcommand("daemon", "List the queues of the printer daemon");
  daemon
      ->add_option("--driver-folder", options->driver_folder,
                   "Only those of the driver that is installed in this folder")
      ->type_name("DIR");
  daemon->callback([options] { ListDaemon(*options); });
  CLI::App* const find =
      verb.add_subcommand("find", "Name the daemon's queue that serves a device");
  find->add_option("URI", options->uri, "Device URI")->required();
  find->callback([options] { Find(*options); });
  for (CLI::App* const subverb : {cups, daemon, find}) AddFormatOption(*subverb, options->format);
  cups->footer(
      "Examples:\n"
      "  info-analyze queues cups\n"
      "  info-analyze queues cups --cups-root /etc/cups");
  daemon->footer("Examples:\n  info-analyze queues daemon --driver-folder /usr/lib/driver");
  find->footer("Examples:\n  info-analyze queues find net:192.0.2.10/PDLType=kappa2");
  verb.footer("Examples:\n  info-analyze queues cups --format json");
}

}  // namespace ia::cli

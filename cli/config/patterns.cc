#include "cli/config/patterns.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "cli/config/settings.h"
#include "cli/printer/queue_facts.h"
#include "cli/printer/queue_ppd.h"
#include "cli/printer/session.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/printable.h"

namespace ia::cli {
namespace {

struct Pattern {
  std::string_view name;  // with its braces
  std::string (*get_word)(const QueueWords& words);
  const char* unknown;  // why its word is empty; the queue's name follows
};

constexpr auto kPatterns = std::to_array<Pattern>({
    {"{queue}", [](const QueueWords& words) { return words.queue; }, "no queue is named"},
    {"{host}", [](const QueueWords& words) { return words.host(); },
     "CUPS knows no device URI with a host for queue "},
    {"{model}", [](const QueueWords& words) { return words.model(); },
     "QVAnlz_DriverName is missing or empty in the PPD of queue "},
});

[[nodiscard]] std::string InQuotes(const std::string& text) { return "\"" + text + "\""; }

// Why the word cannot be part of a path; empty: it can.
[[nodiscard]] std::string FaultOf(const Pattern& pattern, const std::string& word,
                                  const std::string& queue) {
  if (word.empty()) return pattern.unknown + (queue.empty() ? "" : InQuotes(queue));
  if (word == "." || word == ".." || word.find('/') != std::string::npos) {
    return InQuotes(word) + " is not the name of one folder";
  }
  return "";
}

[[nodiscard]] std::string WordOf(const Pattern& pattern, const std::string& source,
                                 const QueueWords& words) {
  std::string word = pattern.get_word(words);
  const std::string fault = FaultOf(pattern, word, words.queue);
  if (fault.empty()) return word;
  const std::string name(pattern.name);
  throw Failure(ExitStatus::kQueue, {.action = "cannot replace",
                                     .object = name + " of " + source,
                                     .cause = fault,
                                     .hint = "write a path without " + name});
}

// The word, which the function is asked for once.
[[nodiscard]] std::string Remembered(std::optional<std::string>& word,
                                     const std::function<std::string()>& get) {
  if (!word) word = get();
  return *word;
}

// Devices whose URI has something else where others have the host.
[[nodiscard]] bool IsWithoutHost(std::string_view scheme) {
  constexpr auto kSchemes = std::to_array<std::string_view>(
      {"usb", "ncap_usb_cdc", "notuse", "file", "parallel", "serial"});
  return std::ranges::find(kSchemes, LowerCase(scheme)) != kSchemes.end();
}

[[nodiscard]] SettingValue OfOption(const SettingNames& names, const std::string& text) {
  return {.text = text, .source = names.option};
}

// "device-info in /etc/info-analyze.conf"; options and variables have the name of their setting.
[[nodiscard]] std::string PlaceOf(const SettingNames& names, const SettingValue& value) {
  const bool is_name = value.source == names.variable || value.source == names.option;
  return is_name ? value.source : names.key + std::string(" in ") + value.source;
}

void Require(bool is_given, const SettingNames& names, const Settings& settings) {
  if (is_given) return;
  throw CLI::RequiredError(
      std::string(names.option) + " is required: pass it, " + WaysToGive(names, settings),
      CLI::ExitCodes::RequiredError);
}

}  // namespace

std::string HostOfDeviceUri(const std::string& uri) {
  const std::size_t colon = uri.find(':');
  if (colon == std::string::npos || IsWithoutHost(uri.substr(0, colon))) return "";
  std::string_view host = std::string_view(uri).substr(colon + 1);
  if (host.starts_with("//")) host.remove_prefix(2);
  host = host.substr(0, host.find_first_of("/?#"));
  host.remove_prefix(std::min(host.rfind('@') + 1, host.size()));  // npos + 1 is 0
  if (host.starts_with('[')) return std::string(host.substr(1, host.find(']') - 1));
  const bool has_port = std::ranges::count(host, ':') == 1;  // an IPv6 address has more
  return std::string(has_port ? host.substr(0, host.find(':')) : host);
}

QueueWords WordsOf(const PrinterLocation& location) {
  const bool has_queue = !location.queue.empty();
  return {
      .queue = location.queue,
      .host = [=] { return has_queue ? HostOfDeviceUri(FactsOf(location).device_uri) : ""; },
      .model = [=] { return has_queue ? ModelCodeIn(location.queue, FetchPpd(location)) : ""; }};
}

std::string ReplacePatterns(const SettingValue& setting, const QueueWords& words) {
  const std::string_view text = setting.text;
  std::string replaced;
  for (std::size_t at = 0; at < text.size();) {
    const auto pattern = std::ranges::find_if(
        kPatterns, [&](const Pattern& each) { return text.substr(at).starts_with(each.name); });
    if (pattern == kPatterns.end()) {
      replaced += text[at++];
    } else {
      replaced += WordOf(*pattern, setting.source, words);
      at += pattern->name.size();
    }
  }
  return replaced;
}

void RequireLocation(const PrinterLocation& given, const Settings& settings) {
  Require(!given.needs_driver || !given.driver_folder.empty() || settings.driver_folder ||
              !settings.model_folders.empty(),
          kDriverFolder, settings);
  Require(!given.needs_documents || !given.snapshot.empty() || !given.device_info.empty() ||
              !given.device.empty() || settings.device_info,
          kDeviceInfo, settings);
}

SettingValue DeviceInfoOf(const PrinterLocation& given, const Settings& settings) {
  if (!given.device_info.empty() || !settings.device_info) {
    return OfOption(kDeviceInfo, given.device_info);
  }
  return {.text = settings.device_info->text,
          .source = PlaceOf(kDeviceInfo, *settings.device_info)};
}

SettingValue DriverFolderOf(const PrinterLocation& given, const Settings& settings,
                            const QueueWords& words) {
  if (!given.driver_folder.empty()) return OfOption(kDriverFolder, given.driver_folder);
  const std::string code = settings.model_folders.empty() ? "" : words.model();
  if (const ModelFolder* const folder = FindModelFolder(settings, code)) {
    return {.text = folder->folder, .source = folder->models + " in " + folder->source};
  }
  if (settings.driver_folder) {
    return {.text = settings.driver_folder->text,
            .source = PlaceOf(kDriverFolder, *settings.driver_folder)};
  }
  throw Failure(
      ExitStatus::kUsage,
      {.object = "driver folder of queue " + InQuotes(words.queue),
       .cause = code.empty() ? "its PPD has no model code, by which to choose one"
                             : "no key of [driver-folders] matches its model code " + code,
       .hint = "pass --driver-folder, " + WaysToGive(kDriverFolder, settings)});
}

PrinterLocation Complete(const PrinterLocation& given, const Settings& settings,
                         const QueueWords& words) {
  RequireLocation(given, settings);
  std::optional<std::string> host;
  std::optional<std::string> model;
  const QueueWords remembered = {.queue = words.queue,
                                 .host = [&] { return Remembered(host, words.host); },
                                 .model = [&] { return Remembered(model, words.model); }};
  PrinterLocation location = given;
  location.timeout = TimeoutOf(given, settings);
  if (given.needs_driver) {
    location.driver_folder =
        ReplacePatterns(DriverFolderOf(given, settings, remembered), remembered);
  }
  if (given.needs_documents && given.snapshot.empty() && given.device.empty()) {
    location.device_info = ReplacePatterns(DeviceInfoOf(given, settings), remembered);
  }
  return location;
}

}  // namespace ia::cli

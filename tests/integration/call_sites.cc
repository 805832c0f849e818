#include "tests/integration/call_sites.h"

#include <stdio.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ia_test {
namespace {

// Functions that never fail, or cannot report a failure.
constexpr auto kCannotFail = std::to_array<std::string_view>({
    // existing memory and texts
    "memchr",
    "memcmp",
    "memcpy",
    "__memcpy_chk",
    "memmem",
    "memmove",
    "__memmove_chk",
    "memrchr",
    "memset",
    "__memset_chk",
    "strchr",
    "strcmp",
    "strcspn",
    "strlen",
    "strncmp",
    "strnlen",
    "strspn",
    "strstr",
    "strtok_r",
    "strtol",  // what is no number, or too large, is an answer
    "__isoc23_strtol",
    "log10",
    // existing trees
    "tdestroy",
    "tfind",
    // answers about a stream; one without a file, as of memory, has no descriptor to fstat()
    "feof",
    "ferror",
    "fileno",
    // one number into a buffer that is large enough: nothing is allocated for it
    "__snprintf_chk",
    "snprintf",
    "free",
    // the compiler's and the C run time's
    "__errno_location",
    "__stack_chk_fail",
    "__stack_chk_guard",  // on ARM
    "__cxa_finalize",
    "__gmon_start__",
    "_ITM_deregisterTMCloneTable",
    "_ITM_registerTMCloneTable",
});

std::vector<std::string> OutputLines(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::vector<std::string> lines;
  std::array<char, 4096> buffer;
  while (pipe != nullptr && fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr) {
    lines.emplace_back(buffer.data());
    lines.back().pop_back();
  }
  return lines;
}

// Of x86, ARM and s390x. What jumps begins with one of two letters, which calls may share.
bool IsCall(std::string_view mnemonic) {
  static constexpr auto kCalls = std::to_array<std::string_view>({"call", "bl", "blx", "brasl"});
  return std::ranges::find(kCalls, mnemonic) != kCalls.end();
}
bool IsJump(std::string_view mnemonic) {
  return !IsCall(mnemonic) && (mnemonic.starts_with('j') || mnemonic.starts_with('b'));
}

// "    4a3c:\tcall   41c0 <malloc@plt>"
struct Instruction {
  std::uintptr_t address;
  std::string_view mnemonic;
  std::string_view symbol;  // of the operand, without "@plt" or a version; may be empty
};

std::optional<Instruction> ParseInstruction(const std::string& line) {
  const std::size_t tab = line.find(":\t");
  const std::size_t address = line.find_first_not_of(' ');
  if (tab == std::string::npos || line.find_first_not_of("0123456789abcdef", address) != tab) {
    return std::nullopt;
  }
  std::string_view text = std::string_view(line).substr(tab + 2);
  if (text.starts_with("bnd ")) text.remove_prefix(4);
  const std::string_view mnemonic = text.substr(0, text.find_first_of(" \t"));
  const std::size_t open = text.rfind('<');
  const std::size_t at = text.rfind('@');
  const bool has_symbol = open < at && at != std::string_view::npos;
  return Instruction{std::stoul(line.substr(0, tab), nullptr, 16), mnemonic,
                     has_symbol ? text.substr(open + 1, at - open - 1) : std::string_view()};
}

// "/folder/file.cc:12" or "/folder/file.cc:12 (discriminator 3)"
std::optional<std::string> ParseSource(const std::string& line) {
  const std::size_t end = line.find(" (");
  const std::string source = line.substr(0, end);
  const std::size_t colon = source.rfind(':');
  const bool is_source = colon != std::string::npos && colon + 1 < source.size() &&
                         source.find_first_not_of("0123456789", colon + 1) == std::string::npos;
  return is_source ? std::optional(source) : std::nullopt;
}

// "0000000000004a10 <name>:"
std::optional<std::string> ParseFunction(const std::string& line) {
  const std::size_t open = line.find(" <");
  if (open == std::string::npos || !line.ends_with(">:")) return std::nullopt;
  return line.substr(open + 2, line.size() - open - 4);
}

}  // namespace

std::vector<CallSite> FindCallSites(const std::string& library_path) {
  std::vector<CallSite> sites;
  std::string function;
  std::string source;
  bool is_after_call = false;
  for (const std::string& line :
       OutputLines(IA_OBJDUMP " -dl --no-show-raw-insn '" + library_path + "'")) {
    if (const auto name = ParseFunction(line)) function = *name;
    if (const auto place = ParseSource(line)) source = *place;
    const auto instruction = ParseInstruction(line);
    if (!instruction) continue;
    if (is_after_call) sites.back().return_address = instruction->address;
    is_after_call = false;
    const bool is_call = IsCall(instruction->mnemonic);
    const auto callee = CalleeNamed(instruction->symbol);
    const bool is_stub = function.ends_with("@plt");
    if (!callee || is_stub || !(is_call || IsJump(instruction->mnemonic))) continue;
    is_after_call = is_call;
    sites.push_back({*callee, 0, line + " in " + function, function + " at " + source});
  }
  return sites;
}

std::vector<std::string> FindUnknownImports(const std::string& library_path) {
  std::vector<std::string> unknown;
  // "                 U read@GLIBC_2.2.5"
  for (const std::string& line : OutputLines(IA_NM " -D --undefined-only '" + library_path + "'")) {
    std::string name = line.substr(line.rfind(' ') + 1);
    name.resize(std::min(name.find('@'), name.size()));
    const bool cannot_fail = std::ranges::find(kCannotFail, name) != kCannotFail.end();
    if (!cannot_fail && !CalleeNamed(name)) unknown.push_back(name);
  }
  return unknown;
}

}  // namespace ia_test

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

// What never goes wrong, or not in a way that the library could be told of.
constexpr auto kCannotFail = std::to_array<std::string_view>({
    // memory and texts that are there already
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
    "log10",
    // trees that are there already
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

// "    4a3c:\tcall   41c0 <malloc@plt>"
struct Instruction {
  std::uintptr_t address;
  std::string_view mnemonic;
  std::string_view symbol;  // of the operand, without "@plt" or a version; may be empty
};

std::optional<Instruction> ParseInstruction(const std::string& line) {
  const std::size_t tab = line.find(":\t");
  if (tab == std::string::npos) return std::nullopt;
  std::string_view text = std::string_view(line).substr(tab + 2);
  if (text.starts_with("bnd ")) text.remove_prefix(4);
  const std::string_view mnemonic = text.substr(0, text.find(' '));
  const std::size_t open = text.rfind('<');
  const std::size_t at = text.rfind('@');
  const bool has_symbol = open < at && at != std::string_view::npos;
  return Instruction{std::stoul(line.substr(0, tab), nullptr, 16), mnemonic,
                     has_symbol ? text.substr(open + 1, at - open - 1) : std::string_view()};
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
  bool is_behind_call = false;
  for (const std::string& line :
       OutputLines("objdump -d --no-show-raw-insn '" + library_path + "'")) {
    if (const auto name = ParseFunction(line)) function = *name;
    const auto instruction = ParseInstruction(line);
    if (!instruction) continue;
    if (is_behind_call) sites.back().return_address = instruction->address;
    is_behind_call = false;
    const bool is_call = instruction->mnemonic == "call";
    const auto callee = CalleeNamed(instruction->symbol);
    const bool is_stub = function.ends_with("@plt");
    if (!callee || is_stub || !(is_call || instruction->mnemonic.starts_with('j'))) continue;
    is_behind_call = is_call;
    sites.push_back({*callee, 0, line + " in " + function});
  }
  return sites;
}

std::vector<std::string> FindUnknownImports(const std::string& library_path) {
  std::vector<std::string> unknown;
  // "                 U read@GLIBC_2.2.5"
  for (const std::string& line : OutputLines("nm -D --undefined-only '" + library_path + "'")) {
    std::string name = line.substr(line.rfind(' ') + 1);
    name.resize(std::min(name.find('@'), name.size()));
    const bool cannot_fail = std::ranges::find(kCannotFail, name) != kCannotFail.end();
    if (!cannot_fail && !CalleeNamed(name)) unknown.push_back(name);
  }
  return unknown;
}

}  // namespace ia_test

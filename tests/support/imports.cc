#include "tests/support/imports.h"

#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace ia_test {
namespace {

// Processors of 64 bits have relocations with addends, those of 32 bits without.
#if __SIZEOF_POINTER__ == 8
using Relocation = Elf64_Rela;
constexpr std::uintptr_t kTable = DT_RELA;
constexpr std::uintptr_t kTableSize = DT_RELASZ;
std::size_t SymbolOf(const Relocation& relocation) { return ELF64_R_SYM(relocation.r_info); }
#else
using Relocation = Elf32_Rel;
constexpr std::uintptr_t kTable = DT_REL;
constexpr std::uintptr_t kTableSize = DT_RELSZ;
std::size_t SymbolOf(const Relocation& relocation) { return ELF32_R_SYM(relocation.r_info); }
#endif

std::uintptr_t DynamicValue(const LoadedLibrary& library, std::uintptr_t tag) {
  const auto* entry = reinterpret_cast<const ElfW(Dyn)*>(library.dynamic);
  for (; entry->d_tag != DT_NULL; ++entry) {
    if (static_cast<std::uintptr_t>(entry->d_tag) == tag) return entry->d_un.d_ptr;
  }
  return 0;
}

// The slot may be in a page that was made read-only after relocation; the page stays writable.
void Store(std::uintptr_t slot, void* value) {
  const auto page_size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const std::uintptr_t page = slot / page_size * page_size;
  if (mprotect(reinterpret_cast<void*>(page), page_size, PROT_READ | PROT_WRITE) != 0) abort();
  *reinterpret_cast<void**>(slot) = value;
}

std::span<const Relocation> TableOf(const LoadedLibrary& library, std::uintptr_t table,
                                    std::uintptr_t size) {
  return {reinterpret_cast<const Relocation*>(DynamicValue(library, table)),
          DynamicValue(library, size) / sizeof(Relocation)};
}

}  // namespace

LoadedLibrary FindLoaded(std::string_view file_name) {
  struct Search {
    std::string_view file_name;
    LoadedLibrary found;
  } search{file_name, {}};
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* data) {
        auto& [file_name, found] = *static_cast<Search*>(data);
        const std::string_view path = info->dlpi_name;
        if (path.substr(path.rfind('/') + 1) != file_name) return 0;
        found.path = path;
        found.base = info->dlpi_addr;
        for (const ElfW(Phdr) & header : std::span(info->dlpi_phdr, info->dlpi_phnum)) {
          const std::uintptr_t start = info->dlpi_addr + header.p_vaddr;
          if (header.p_type == PT_LOAD) found.end = std::max(found.end, start + header.p_memsz);
          if (header.p_type == PT_DYNAMIC) found.dynamic = start;
        }
        return 1;
      },
      &search);
  if (search.found.dynamic == 0) {
    fprintf(stderr, "%s is not loaded\n", std::string(file_name).c_str());
    abort();
  }
  return search.found;
}

std::size_t ReplaceImports(const LoadedLibrary& library,
                           const std::function<void*(std::string_view)>& replacement_of) {
  const auto* symbols = reinterpret_cast<const ElfW(Sym)*>(DynamicValue(library, DT_SYMTAB));
  const auto* names = reinterpret_cast<const char*>(DynamicValue(library, DT_STRTAB));
  std::size_t replaced = 0;
  for (const auto& table :
       {TableOf(library, DT_JMPREL, DT_PLTRELSZ), TableOf(library, kTable, kTableSize)}) {
    for (const Relocation& relocation : table) {
      const ElfW(Sym)& symbol = symbols[SymbolOf(relocation)];
      if (symbol.st_shndx != SHN_UNDEF) continue;
      void* const replacement = replacement_of(names + symbol.st_name);
      if (replacement == nullptr) continue;
      Store(library.base + relocation.r_offset, replacement);
      ++replaced;
    }
  }
  return replaced;
}

}  // namespace ia_test

"""The gates, and the faults that each must notice."""

from pathlib import Path
from typing import NamedTuple

COPY = Path(__file__).resolve().parent.parent.parent / "build" / "gates"  # the tree to plant in


class Gate(NamedTuple):
    preset: str  # in which it is built; empty when nothing is
    targets: tuple
    command: tuple = ()
    is_build: bool = False  # the build itself is the gate
    proof: str = ""  # printed by a run that has checked something


class Fault(NamedTuple):
    name: str
    gate: str
    says: str  # what the gate says of it: a gate that is red for another reason proves nothing
    edits: tuple  # (file, text that it has once, text in its place)


def abi(name, targets=()):
    command = ("ctest", "--test-dir", "build/release", "--output-on-failure", "-R",
               rf"^abi\.{name}$")
    return Gate("release", ("info_analyze",) + targets, command, proof="100% tests passed")


def docs(name):
    command = ("ctest", "--test-dir", "build/release", "--output-on-failure", "-R",
               rf"^docs\.{name}$")
    targets = ("info_analyze_reference", "info-analyze", "info_analyze_commlib", "queue_test",
               "failing_calls_test", "device_uri_fuzz_replay")  # that the commands of the documents run
    return Gate("release", targets, command, proof="100% tests passed")


def build_test(name):
    command = ("ctest", "--test-dir", "build/release", "--output-on-failure", "-R", rf"^{name}\.")
    return Gate("release", ("info_analyze_curves",), command, proof="100% tests passed")


def program(preset, target, path, tests="*", before=()):
    command = (*before, f"build/{preset}/{path}", f"--gtest_filter={tests}")
    return Gate(preset, (target, "info_analyze_commlib"), command, proof="[  PASSED  ]")


GATES = {
    "link": Gate("release", ("info_analyze",), is_build=True),
    "asan": program("asan", "queue_test", "tests/queue/queue_test", "*Queue*"),
    "tsan": program("tsan", "parallel_users_test", "tests/integration/parallel_users_test",
                    "*", ("env", "IA_PARALLEL_ROUNDS=5")),
    "replay": Gate("asan", ("libc_names_fuzz_replay",),
                   ("build/asan/fuzz/libc_names_fuzz_replay", "fuzz/libc_names_fuzz"),
                   proof="libc_names_fuzz/"),
    "failing_calls": program("release", "failing_calls_test",
                             "tests/integration/failing_calls_test", "-WithoutDescriptors.*"),
    "long_run": program("release", "long_run_test", "tests/integration/long_run_test", "*",
                        ("env", "IA_LONG_RUN_ROUNDS=20")),
    "argument_matrix": program("release", "argument_matrix_test",
                               "tests/integration/argument_matrix_test"),
    "instructions": Gate("release", ("info_analyze_operations",),
                         ("bench/check.py", "build/release/bench/info_analyze_operations", "--check"),
                         proof="option_table/300"),
    "includes": Gate("", (), ("tests/abi/includes.py", ".")),
    "headers": Gate("", (), ("bash", "tests/abi/headers.sh", "include", "gcc", "g++")),
    "newer_declarations": Gate("", (), ("bash", "tests/abi/newer_declarations.sh", str(COPY), "gcc",
                                        "g++")),
    "reference": Gate("release", ("info_analyze_reference",), is_build=True),
    "reference_is_complete": docs("reference_is_complete"),
    "pages_are_clean": docs("pages_are_clean"),
    "commands": docs("commands"),
    "embedding": build_test("EmbeddedProject"),
    "requirements": build_test("Requirements"),
    "decisions": docs("decisions"),
    "current": docs("current"),
    "same_names": abi("same_names", targets=("info_analyze_commlib",)),
} | {name: abi(name) for name in ("exports", "relocations", "newer_libc", "other_libraries",
                                  "null_arguments", "types", "unloading", "definitions", "grown_records", "shipped_file")}

MAP = "abi/info_analyze.map"
BUILD = "CMakeLists.txt"
HARDENING = "cmake/hardening.cmake"
LIST = "queue/queue_list.cc"
LIST_HEADER = "include/info_analyze/queue_list.h"

NO_NODE = (MAP, "INFO_ANALYZE_1 {", "{")
NAME_GETTER = (
    "const char* CupsQueueList_GetQueueName(const QueueList* list, int32_t index) noexcept {\n")


def in_getter(statement):
    """A statement at the start of an exported function."""
    return (LIST, NAME_GETTER, f"{NAME_GETTER}  {statement}\n")


def before_getter(definition):
    return (LIST, NAME_GETTER, f"{definition}\n{NAME_GETTER}")


def linked(flag):
    """A flag more for the shared library."""
    return (BUILD, "  -Wl,--version-script", f"  {flag} -Wl,--version-script")


FAULTS = (
    # Memory and threads
    Fault("leak in queue_list.cc", "asan", "LeakSanitizer: detected memory leaks",
          ((LIST, "  std::free(list->records);\n", ""),)),
    Fault("null use in queue_list.cc", "asan", "null pointer",
          ((LIST, "if (list == nullptr || index < 0 || index >= list->count) return nullptr;",
            "if (index < 0 || index >= list->count) return nullptr;"),)),
    Fault("use after release in queue_list.cc", "asan", "heap-use-after-free",
          ((LIST, "  std::free(list->records);\n  std::free(list);",
            "  void (*volatile release)(void*) = std::free;  // hidden from the compiler\n"
            "  release(list);\n  std::free(list->records);"),)),
    Fault("data race in bidi_context.cc", "tsan", "ThreadSanitizer: data race",
          (("bidi/bidi_context.cc",
            "BidiContext* Bidi_Create(const char* driver_folder) noexcept {\n",
            "BidiContext* Bidi_Create(const char* driver_folder) noexcept {\n"
            "  static int calls = 0;\n  ++calls;\n"),)),

    Fault("over-read in strnstr", "replay", "heap-buffer-overflow",
          (("info_common/libc_names.cc", "memmem(haystack, static_cast<std::size_t>(length),",
            "memmem(haystack, static_cast<std::size_t>(length) + 1,"),)),
    Fault("null use, met by its callers", "argument_matrix", "CupsQueueList_GetQueueName",
          ((LIST, "if (list == nullptr || index < 0 || index >= list->count) return nullptr;",
            "if (index < 0 || index >= list->count) return nullptr;"),)),

    # Failing calls
    Fault("unchecked allocation", "failing_calls", "killed by signal 11",
          (("queue/queue_list.cc", "  if (!name) return false;\n", ""),)),
    Fault("leak after a failed allocation", "failing_calls", "blocks leaked",
          (("bidi/bidi_context.cc", "if (context->library == nullptr) return nullptr;",
            "if (context->library == nullptr) return context.release(), nullptr;"),)),
    Fault("temporary file left after a failure", "failing_calls", "temporary files left",
          (("info_common/ppd_file.cc", "  unlink(path);\n  errno = reason;",
            "  if (file == nullptr) unlink(path);\n  errno = reason;"),)),
    Fault("descriptor left after a failure", "failing_calls", "descriptors leaked",
          (("queue/mqpd_conf.cc", "  if (!file) close(descriptor);\n", ""),)),
    Fault("call that no scenario makes fail", "failing_calls", "never failed",
          ((LIST, "#include <dirent.h>\n", "#include <dirent.h>\n#include <unistd.h>\n"),
           in_getter("if (index == -9) unlink(\"planted\");"))),
    Fault("import that nobody has thought of", "failing_calls", "rename",
          ((LIST, "#include <dirent.h>\n", "#include <dirent.h>\n#include <stdio.h>\n"),
           in_getter("if (index == -9) std::rename(\"planted\", \"planted too\");"))),
    Fault("descriptor left by every document", "long_run", "after.descriptors",
          (("bidi/device_documents.cc", "    if (descriptor_ >= 0) close(descriptor_);\n", ""),)),

    # Names
    Fault("captured strlcpy: no versions in the map", "newer_libc",
          "callers of the other strlcpy differ", (NO_NODE,)),
    Fault("captured call of libcups", "other_libraries", "libcups.so.2",
          (NO_NODE, (MAP, "    Bidi_Create;", "    Bidi_Create;\n    iconv_close;"),
           before_getter('extern "C" IA_EXPORT void Planted(void) __asm__("iconv_close");\n'
                         "void Planted(void) {}"))),
    Fault("unversioned exports: no versions in the map", "exports",
          "the version script has no node", (NO_NODE,)),
    Fault("unversioned exports: no map", "exports", "exports without the version",
          ((BUILD, "  -Wl,--version-script=${version_script} ", "  "),)),
    Fault("second version", "exports", "the version script has several nodes",
          ((MAP, "    Bidi_Create;\n", ""),
           (MAP, "INFO_ANALYZE_1 {", "INFO_ANALYZE_0 {\n  global:\n    Bidi_Create;\n};\n"
            "INFO_ANALYZE_1 {"))),
    Fault("extra export", "exports", "CupsQueueList_Planted",
          ((MAP, "    CupsQueueList_Terminate;",
            "    CupsQueueList_Planted;\n    CupsQueueList_Terminate;"),
           before_getter('extern "C" IA_EXPORT void CupsQueueList_Planted(void);\n'
                         "void CupsQueueList_Planted(void) {}"))),
    Fault("weak export", "exports", "neither functions nor constant data",
          ((LIST, NAME_GETTER, "[[gnu::weak]] " + NAME_GETTER),)),
    Fault("wildcard in the map", "exports", "wildcards in the version script",
          ((MAP, "    Bidi_Create;", "    Bidi_C*;"),)),
    Fault("map that hides nothing", "exports", "hides nothing",
          ((MAP, "  local:\n    *;\n", ""),)),
    Fault("export that Debian's list lacks", "exports", "Debian's symbols (>) differ",
          (("packaging/debian/libinfo-analyze1.symbols", " Bidi_Create@INFO_ANALYZE_1 1.0.0\n", ""),)),
    Fault("missing export", "exports", "< Bidi_Create", ((MAP, "    Bidi_Create;\n", ""),)),
    Fault("handlers bound by name: relocations", "relocations",
          "relocations to functions of the library", ((BUILD, " -Wl,-Bsymbolic-functions", ""),)),
    Fault("handlers bound by name: results", "same_names", "results alone",
          ((BUILD, " -Wl,-Bsymbolic-functions", ""),)),

    # Interface
    Fault("added field", "types", "the interface has changed",
          ((LIST_HEADER, "} QueueRecord;", "  char* planted;\n} QueueRecord;"),
           (LIST, "{name.release(), ModificationTime(path.get())}",
            "{name.release(), ModificationTime(path.get()), nullptr}"))),
    Fault("added field in what was padding", "types", "the interface has changed",
          ((LIST_HEADER, "} QueueRecord;", "  int32_t planted;\n} QueueRecord;"),
           (LIST, "{name.release(), ModificationTime(path.get())}",
            "{name.release(), ModificationTime(path.get()), 0}"))),
    Fault("field in front of a record that may grow", "types", "the interface has changed",
          (("include/info_analyze/provenance.h", "typedef struct OptionSource {\n",
            "typedef struct OptionSource {\n  const char* planted;\n"),
           ("analyze/query/printer_query.cc", "const OptionSource record = {",
            "const OptionSource record = {.planted = nullptr,"))),
    Fault("record copied beyond what its caller knows", "grown_records",
          "wrote beyond the client's record",
          (("analyze/record_copy.h", "known = std::min(size, end);", "known = size = end;"),)),
    Fault("fields that the library does not know left as they were", "grown_records",
          "reads from the library of today differs",
          (("analyze/record_copy.h",
            "  std::memset(reinterpret_cast<char*>(target) + known, 0, size - known);\n", ""),)),
    Fault("definition that only a macro writes", "definitions", "analyze_GetQVFinTrayMAPLE",
          (("analyze/model/fin_tray.cc", "int32_t analyze_GetQVFinTrayMAPLE(",
            "#define PLANTED(name) analyze_GetQVFinTray##name\nint32_t PLANTED(MAPLE)("),)),
    Fault("parameter of another type", "types", "the interface has changed",
          ((LIST_HEADER, "CupsQueueList_GetQueueName(const QueueList* list, int32_t index)",
            "CupsQueueList_GetQueueName(const QueueList* list, int64_t index)"),
           (LIST, NAME_GETTER, NAME_GETTER.replace("int32_t index", "int64_t index")))),
    Fault("renamed field", "types", "the interface has changed",
          ((LIST_HEADER, "int32_t modification_time;", "int32_t planted_time;"),
           (LIST, "offsetof(QueueRecord, modification_time)", "offsetof(QueueRecord, planted_time)"),
           (LIST, "return list->records[index].modification_time;",
            "return list->records[index].planted_time;"))),
    Fault("constant of another value", "types", "the constants have changed",
          (("include/info_analyze/halftone.h", "IA_HALFTONE_RESOLUTION = 2",
            "IA_HALFTONE_RESOLUTION = 9"),)),
    Fault("table of another size", "exports", "tables of another size",
          (("include/info_analyze/calibration.h", "LARCH_Def_Calib[IA_CALIB_TABLE_VALUES];",
            "LARCH_Def_Calib[IA_CALIB_TABLE_VALUES + 8];"),
           ("calib/calib3_defaults.cc", "static_assert(sizeof LARCH_Def_Calib == 16384);\n", ""),
           ("calib/curves/default_curves.cc", "LARCH_Def_Calib[IA_CALIB_TABLE_VALUES] = {",
            "LARCH_Def_Calib[sizeof LARCH_Def_Calib / 2] = {"))),
    Fault("header that C does not take", "headers", "unknown type name",
          ((LIST_HEADER, "typedef struct QueueList {",
            "typedef bool Planted;\ntypedef struct QueueList {"),)),
    Fault("header that is not collected", "headers", "headers that info_analyze.h takes",
          (("include/info_analyze/info_analyze.h", '#include "info_analyze/queue_list.h"\n', ""),)),
    Fault("include from a module above", "includes", "includes that point the wrong way",
          (("queue/driver_paths.cc", '#include "queue/driver_family.h"\n',
            '#include "queue/driver_family.h"\n#include "bidi/library_binding.h"\n'),)),
    Fault("include from a module of the tool above", "includes",
          "cli/printer/session.cc includes cli/snapshot/locate.h of cli/snapshot",
          (("cli/printer/session.cc", '#include "cli/printer/session.h"\n',
            '#include "cli/printer/session.h"\n#include "cli/snapshot/locate.h"\n'),)),
    Fault("include from the library's folders", "includes",
          "cli/queues.cc includes queue/driver_family.h of queue",
          (("cli/queues.cc", '#include "cli/verbs.h"\n',
            '#include "cli/verbs.h"\n#include "queue/driver_family.h"\n'),)),

    # The shipped file
    Fault("writable global of 4 bytes", "shipped_file", "writable variables",
          (in_getter("static int32_t calls = 0;\n  ++calls;"),)),
    Fault("writable global of 16 bytes", "shipped_file", ".bss holds",
          (in_getter("static int64_t calls[2];\n  ++calls[index & 1];"),)),
    Fault("writable global with a value", "shipped_file", ".data holds",
          (in_getter("static int64_t calls = 1;\n  ++calls;"),)),
    Fault("thread-local variable", "shipped_file", "thread-local variables",
          (in_getter("static thread_local int32_t calls [[gnu::tls_model(\"initial-exec\")]] = 0;\n"
                     "  ++calls;"),)),
    Fault("static constructor", "shipped_file", "something runs at load time",
          (before_getter("[[gnu::constructor]] static void Planted() { __asm__ volatile(\"\"); }"),)),
    Fault("static destructor", "shipped_file", "something runs at unload time",
          (before_getter("[[gnu::destructor]] static void Planted() { __asm__ volatile(\"\"); }"),)),
    Fault("C++ run-time library dragged in by a static object", "link", "undefined reference",
          ((LIST, "#include <span>\n", "#include <span>\n#include <string>\n"),
           before_getter("const std::string kPlanted(99, 'x');"))),
    Fault("C++ run-time library dragged in by new", "link", "undefined reference",
          (in_getter("if (index == -1) return new char[8]();"),)),
    Fault("getenv", "shipped_file", "forbidden calls",
          (in_getter('if (std::getenv("PLANTED") != nullptr) return nullptr;'),)),
    Fault("printf", "shipped_file", "forbidden calls",
          (in_getter('__builtin_printf("%d", index);'),)),
    Fault("library that is not needed", "shipped_file", "needed libraries",
          (linked("-Wl,--no-as-needed -l:libresolv.so.2"),)),
    Fault("other soname", "shipped_file", "soname",
          ((BUILD, "  SOVERSION ${PROJECT_VERSION_MAJOR})", "  SOVERSION 1 SUFFIX .so.1)"),)),
    Fault("search path for libraries", "shipped_file", "search path",
          (linked("-Wl,-rpath,/planted"),)),
    Fault("no RELRO", "shipped_file", "no RELRO", (linked("-Wl,-z,norelro"),)),
    Fault("lazy binding", "shipped_file", "bound lazily", (linked("-Wl,-z,lazy"),)),
    Fault("executable stack", "shipped_file", "the stack is executable",
          (linked("-Wl,-z,execstack"),)),
    Fault("relocations in the code", "shipped_file", "relocations in the code",
          (linked("-Wl,-z,notext"),
           in_getter('__asm__ volatile("jmp 1f; .quad CupsQueueList_Terminate; 1:");'))),
    Fault("need of a glibc newer than is allowed", "shipped_file", "needs glibc",
          (("tests/abi/shipped_file.sh", "newest_glibc=$(", "newest_glibc=2.3  # $("),)),
    Fault("no stack protector", "shipped_file", "no stack protector",
          ((HARDENING, "-fstack-protector-strong ", "-fno-stack-protector "),)),
    Fault("no fortified calls", "shipped_file", "no fortified calls",
          ((HARDENING, "_FORTIFY_SOURCE=2", "_FORTIFY_SOURCE=0"),)),
    Fault("no control-flow protection", "shipped_file", "no control-flow protection",
          ((HARDENING, "-fcf-protection=full", "-fcf-protection=none"),)),

    # Beside others
    Fault("null use in strlcat", "null_arguments", "checks failed",
          (("info_common/libc_names.cc",
            "if (destination == nullptr || source == nullptr) return 0;",
            "if (source == nullptr) return 0;"),)),
    Fault("strlcpy under its bare name", "newer_declarations", "'nonnull' argument",
          (("info_common/libc_names.cc",
            "size_t info_strlcpy(char* destination, const char* source, size_t size) noexcept {",
            'extern "C" size_t strlcpy(char* destination, const char* source, size_t size) '
            "noexcept {"),)),
    Fault("library that stays loaded", "unloading", "the library stayed",
          (linked("-Wl,-z,nodelete"),)),

    # In other projects
    Fault("file found by the parent's folder", "embedding", "abi/info_analyze.map",
          ((BUILD, "${PROJECT_SOURCE_DIR}/abi/info_analyze.map",
            "${CMAKE_SOURCE_DIR}/abi/info_analyze.map"),)),
    Fault("target without a prefix", "embedding", "targets without a prefix: curves",
          (("calib/curves/CMakeLists.txt", "add_custom_target(info_analyze_curves ",
            "add_custom_target(curves)\nadd_custom_target(info_analyze_curves "),)),
    Fault("setting that reaches the parent", "embedding", "changes its parent's folder",
          ((BUILD, "set(CMAKE_C_STANDARD 99)", 'set(CMAKE_C_STANDARD 99 CACHE STRING "")'),)),
    Fault("missing package without advice", "requirements", "CLI11 for the tool",
          (("cli/CMakeLists.txt",
            'info_analyze_find(CLI11 "" "the tool" libcli11-dev INFO_ANALYZE_TOOL)',
            "find_package(CLI11 REQUIRED)"),)),

    # Speed
    Fault("walk over the table for each of its keys", "instructions", "SLOWER",
          (("info_common/option_table_builder.cc", "  node->next = head_;\n  head_ = node.release();\n",
            "  for (const OptTable* other = head_; other != nullptr; other = other->next) {\n"
            "    __asm__ volatile(\"\");\n  }\n"
            "  node->next = head_;\n  head_ = node.release();\n"),)),

    # Documents
    Fault("parameter that the reference lacks", "reference", "parameter 'index'",
          ((LIST_HEADER, " *  @param list   list; NULL has no queues\n"
            " *  @param index  index from 0\n *  @return borrowed name",
            " *  @param list   list; NULL has no queues\n *  @return borrowed name"),)),
    Fault("constant that the reference lacks", "reference_is_complete", "IA_HALFTONE_NONE",
          (("include/info_analyze/halftone.h", "/**< \"None\" */", ""),)),
    Fault("macro that is no macro", "pages_are_clean", "unknown macro",
          (("docs/man/libinfo_analyze.3", ".Ss Conventions\n", ".Sx Conventions\n.Zz\n"),)),
    Fault("page wider than 80 columns", "pages_are_clean", "in man: 89 columns",
          (("docs/man/libinfo_analyze.3", "  BidiContext* bidi = Bidi_Create(argv[1]);\n",
            "  BidiContext* bidi = Bidi_Create(argv[1]); /* the library that it loads is there */\n"),)),
    Fault("line of a page that cannot be broken", "pages_are_clean", "break line",
          (("docs/man/info-analyze.1", ".Sh SYNOPSIS\n.Nm\n",
            ".Sh SYNOPSIS\n.Nm\n.Brq Fl -a-long-option Ar argument Oo Fl -with-more-words Ar argument Oc |"
            " Fl -last\n.Nm\n"),)),
    Fault("output that no command prints", "commands", "prints a different output",
          (("docs/man/info-analyze-decisions.7", "QVCopyTray=CPTU1", "QVCopyTray=CPTU2"),)),
    Fault("command that fails", "commands", "ends with status",
          (("examples/README.md", "$ info-analyze query ", "$ info-analyze ask "),)),
    Fault("verb that ./dev has not", "commands", "./dev has no verb 'mutilate'",
          (("docs/adding-a-model.md", "./dev mutate ", "./dev mutilate "),)),
    Fault("handler without its codes on the page on decisions", "current", "QVFinTrayHORNBEAM",
          (("docs/man/info-analyze-decisions.7", "QVFinTrayHORNBEAM Pq RA-H5",
            "QVFinTrayHORNBEAM Pq"),)),
    Fault("handler that the page on decisions lacks", "decisions", "QVFinisherSPRUCE",
          (("docs/man/info-analyze-decisions.7", "analyze_GetQVFinisherSPRUCE", "QVFinisher"),)),
    Fault("model code that the page on decisions lacks", "current", "QVFinTrayHORNBEAM",
          (("docs/man/info-analyze-decisions.7", "QVFinTrayHORNBEAM Pq RA-H5",
            "QVFinTrayHORNBEAM Pq RA-H6"),)),
)

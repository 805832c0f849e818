#!/usr/bin/env bash
# What the shipped file needs of the system, what it must not call, and how it is hardened.
# usage: shipped_file.sh LIBRARY
source "$(dirname "$0")/gate.sh"
library=$1

# What runs on Debian 12 is built there; elsewhere the C library of the build is the limit.
newest_glibc=$(printf '2.36\n%s\n' "$(getconf GNU_LIBC_VERSION | sed 's/.* //')" | sort -V | tail -n 1)
needed=$'libc.so.6\nlibcups.so.2\nlibm.so.6'
forbidden='getenv|secure_getenv|setlocale|newlocale|uselocale|printf|__printf_chk|fprintf|'
forbidden+='__fprintf_chk|vprintf|vfprintf|puts|fputs|putchar|perror|syslog|__syslog_chk|'
forbidden+='system|popen|fork|vfork|posix_spawn|abort|__assert_fail|exit|_exit|'
forbidden+='pthread_create|thrd_create|signal|sigaction|sigprocmask|pthread_sigmask|alarm|'
forbidden+='umask|chdir|fchdir|setenv|putenv|unsetenv'

dynamic() { readelf -dW "$library" | sed -nE "/\(($1)\)/s/.*\[(.*)\]/\1/p" | sort; }
imported_names() { imported "$library" | sed 's/@.*//'; }
section_size() {  # section; 0 when there is none
  local size
  size=$(readelf -SW "$library" | sed 's/^ *\[ *[0-9]*\]//' | awk -v name="$1" '$1 == name {print $5}')
  echo $((16#${size:-0}))
}
variables() {  # in .data and .bss, while the file has names
  local sections
  sections=$(readelf -SW "$library" | sed -nE 's/^ *\[ *([0-9]+)\] \.(data|bss) .*/\1/p' | paste -sd'|')
  readelf -sW "$library" | awk '$4 == "OBJECT" {print $7, $8}' | sed -nE "s/^($sections) //p"
}
segments() { readelf -lW "$library" | awk -v type="$1" '$1 == type'; }

# The loader comes with the C library; some processors import a variable of it.
expect_equal "needed libraries" "$(dynamic NEEDED | grep -vE '^ld(64|-linux-.*)\.so\.' || true)" "$needed"
expect_equal "soname" "$(dynamic SONAME)" "libinfo_analyze.so.1"
expect_none "search path for libraries" "$(dynamic 'RPATH|RUNPATH')"

versions=$(imported "$library" | sed -nE 's/.*@(.*)/\1/p' | sort -u)
expect_none "versions that are not glibc's" "$(grep -v '^GLIBC_' <<<"$versions" || true)"
newest=$(sort -V <<<"${versions//GLIBC_/}" | tail -n 1)
[[ $(printf '%s\n' "$newest" "$newest_glibc" | sort -V | tail -n 1) == "$newest_glibc" ]] ||
  fail "needs glibc $newest"

expect_none "needs of the C++ run-time library" \
  "$(imported_names | grep -E '^(_Z|__gxx_|__cxa_)' | grep -vx '__cxa_finalize' || true)"
expect_none "forbidden calls" "$(imported_names | grep -xE "$forbidden" || true)"

# The C run time's own: __dso_handle and the mark that finalisers have run, and its two finalisers.
(($(section_size .data) <= 8)) || fail ".data holds $(section_size .data) bytes"
(($(section_size .bss) <= 8)) || fail ".bss holds $(section_size .bss) bytes"
# A small one fits beside them.
expect_none "writable variables" "$(variables | grep -vxE '__dso_handle|completed\.[0-9]+|__TMC_END__' || true)"
(($(section_size .tdata) + $(section_size .tbss) == 0)) || fail "there are thread-local variables"
(($(section_size .init_array) <= 8)) || fail "something runs at load time"
(($(section_size .fini_array) <= 8)) || fail "something runs at unload time"

[[ -n $(segments GNU_RELRO) ]] || fail "no RELRO"
readelf -dW "$library" | grep -E '\(FLAGS\)' | grep -q BIND_NOW || fail "symbols are bound lazily"
[[ $(segments GNU_STACK) == *" RW "* ]] || fail "the stack is executable"
expect_none "segments that are writable and executable" \
  "$(readelf -lW "$library" | grep -E 'LOAD .* RWE' || true)"
expect_none "relocations in the code" "$(readelf -dW "$library" | grep TEXTREL || true)"
imported_names | grep -qx __stack_chk_fail || fail "no stack protector"
imported_names | grep -vx __stack_chk_fail | grep -qE '^__.*_chk$' || fail "no fortified calls"
# The property note is no witness: it is lost where the C run time's own objects have none.
# The instruction with which a function starts that may be called indirectly.
case $(readelf -hW "$library" | sed -nE 's/^ *Machine: *//p') in
  *X86-64*) entry_mark=endbr64 ;;
  AArch64) entry_mark='paciasp|bti' ;;
  *) exit 0 ;;  # has none
esac
entry_marks=$("$objdump" -d --no-show-raw-insn "$library" | grep -cE "$entry_mark" || true)
((entry_marks >= $(exported_functions "$library" | wc -l))) || fail "no control-flow protection"

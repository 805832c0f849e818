/* Prints every record of provenance.h and their inputs. Compiled against today's header, and with
 * IA_GROWN against one whose records have more fields; run with the library of either. */
#include <info_analyze/provenance.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { kGuardSize = 64, kGuard = 0xAA };

/* A record of the client, with a guard after it. */
#define GUARDED(type)                \
  struct {                           \
    type record;                     \
    unsigned char guard[kGuardSize]; \
  }

static void check_guard(const unsigned char* guard) {
  for (int i = 0; i < kGuardSize; ++i) {
    if (guard[i] == kGuard) continue;
    puts("the library wrote beyond the client's record");
    exit(1);
  }
}

static const char* shown(const char* text) { return text != NULL ? text : "(none)"; }

#ifdef IA_GROWN
/* A pointer that was left as it was before the call is not a text. */
static const char* shown_planted(const char* const* planted) {
  unsigned char untouched[sizeof *planted];
  memset(untouched, kGuard, sizeof untouched);
  return memcmp(planted, untouched, sizeof untouched) != 0 ? shown(*planted) : "(untouched)";
}
#define PRINT_GROWN(record) \
  printf(" + %s %d", shown_planted(&(record).planted), (record).planted_number)
#else
#define PRINT_GROWN(record) (void)(record)
#endif

static void print_inputs(void) {
  GUARDED(InputKey) key;
  memset(&key, kGuard, sizeof key);
  for (int32_t i = 0; Analyze_Provenance_GetInput(i, &key.record, sizeof key.record); ++i) {
    printf("input %d: %d %d %d %s", i, key.record.document, key.record.in_list, key.record.type,
           key.record.key);
    PRINT_GROWN(key.record);
    putchar('\n');
    check_guard(key.guard);
  }
}

static void print_options(int32_t update) {
  GUARDED(OptionSource) option;
  memset(&option, kGuard, sizeof option);
  for (int32_t i = 0; Analyze_Provenance_GetOption(update, i, &option.record, sizeof option.record);
       ++i) {
    printf("  option %d: %s %d %s %d %d inputs", i, shown(option.record.keyword),
           option.record.getter != NULL, option.record.default_value, option.record.family,
           option.record.value_input);
    for (int32_t n = 0; n < option.record.input_count; ++n) {
      printf(" %d", Analyze_Provenance_GetOptionInput(update, i, n));
    }
    PRINT_GROWN(option.record);
    putchar('\n');
    check_guard(option.guard);
  }
}

static void print_updates(void) {
  GUARDED(UpdateSource) update;
  memset(&update, kGuard, sizeof update);
  for (int32_t i = 0; Analyze_Provenance_GetUpdate(i, &update.record, sizeof update.record); ++i) {
    printf("update %d: %s %d %d", i, update.record.name, update.record.guard,
           update.record.option_count);
    PRINT_GROWN(update.record);
    putchar('\n');
    check_guard(update.guard);
    print_options(i);
  }
}

static void print_rows(int32_t family) {
  GUARDED(ModelRow) row;
  memset(&row, kGuard, sizeof row);
  for (int32_t i = IA_OTHER_MODELS;
       Analyze_Provenance_GetModelRow(family, i, &row.record, sizeof row.record); ++i) {
    printf("row %d of family %d: %s %s %d inputs", i, family, row.record.code,
           shown(row.record.handler), row.record.whole_code);
    for (int32_t n = 0; n < row.record.input_count; ++n) {
      printf(" %d", Analyze_Provenance_GetModelRowInput(family, i, n));
    }
    PRINT_GROWN(row.record);
    putchar('\n');
    check_guard(row.guard);
  }
}

int main(void) {
  print_inputs();
  print_updates();
  for (int32_t family = 0; family < IA_FAMILY_COUNT; ++family) print_rows(family);
  return 0;
}

#include <info_analyze/info_analyze.h>
#include <stdio.h>

int main(void) {
  OptionList* options = NULL;
  info_common_optlist_additem_front(&options, "QVDupUnit", "True");
  if (options == NULL) return 1;
  printf("%s=%s, LARCH_Def_Calib ends at %d\n", options->key, options->value,
         LARCH_Def_Calib[IA_CALIB_TABLE_VALUES - 1]);
  OptionList_Terminate(&options);
  return 0;
}

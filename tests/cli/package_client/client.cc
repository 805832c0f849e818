// usage: client DRIVER_FOLDER QUEUE DEVICE_INFO
#include <info_analyze/info_analyze.h>

#include <iostream>

int main(int argc, char** argv) {
  if (argc != 4) return 1;
  BidiContext* bidi = Bidi_Create(argv[1]);
  AnalyzeContext* analyzer = Analyze_Create(bidi, argv[2], argv[3]);
  OptionList* options = nullptr;
  info_common_optlist_additem_front(&options, "", "");
  const int32_t result = Analyze_Info_FromPrinter(analyzer, options, 0);
  for (const OptionList* node = options->next; node != nullptr; node = node->next) {
    std::cout << node->key << '=' << node->value << '\n';
  }
  OptionList_Terminate(&options);
  Analyze_Destroy(analyzer);
  Bidi_Destroy(bidi);
  return result == 0 ? 0 : 1;
}

// A queue, its documents and a communication library for it, whose right answers are known.
#ifndef TESTS_INTEGRATION_SAMPLE_SETTING_H_
#define TESTS_INTEGRATION_SAMPLE_SETTING_H_

#include <string>

#include "info_analyze/info_analyze.h"
#include "tests/support/temp_folder.h"

namespace ia_test {

inline constexpr char kQueue[] = "office";
inline constexpr char kModel[] = "RA-H2";
inline constexpr char kFlags[] = "Plain:1,Thick:2,Plain:3";

// The queue's PPD. Its lines add to the option table in every possible way: keys that repeat, that
// differ only in case, that are prefixes of other keys, and choices of UI blocks.
extern const char kPpd[];
// What the table of that PPD holds, as Shown() prints it.
extern const char kPpdTable[];

// One line "key=value" for each entry.
std::string Shown(const OptTable* table);
// The pairs of a store in the same form; "(none)" for a missing store.
std::string Shown(const FlagInfo* store);

// The text, which is released; "(none)" for a null pointer.
std::string Take(char* text);

// A caller's list that holds one entry, "Start=0", and releases it with all that is added.
class CallersList {
 public:
  CallersList();
  ~CallersList() { OptionList_Terminate(&head_); }
  CallersList(const CallersList&) = delete;
  CallersList& operator=(const CallersList&) = delete;

  [[nodiscard]] OptionList* head() const { return head_; }
  OptionList** address() { return &head_; }
  // Without the first entry.
  [[nodiscard]] std::string Added() const { return Shown(head_->next); }

 private:
  OptionList* head_ = nullptr;
};

class SampleSetting {
 public:
  static const SampleSetting& Get();

  [[nodiscard]] BidiContext* bidi() const { return bidi_; }
  [[nodiscard]] const char* document_folder() const { return documents_.path().c_str(); }

 private:
  SampleSetting();
  ~SampleSetting() { Bidi_Destroy(bidi_); }

  TempFolder documents_;
  BidiContext* bidi_;
};

// An analyser for the queue.
class SampleAnalyser {
 public:
  SampleAnalyser()
      : context_(Analyze_Create(SampleSetting::Get().bidi(), kQueue,
                                SampleSetting::Get().document_folder())) {}
  ~SampleAnalyser() { Analyze_Destroy(context_); }
  SampleAnalyser(const SampleAnalyser&) = delete;
  SampleAnalyser& operator=(const SampleAnalyser&) = delete;

  [[nodiscard]] AnalyzeContext* context() const { return context_; }

 private:
  AnalyzeContext* context_;
};

}  // namespace ia_test

#endif  // TESTS_INTEGRATION_SAMPLE_SETTING_H_

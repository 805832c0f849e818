// Any sequence of insertions and changes, with the index and without. Each line is a letter (f
// front, b back, c change, other front), a key, "=" and a value.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/input.h"
#include "info_common/option_table_builder.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/table_model.h"

namespace {

using ia_fuzz::Require;
using ia_test::ExactText;

constexpr std::size_t kLongest = 512;  // the plain rules walk their tables

// One table made by each way, beside what it must hold.
class Tables {
 public:
  void Take(char step, const std::string& key, const std::string& value) {
    const auto exact_key = ExactText(key);
    const auto exact_value = ExactText(value);
    Require(builder_.Put(exact_key.get(), exact_value.get()));
    built_.AddFront(key, value);
    OptTable* head = table_.release();
    if (step == 'b') {
      info_common_optlist_additem_back(head, exact_key.get(), exact_value.get());
      model_.AddBack(key, value);
    } else if (step == 'c') {
      info_common_optlist_changevalue(head, exact_key.get(), exact_value.get());
      model_.ChangeValue(key, value);
    } else {
      info_common_optlist_additem_front(&head, exact_key.get(), exact_value.get());
      model_.AddFront(key, value);
    }
    table_.reset(head);
    CompareLookups(key);
  }

  void Compare() {
    const ia_test::Table built(builder_.Take());
    Require(ia_test::EntriesOf(built.get()) == built_.entries());
    Require(ia_test::EntriesOf(table_.get()) == model_.entries());
  }

 private:
  void CompareLookups(const std::string& key) const {
    const auto exact_key = ExactText(key);
    const OptTable* const found = info_common_optlist_find(table_.get(), exact_key.get());
    const int place = model_.Find(key);
    Require((found != nullptr) == (place >= 0));
    Require(found == nullptr || found->key == model_.entries()[place].first);

    const ia_test::OwnedText value(info_common_optlist_getvalue(table_.get(), exact_key.get()));
    const int equal = model_.FindEqual(key);
    Require((value != nullptr) == (equal >= 0));
    Require(!value || value.get() == model_.entries()[equal].second);
  }

  ia::OptionTableBuilder builder_;
  ia_test::TableModel built_;
  ia_test::Table table_;
  ia_test::TableModel model_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ia_fuzz::Input input(data, std::min(size, kLongest));
  Tables tables;
  while (!input.IsEmpty()) {
    std::string_view line = input.TakeText();
    if (line.empty()) continue;
    const char step = line.front();
    line.remove_prefix(1);
    const std::size_t equals = std::min(line.find('='), line.size());
    tables.Take(step, std::string(line.substr(0, equals)),
                std::string(line.substr(std::min(equals + 1, line.size()))));
  }
  tables.Compare();
  return 0;
}

#include "tests/info_common/any_ppd.h"

#include <cstddef>
#include <numeric>
#include <string>
#include <vector>

namespace ia_test {
namespace {

using namespace std::string_literals;

std::string Draw(const rc::Gen<std::string>& gen) { return *gen; }

rc::Gen<std::string> Padding() {
  return rc::gen::map(
      rc::gen::weightedOneOf<int>({{40, rc::gen::just(0)},
                                   {2, rc::gen::inRange(240, 260)},
                                   {2, rc::gen::inRange(490, 514)},
                                   {1, rc::gen::inRange(1000, 1026)}}),
      [](int length) { return std::string(static_cast<std::size_t>(length), 'x'); });
}

rc::Gen<std::string> Key() {
  return rc::gen::map(rc::gen::container<std::string>(rc::gen::element('A', 'a', 'B')),
                      [](const std::string& letters) { return "QV" + letters.substr(0, 3); });
}

rc::Gen<std::string> FirstByte() {
  return rc::gen::weightedElement<std::string>(
      {{12, "*"}, {1, "x"}, {1, "\0"s}, {1, ""}, {1, "**"}});
}

rc::Gen<std::string> Noise() {
  const auto byte = rc::gen::elementOf("*QVqv%:\"()/, \t\0\x01\x7F\x80\xFFOpenUICloseDefault"s);
  return rc::gen::container<std::string>(byte);
}

std::string OptionLine() {
  return Draw(FirstByte()) + Draw(Key()) + Draw(Padding()) +
         *rc::gen::element<std::string>(": ", ":", " ", ": \"", "\t", "") + Draw(Padding()) +
         *rc::gen::element<std::string>("", "1", "2", "a b", "a/b\"") + Draw(Padding());
}

std::string UiValueLine() {
  return *rc::gen::weightedElement<std::string>({{9, "*%QVUIValue:"}, {1, "*%QVUIvalue:"}}) +
         *rc::gen::element<std::string>("", " ", " *") +
         *rc::gen::weightedElement<std::string>({{9, Draw(Key())}, {1, ""}}) + Draw(Padding()) +
         *rc::gen::element<std::string>("(1)", "(2", "", "()", "(a b)c") + Draw(Padding());
}

std::string OpenLine() {
  return Draw(FirstByte()) +
         *rc::gen::weightedElement<std::string>({{9, "OpenUI"}, {1, "openUI"}}) + Draw(Padding()) +
         *rc::gen::element<std::string>(" *QVSpecID", " *QVPlatformVersion", " *PageSize", "",
                                        " *QVSpecID/QVPlatformVersion", " *QVSpecID/a: PickOne");
}

std::string ChoiceLine() {
  return *rc::gen::element<std::string>("*QVSpecID ", "*QVPlatformVersion ", "*Default",
                                        "*DEFAULTQV", "*QVSpecID", "*PageSize ") +
         Draw(Padding()) +
         *rc::gen::element<std::string>("1/One", "22/Two: \"\"", "/", "", "no slash", "3/x/y");
}

std::string CloseLine() {
  return Draw(FirstByte()) +
         *rc::gen::weightedElement<std::string>({{9, "CloseUI"}, {1, "closeUI"}}) +
         *rc::gen::element<std::string>("", ": *QVSpecID", ": *PageSize/x");
}

rc::Gen<std::string> Line() {
  return rc::gen::exec([] {
    const std::string end =
        *rc::gen::weightedElement<std::string>({{12, "\n"}, {2, "\r\n"}, {1, "\r"}, {1, ""}});
    switch (*rc::gen::weightedElement<int>({{6, 0}, {2, 1}, {4, 2}, {5, 3}, {3, 4}, {2, 5}})) {
      case 0:
        return OptionLine() + end;
      case 1:
        return UiValueLine() + end;
      case 2:
        return OpenLine() + end;
      case 3:
        return ChoiceLine() + end;
      case 4:
        return CloseLine() + end;
      default:
        return Draw(Noise()) + end;
    }
  });
}

}  // namespace

rc::Gen<std::string> AnyPpd() {
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(Line()),
                      [](const std::vector<std::string>& lines) {
                        return std::accumulate(lines.begin(), lines.end(), std::string());
                      });
}

}  // namespace ia_test

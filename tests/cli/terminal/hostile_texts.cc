// A communication library that returns what no document can hold: in each text of a document,
// "(ESC)" means an escape, "(FF)" for a byte that is no UTF-8, "(BEL)" for a bell.
#include <string.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "info_analyze/communication_library.h"

// The reference library's own, under the names that the build gives them here.
extern "C" {
int32_t device_GetString(QvXmlReader* reader, const char* key, char** text, void* auxiliary,
                         const char* encoding, intptr_t word);
int32_t device_GetStringFromArray(QvXmlReader* reader, int32_t index, char** text, void* auxiliary,
                                  const char* encoding, intptr_t word);
}

namespace {

struct Byte {
  const char* name;
  char byte;
};
constexpr auto kBytes = std::to_array<Byte>({{"(ESC)", '\x1b'}, {"(FF)", '\xff'}, {"(BEL)", '\a'}});

int32_t Decode(int32_t found, char** text) {
  if (found == 0 || *text == nullptr) return found;
  std::string decoded = *text;
  for (const Byte& row : kBytes) {
    for (std::size_t at = decoded.find(row.name); at != std::string::npos;
         at = decoded.find(row.name)) {
      decoded.replace(at, std::strlen(row.name), 1, row.byte);
    }
  }
  std::free(*text);
  *text = strdup(decoded.c_str());
  return found;
}

}  // namespace

int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text, void* auxiliary,
                            const char* encoding, intptr_t word) {
  return Decode(device_GetString(reader, key, text, auxiliary, encoding, word), text);
}

int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, int32_t index, char** text,
                                     void* auxiliary, const char* encoding, intptr_t word) {
  return Decode(device_GetStringFromArray(reader, index, text, auxiliary, encoding, word), text);
}

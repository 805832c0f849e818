#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "info_analyze/device_uri.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::IsNull;

char kOtherText[] = "untouched";

// Paths have room for 2047 bytes and their NUL.
struct LengthRow : NamedRow {
  std::size_t length;
  bool accepted;
};

class PathLength : public testing::TestWithParam<LengthRow> {
 protected:
  static std::string FolderFor(std::string_view ending) {
    return "/" + std::string(GetParam().length - ending.size() - 1, 'd');
  }
};

TEST_P(PathLength, OfMqpdUtil) {
  const std::string ending = "/Bidi/libmqpd_util.so";
  const std::string folder = FolderFor(ending);
  char* path = kOtherText;
  const auto status = FolderPathToFullPathOfMqpdUtil(ExactText(folder).get(), &path);
  if (GetParam().accepted) {
    ASSERT_EQ(status, 0);
    EXPECT_EQ(OwnedText(path).get(), folder + ending);
  } else {
    EXPECT_EQ(status, -1);
    EXPECT_THAT(path, IsNull());
  }
}

TEST_P(PathLength, OfIoLibrary) {
  const std::string ending = "/Bidi/vxio_tcpip.dylib";
  const std::string folder = FolderFor(ending);
  const std::string uri = "net:192.0.2.10/PDLType=drv" + folder;
  char* path = kOtherText;
  const auto status = MqpdUriToFullPathOfIOLib(ExactText(uri).get(), &path);
  if (GetParam().accepted) {
    ASSERT_EQ(status, 0);
    EXPECT_EQ(OwnedText(path).get(), folder + ending);
  } else {
    EXPECT_EQ(status, -1);
    EXPECT_THAT(path, IsNull());
  }
}

INSTANTIATE_TEST_SUITE_P(Bytes, PathLength,
                         Rows<LengthRow>({{"Few", 100, true},
                                          {"At2046", 2046, true},
                                          {"At2047", 2047, true},
                                          {"At2048", 2048, false},
                                          {"At2049", 2049, false},
                                          {"At4096", 4096, false},
                                          {"At100000", 100'000, false}}),
                         RowName<LengthRow>);

}  // namespace
}  // namespace ia_test

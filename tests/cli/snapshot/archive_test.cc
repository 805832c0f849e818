#include "cli/snapshot/archive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "info_analyze/device_documents.h"

namespace {

using ia::cli::ArchiveFault;
using ia::cli::Files;
using ia::cli::Pack;
using ia::cli::Unpack;
using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(Archive, ReturnsWhatWasPacked) {
  const Files files = {{"a/b", ""},
                       {"B\xc3\xbcro", std::string("\0\xff\n", 3)},
                       {std::string(ia::cli::kMaxArchivedPath, 'p'), std::string(100'000, 'x')}};
  EXPECT_EQ(Unpack(Pack(files)), files);
  EXPECT_EQ(Unpack(Pack({})), Files());
}

TEST(Archive, HasNoMoreFilesThanASnapshot) {
  Files files;
  for (std::size_t i = 0; i < ia::cli::kMaxArchivedFiles; ++i) files["f" + std::to_string(i)] = "";
  EXPECT_EQ(Unpack(Pack(files)), files);
  files["more"] = "";
  EXPECT_THAT([&] { static_cast<void>(Unpack(Pack(files))); },
              ThrowsMessage<ArchiveFault>(HasSubstr("too many")));
}

TEST(Archive, HasFilesOfTheSizeOfADocumentAtMost) {
  const Files largest = {{"a", std::string(IA_DOCUMENT_MAX_SIZE, 'x')}};
  EXPECT_EQ(Unpack(Pack(largest)), largest);
  EXPECT_THAT([] { static_cast<void>(Pack({{"a", std::string(IA_DOCUMENT_MAX_SIZE + 1, 'x')}})); },
              ThrowsMessage<ArchiveFault>("a: larger than 16 MiB"));
}

TEST(Archive, IsLimitedAsAWhole) {
  Files files;
  for (const char* const name : {"a", "b", "c", "d"}) {
    files[name] = std::string(IA_DOCUMENT_MAX_SIZE, 'x');
  }
  EXPECT_THAT([&] { static_cast<void>(Pack(files)); },
              ThrowsMessage<ArchiveFault>("contents: larger than 64 MiB"));
}

TEST(Archive, PathIsLimitedWhenWritten) {
  const std::string path(ia::cli::kMaxArchivedPath + 1, 'p');
  EXPECT_THAT([&] { static_cast<void>(Pack({{path, ""}})); },
              ThrowsMessage<ArchiveFault>("a path is too long"));
}

}  // namespace

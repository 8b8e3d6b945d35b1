// A plain document file reaches the parser byte for byte, whatever the sizes of the pieces the
// parser asks for and however they fall against the steps in which the file itself is read.

#include <gtest/gtest.h>

#include <string>

#include "reader/document_input.h"
#include "tests/support/documents.h"

namespace {

using namespace zylsdk;
using zyltest::TempFile;

// Bytes that differ from their neighbours, so that one lost, doubled or moved shows.
std::string VariedBytes(size_t count) {
  std::string bytes(count, '\0');
  for (size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>('A' + (i * 31 + i / 997) % 26);
  return bytes;
}

TEST(DocumentInput, APlainFileArrivesWholeWhateverPiecesAreAskedFor) {
  const std::string text = VariedBytes(700 * 1024 + 13);
  TempFile file(text);
  KString refusal;
  std::unique_ptr<DocumentInput> input = DocumentInput::Open(file.Path().c_str(), InputLimits(), refusal);
  ASSERT_NE(input, nullptr);
  std::string arrived;
  const int pieces[] = {1, 4000, 300000, 0, 65536, 7, 262144};
  std::string buffer(300000, '\0');
  for (size_t call = 0; call < 10000; ++call) {
    const int length = pieces[call % (sizeof pieces / sizeof pieces[0])];
    const int count = input->Read(&buffer[0], length);
    ASSERT_GE(count, 0);
    ASSERT_LE(count, length);
    if (count == 0 && length > 0) break;
    arrived.append(buffer, 0, static_cast<size_t>(count));
  }
  EXPECT_EQ(arrived.size(), text.size());
  EXPECT_TRUE(arrived == text);
  // The end stays the end.
  EXPECT_EQ(input->Read(&buffer[0], 100), 0);
}

TEST(DocumentInput, AnEmptyFileEndsAtOnce) {
  TempFile file("");
  KString refusal;
  std::unique_ptr<DocumentInput> input = DocumentInput::Open(file.Path().c_str(), InputLimits(), refusal);
  ASSERT_NE(input, nullptr);
  char buffer[16];
  EXPECT_EQ(input->Read(buffer, sizeof buffer), 0);
}

}  // namespace

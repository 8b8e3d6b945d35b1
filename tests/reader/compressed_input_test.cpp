// Compressed documents: gzip is decompressed by the reader within a bound; other compressed
// forms and gzip documents that unpack past the bound are refused with the reader's message.

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/xml_document.h"
#include "tests/support/documents.h"

namespace {

using namespace zylsdk;
using zyltest::TempFile;

// `text` as a gzip file's bytes.
std::string Gzip(const std::string& text) {
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
  std::string out(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(&out[0]);
  stream.avail_out = static_cast<uInt>(out.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

const std::string kDocument =
    "<COLLADA version=\"1.4.1\"><asset><title>packed</title></asset><library_geometries/></COLLADA>";

TEST(CompressedInput, AGzipDocumentReadsAsItsText) {
  TempFile packed(Gzip(kDocument));
  XmlParseFailure failure;
  DaeDocumentPtr document = ParseXmlFile(packed.Path(), &failure);
  ASSERT_NE(document, nullptr) << failure.message.Std();
  EXPECT_EQ(DAE_GetContent(findChildByType(findChildByType(document->Root(), "asset"), "title")), "packed");
}

TEST(CompressedInput, AGzipDocumentPastItsCapIsRefused) {
  // 2 MB of spaces pack into a few kilobytes.
  const std::string bomb = "<COLLADA>" + std::string(2 << 20, ' ') + "</COLLADA>";
  TempFile packed(Gzip(bomb));
  InputLimits limits;
  limits.ratio = 10;
  limits.floorBytes = 1 << 20;
  XmlParseFailure failure;
  EXPECT_EQ(ParseXmlFile(packed.Path(), &failure, limits), nullptr);
  EXPECT_TRUE(failure.refused);
  EXPECT_EQ(failure.message.Std(), "the compressed document unpacks to more than 1048576 bytes, the limit for its size");
  // A higher floor lets the same honest document through.
  limits.floorBytes = 4 << 20;
  EXPECT_NE(ParseXmlFile(packed.Path(), &failure, limits), nullptr);
}

TEST(CompressedInput, XzAndLzmaAreRefused) {
  for (const std::string& start : {std::string("\xfd" "7zXZ", 5) + std::string(1, '\0') + "rest",
                                  std::string("\x5d\0\0\x80\0", 5) + "rest"}) {
    TempFile packed(start);
    XmlParseFailure failure;
    EXPECT_EQ(ParseXmlFile(packed.Path(), &failure), nullptr);
    EXPECT_TRUE(failure.refused);
    EXPECT_EQ(failure.message.Std(), "the document is compressed with xz or lzma, which is not read");
  }
}

TEST(CompressedInput, TheReaderSaysWhyBeforeTheUsualFailure) {
  TempFile packed(Gzip("<COLLADA>" + std::string(2 << 20, ' ') + "</COLLADA>"));
  KZylSdkManager manager;
  KZylReaderCollada reader(manager);
  ASSERT_TRUE(reader.FileOpen(packed.Path().c_str()));
  KZylStreamOptions* options = reader.GetReadOptions();
  options->GetOption("GZIP FLOOR").Set(1 << 20);
  options->GetOption("GZIP RATIO").Set(2);
  EXPECT_FALSE(reader.Read(*KZylScene::Create(&manager, ""), options));
  std::vector<std::string> texts;
  for (const auto& detail : manager.GetUserNotification()->GetDetails()) texts.push_back(detail.text.Std());
  EXPECT_EQ(texts, (std::vector<std::string>{
                       "ERROR: the compressed document unpacks to more than 1048576 bytes, the limit for its size",
                       "ERROR: Unable to parse xml/dae file\n"}));
}

}  // namespace

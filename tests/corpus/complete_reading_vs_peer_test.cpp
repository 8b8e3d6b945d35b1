// With the complete reading, no document of the shared corpus that Assimp reads may hold fewer
// triangles, nodes or materials than Assimp reads, and both world boxes agree, apart from the
// documents listed with their reason in tools/corpus_table/peer_exceptions.cpp. A listed document
// that holds again fails, so that its entry is removed. Skipped without the corpus or without
// Assimp.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/corpus.h"
#include "tests/support/documents.h"
#include "tools/corpus_table/peer_comparison.h"
#include "tools/corpus_table/peer_exceptions.h"
#include "tools/corpus_table/peer_reading.h"

namespace {

class CompleteReadingAgainstPeer : public ::testing::TestWithParam<std::string> {};

TEST_P(CompleteReadingAgainstPeer, HoldsAtLeastWhatThePeerReads) {
  const std::string path = std::string(ZYL_CORPUS_DIR) + "/" + GetParam();
  const zyldae::PeerStats peer = zyldae::ReadWithPeer(path);
  if (!peer.available) GTEST_SKIP() << zyldae::PeerName();
  if (!peer.read) GTEST_SKIP() << "Assimp does not read it: " << peer.error;

  zyldae::ReadResult read = zyldae::ReadDocument(path.c_str(), zyltest::Complete());
  const std::vector<std::string> shortfalls =
      zyldae::ShortfallsAgainstPeer(read.ok, zyldae::ComputeStats(*read.scene), peer);
  std::string described;
  for (const std::string& shortfall : shortfalls) described += "\n  " + shortfall;

  const zyldae::PeerException* exception = zyldae::FindPeerException(GetParam());
  if (!exception) {
    EXPECT_TRUE(shortfalls.empty()) << "the complete reading falls short of Assimp's:" << described;
    return;
  }
  ASSERT_FALSE(shortfalls.empty()) << "listed as an exception (" << zyldae::KindName(exception->kind)
                                   << ") but holds now: remove it from the list";
  GTEST_SKIP() << zyldae::KindName(exception->kind) << ": " << exception->reason << described;
}

INSTANTIATE_TEST_SUITE_P(Corpus, CompleteReadingAgainstPeer, ::testing::ValuesIn(zyltest::CorpusDocuments()),
                         zyltest::FileTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CompleteReadingAgainstPeer);

// Every listed document is in the corpus, so that a renamed or removed file leaves no stale entry.
TEST(PeerExceptions, NameDocumentsOfTheCorpus) {
  const std::vector<std::string> documents = zyltest::CorpusDocuments();
  if (documents.empty()) GTEST_SKIP() << "no corpus at " << ZYL_CORPUS_DIR;
  for (const zyldae::PeerException& exception : zyldae::PeerExceptions())
    EXPECT_NE(std::find(documents.begin(), documents.end(), exception.document), documents.end())
        << exception.document << " is not in the corpus";
}

}  // namespace

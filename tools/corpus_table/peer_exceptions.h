#pragma once
// The corpus documents on which our complete reading may fall short of the peer's, each with
// its reason. The corpus test skips them while they fall short and fails once one no longer does,
// so that the list only shrinks; docs/corpus.md prints it.

#include <string>
#include <vector>

namespace zyldae {

struct PeerException {
  enum Kind {
    ePeerWrong,      // the peer's figure is the wrong one
    eKitLimit,       // the document holds what the kit cannot represent
  };
  const char* document;  // relative to the corpus folder
  Kind kind;
  const char* reason;
};

const std::vector<PeerException>& PeerExceptions();
// The exception recorded for `document`, or nullptr.
const PeerException* FindPeerException(const std::string& document);
// "Assimp wrong", "kit limit" or "reading to come".
const char* KindName(PeerException::Kind kind);

}  // namespace zyldae

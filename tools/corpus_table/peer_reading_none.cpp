// The peer reader when the program is built without Assimp.

#include "tools/corpus_table/peer_reading.h"

namespace zyldae {

std::string PeerName() { return "Assimp (not built in: configure with ZYL_WITH_ASSIMP=ON and libassimp-dev)"; }

PeerStats ReadWithPeer(const std::string&) { return PeerStats{}; }

}  // namespace zyldae

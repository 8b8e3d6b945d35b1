#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::CopyScene(KZylScene*, KZylScene*) { return true; }
bool KZylReaderCollada::CopyNodeHierarchy(KZylNode*, KZylNode*) { return true; }
bool KZylReaderCollada::CopyNode(KZylNode*, KZylNode*) { return true; }
bool KZylReaderCollada::CopyNodeAttribute(KZylNode*, KZylNode*) { return true; }
void KZylReaderCollada::CopyNodeTransforms(KZylNode*, KZylNode*) {}
void KZylReaderCollada::CopyPose(KZylPose*, KZylPose*) {}
void KZylReaderCollada::UpdateLinkInHierarchy(KZylScene*, KZylNode*) {}

}  // namespace zylsdk

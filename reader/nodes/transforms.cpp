#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportTransforms(xmlNode*, KZylNode*) { return true; }
KZylVector4& KZylReaderCollada::ImportRotation(xmlNode*, KZylNode*, int&, KZylVector4& rotation) { return rotation; }
ERotationOrder KZylReaderCollada::ExtrapolateRotationOrder(int[3], int) { return eEulerXYZ; }
void KZylReaderCollada::SetMatrix(KZylNode* node, const KZylXMatrix* matrix) { node->SetGlobalState(*matrix); }
void KZylReaderCollada::RegisterAnimationTarget(const KString&, const KString&, int) {}

}  // namespace zylsdk

#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportController(xmlNode*) { return true; }
bool KZylReaderCollada::ImportVertexWeightsInController(xmlNode*, KArrayTemplate<KZylCluster*>&) { return true; }
bool KZylReaderCollada::ImportLinkMatricesInController(xmlNode*, KArrayTemplate<KZylCluster*>&) { return true; }

}  // namespace zylsdk

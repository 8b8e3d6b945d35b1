#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportGeometry(xmlNode*) { return true; }
bool KZylReaderCollada::ImportMesh(xmlNode*, KZylMesh*) { return true; }
bool KZylReaderCollada::ImportVertices(xmlNode*, KZylGeometry*) { return true; }

}  // namespace zylsdk

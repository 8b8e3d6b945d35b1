#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportPolygons(xmlNode*, KZylMesh&) { return true; }

}  // namespace zylsdk

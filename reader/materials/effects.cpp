#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportEffect(xmlNode*) { return true; }
bool KZylReaderCollada::ImportMaterial(xmlNode*) { return true; }

}  // namespace zylsdk

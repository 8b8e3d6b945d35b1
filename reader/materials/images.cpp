#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportImage(xmlNode*) { return true; }
bool KZylReaderCollada::ImportTexture(xmlNode*, KString, KZylLayerElement::ELayerElementType) { return true; }

}  // namespace zylsdk

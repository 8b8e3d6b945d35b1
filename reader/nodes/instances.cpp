#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportNodeAttribute(xmlNode*, KZylNode&, KZylNodeAttribute*) { return true; }
KArrayTemplate<KZylNode*> KZylReaderCollada::FindInstances(xmlNode*, KZylNode*, KString) { return {}; }
bool KZylReaderCollada::ImportLookAt(xmlNode*, KZylVector4&, KZylVector4&, KZylVector4&, KZylXMatrix&) { return false; }

}  // namespace zylsdk

#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportNode(xmlNode*, KZylNode&, KString) { return true; }

}  // namespace zylsdk

#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportAnimation(xmlNode*, KZylScene&) { return true; }

}  // namespace zylsdk

#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportLight(KZylScene&, xmlNode*) { return true; }

}  // namespace zylsdk

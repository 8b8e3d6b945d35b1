#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportCamera(xmlNode*) { return true; }

}  // namespace zylsdk

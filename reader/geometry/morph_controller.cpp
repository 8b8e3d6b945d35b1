#include "reader/collada_reader.h"

namespace zylsdk {

bool KZylReaderCollada::ImportTargetsInController(xmlNode*, KArrayTemplate<KString>&, KString&, KArrayTemplate<double>&) {
  return true;
}
bool KZylReaderCollada::ConnectShapes(KZylGeometry*, KString, const KArrayTemplate<KString>&, KString,
                                      const KArrayTemplate<double>&) {
  return true;
}

}  // namespace zylsdk

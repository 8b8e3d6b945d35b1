#include "reader/objects/parameters.h"

#include "reader/dom/dom.h"

namespace zylsdk {

void RegisterParameterTarget(KZylReaderCollada& reader, const KString& objectId, const DaeElement* parameter) {
  KString storage;
  const char* sid = DAE_PropertyText(parameter, "sid", storage);
  if (*sid) reader.RegisterAnimationTargets(objectId, sid, DAE_GetName(parameter), 0, 0);
}

}  // namespace zylsdk

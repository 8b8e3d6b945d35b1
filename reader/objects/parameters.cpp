#include "reader/objects/parameters.h"

#include "reader/dom/dom.h"

namespace zylsdk {

void RegisterParameterTarget(KZylReaderCollada& reader, const KString& objectId, const xmlNode* parameter) {
  if (!reader.RecordsAnimationTargets()) return;
  const KString sid = DAE_GetProperty(parameter, "sid");
  if (!sid.IsEmpty()) reader.RegisterAnimationTarget(objectId + "/" + sid, DAE_GetName(parameter), 0);
}

}  // namespace zylsdk

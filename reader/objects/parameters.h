#pragma once
// Animatable parameters of cameras and lights.

#include "reader/collada_import.h"
#include "reader/dom/dom.h"

namespace zylsdk {

// Registers a parameter element that has a "sid" as an animation target "<object id>/<sid>",
// with the element's name as its kind and axis 0. Parameters without sid are not animatable.
void RegisterParameterTarget(KZylReaderCollada& reader, const KString& objectId, const DaeElement* parameter);

}  // namespace zylsdk

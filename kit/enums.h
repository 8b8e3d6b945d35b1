#pragma once
// The kit's enumerations. Their numeric values are part of the kit's contract: the reader
// writes them and the dump shows them as numbers.

namespace zylsdk {

enum ERotationOrder { eEulerXYZ = 0, eEulerXZY = 1, eEulerYZX = 2, eEulerYXZ = 3, eEulerZXY = 4, eEulerZYX = 5 };

enum EPivotSet { eSourcePivot = 0, eDestinationPivot = 1 };

enum ETransformInheritType { eInheritRrSs = 0, eInheritRSrs = 1, eInheritRrs = 2 };

enum EShadingMode {
  eHardShading = 0,
  eWireFrame = 1,
  eFlatShading = 2,
  eLightShading = 3,
  eTextureShading = 4,
  eLightTextureShading = 5
};

// Property data types.
enum EZylType {
  eZylUndefined = 0,
  eZylBool = 1,
  eZylInteger = 2,
  eZylFloat = 3,
  eZylDouble = 4,
  eZylDouble3 = 5,
  eZylDouble4 = 6,
  eZylDouble44 = 7,
  eZylEnum = 8,
  eZylString = 9,
  eZylTime = 10
};
// Data type names used when creating properties: a colour property holds r, g, b.
constexpr EZylType DTColor3 = eZylDouble3;
constexpr EZylType DTDouble = eZylDouble;
constexpr EZylType DTString = eZylString;

}  // namespace zylsdk

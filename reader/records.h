#pragma once
// What the reader keeps between import steps, besides the kit objects it makes.

#include "kit/karray.h"
#include "kit/kmath.h"
#include "kit/kstring.h"
#include "kit/layer.h"

namespace zylsdk {

class KZylCluster;
class KZylPose;
class KZylTexture;

// An animatable value registered under "<node or object>/<sid>": the element kind
// ("translate", "rotate", "scale", or a camera or light parameter name) and an axis (0, 1, 2
// for X, Y, Z; -1 for a rotation about any other axis; 0 for parameters).
struct ChannelRecord {
  KString kind;
  int axis = 0;
};

// One `controller`: a skin (clusters and bind pose) or a morph (targets and weights).
struct ControllerRecord {
  KString id;
  KString source;  // the skin's or morph's "source" attribute as written ("#" + geometry id)
  KZylXMatrix bindShapeMatrix;
  KArrayTemplate<KZylCluster*> clusters;
  KZylPose* bindPose = nullptr;
  KArrayTemplate<KString> morphTargets;
  KString morphWeightSource;  // id of the MORPH_WEIGHT source
  KArrayTemplate<double> morphWeights;
};

// A texture made for one `texture` reference of an effect, with the layer that receives it.
struct TextureUse {
  KZylTexture* texture = nullptr;
  int layerIndex = 0;
  KZylLayerElement::ELayerElementType layerKind = KZylLayerElement::eDiffuseTextures;
};
using TextureUseArray = KArrayTemplate<TextureUse>;

// A shape added to an instanced geometry by a morph, for the morph-weight animations.
struct ShapeRecord {
  KString key;           // the morph's weight-source id
  KString name;          // the instancing node's name
  KString targetId;      // the target geometry's id
  int index = -1;        // the shape's index in the geometry
  int targetPosition = -1;  // the target's position among the morph's targets
};
using ShapeRecordList = KArrayTemplate<ShapeRecord>;

}  // namespace zylsdk

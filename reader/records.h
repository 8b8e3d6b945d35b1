#pragma once
// What the reader keeps between import steps, besides the kit objects it makes.

#include <vector>

#include "kit/karray.h"
#include "kit/kmath.h"
#include "kit/kstring.h"
#include "kit/layer.h"
#include "reader/dom/dom.h"

namespace zylsdk {

class KZylCluster;
class KZylNode;
class KZylPose;
class KZylTexture;

// An animatable value registered under "<node or object>/<sid>": the element kind
// ("translate", "rotate", "scale", or a camera or light parameter name) and an axis (0, 1, 2
// for X, Y, Z; -1 for a rotation about any other axis; 0 for parameters).
struct ChannelRecord {
  KString kind;
  int axis = 0;
};

// A `matrix` element of a node that animations may replace (complete reading), in the kit's
// row-vector convention: the node's local matrix is listedAfter * element * listedBefore, the
// products of the transform elements listed after and before it.
struct MatrixTarget {
  KZylXMatrix listedAfter;
  KZylXMatrix element;
  KZylXMatrix listedBefore;
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

// A skin that a node received from an `instance_controller`: the complete reading links its
// clusters to the joint nodes once the visual scene is built.
struct SkinInstance {
  KZylNode* node = nullptr;
  const DaeElement* instance = nullptr;  // the instance_controller, with its skeleton roots
  const ControllerRecord* controller = nullptr;
  std::vector<KZylCluster*> clusters;  // the node's copies, in the controller's joint order
  int poseIndex = -1;                  // its bind pose in the reader's bind pose array
};

// A texture made for one `texture` reference of an effect, with the layer that receives it.
struct TextureUse {
  KZylTexture* texture = nullptr;
  int layerIndex = 0;
  KZylLayerElement::ELayerElementType layerKind = KZylLayerElement::eDiffuseTextures;
  KString texcoord;  // the `texcoord` of the reference: the semantic that bind_vertex_input binds to a UV set
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

#pragma once
// The materials and textures a scene refers to: those connected to its nodes and those in the
// layer elements of the meshes (and their shapes) that its nodes hold, each once, in the order a
// depth-first walk of the nodes first meets them (a node's connections, then its attribute's
// layers). Each gets an id, 1, 2, 3... in that order.

#include <unordered_map>
#include <vector>

#include "kit/zylsdk.h"

namespace zyldae {

class SceneObjects {
 public:
  explicit SceneObjects(const zylsdk::KZylScene& scene);

  // The root followed by every node below it, depth first.
  static std::vector<zylsdk::KZylNode*> AllNodes(const zylsdk::KZylScene& scene);

  const std::vector<const zylsdk::KZylSurfaceMaterial*>& Materials() const { return mMaterials; }
  const std::vector<const zylsdk::KZylTexture*>& Textures() const { return mTextures; }
  // The id of a material or texture met in the walk; 0 for any other object.
  int Uid(const zylsdk::KZylObject* object) const;

 private:
  void MeetLayers(const zylsdk::KZylLayerContainer& container);
  template <class T>
  void Meet(const T* object, std::vector<const T*>& list);

  std::unordered_map<const zylsdk::KZylObject*, int> mUids;
  std::vector<const zylsdk::KZylSurfaceMaterial*> mMaterials;
  std::vector<const zylsdk::KZylTexture*> mTextures;
};

}  // namespace zyldae

#include "tools/zyldae/scene_objects.h"

namespace zyldae {

using namespace zylsdk;

SceneObjects::SceneObjects(const KZylScene& scene) {
  for (KZylNode* node : AllNodes(scene)) {
    for (int i = 0; i < node->GetSrcObjectCount(KZylSurfaceMaterial::ClassId); ++i)
      Meet(static_cast<const KZylSurfaceMaterial*>(node->GetSrcObject(KZylSurfaceMaterial::ClassId, i)), mMaterials);
    if (const KZylGeometry* geometry = node->GetGeometry()) {
      MeetLayers(*geometry);
      for (int i = 0; i < geometry->GetShapeCount(); ++i)
        if (const KZylShape* shape = geometry->GetShape(i)) MeetLayers(*shape);
    }
  }
}

std::vector<KZylNode*> SceneObjects::AllNodes(const KZylScene& scene) {
  std::vector<KZylNode*> nodes;
  if (scene.GetRootNode()) nodes.push_back(scene.GetRootNode());
  std::vector<KZylNode*> below = scene.GetNodes();
  nodes.insert(nodes.end(), below.begin(), below.end());
  return nodes;
}

int SceneObjects::Uid(const KZylObject* object) const {
  auto found = mUids.find(object);
  return found == mUids.end() ? 0 : found->second;
}

void SceneObjects::MeetLayers(const KZylLayerContainer& container) {
  for (int i = 0; i < container.GetLayerCount(); ++i) {
    const KZylLayer* layer = container.GetLayer(i);
    if (const KZylLayerElementMaterial* materials = layer->GetMaterials())
      for (const KZylSurfaceMaterial* material : materials->GetDirectArray()) Meet(material, mMaterials);
    for (auto channel : layer->GetTextureChannels()) {
      const KZylLayerElementTexture* textures = layer->GetTextures(channel);
      for (const KZylTexture* texture : textures->GetDirectArray()) Meet(texture, mTextures);
    }
  }
}

template <class T>
void SceneObjects::Meet(const T* object, std::vector<const T*>& list) {
  if (!object || mUids.count(object)) return;
  list.push_back(object);
  mUids.emplace(object, static_cast<int>(list.size()));
}

}  // namespace zyldae

#pragma once
// The material and textures of each `polygons` / `triangles` element of a mesh: a placeholder
// material per element that names one (material binding on a node replaces it later), and the
// textures the material's effect holds, placed on the mesh's texture layer elements.

#include <unordered_map>

#include "kit/zylsdk.h"
#include "reader/id_list.h"
#include "reader/records.h"

namespace zylsdk {

class PolygonMaterials {
 public:
  // `elementCount`: the number of primitive elements of the mesh. Without `placeTextures` the
  // textures are left to material binding (the complete reading places them there).
  PolygonMaterials(KZylMesh& mesh, const IdList<TextureUseArray>& textures, int elementCount, bool placeTextures);

  struct Indices {
    int material = -1;
    int texture = -1;
  };
  // Gives element `ordinal` its material named `materialName` (none when empty) and places its
  // textures; returns the indices its polygons carry.
  Indices Assign(const KString& materialName, int ordinal);
  // Gives a material element mapped by polygon one index per polygon, the polygon's material
  // (once every element is read).
  void IndexEveryPolygon();

 private:
  KZylLayerElementMaterial& MaterialElement();
  // Puts the texture of `use` in its layer's texture element and returns its index there.
  int PlaceTexture(const TextureUse& use, int ordinal);
  // Position of the first texture named `name` in the element, or -1; remembered by name so
  // that an element is never scanned twice.
  int FindTexture(KZylLayerElementTexture& element, const KString& name);

  KZylMesh& mMesh;
  const IdList<TextureUseArray>& mTextures;
  int mElementCount;
  bool mPlaceTextures;
  std::unordered_map<const KZylLayerElementTexture*, std::unordered_map<KString, int>> mTexturePositions;
};

}  // namespace zylsdk

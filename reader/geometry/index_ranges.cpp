#include "reader/geometry/index_ranges.h"

#include "kit/layer.h"

namespace zylsdk {

int ClearIndicesOutsideArrays(KZylMesh& mesh) {
  int cleared = mesh.ClearVerticesOutsideControlPoints();
  for (int i = 0; i < mesh.GetLayerCount(); ++i) {
    KZylLayer* layer = mesh.GetLayer(i);
    if (KZylLayerElementNormal* normals = layer->GetNormals()) cleared += normals->ClearIndicesOutsideDirectArray();
    if (KZylLayerElementVertexColor* colors = layer->GetVertexColors())
      cleared += colors->ClearIndicesOutsideDirectArray();
    if (KZylLayerElementMaterial* materials = layer->GetMaterials())
      cleared += materials->ClearIndicesOutsideDirectArray();
    for (auto channel : layer->GetUVChannels()) cleared += layer->GetUVs(channel)->ClearIndicesOutsideDirectArray();
    for (auto channel : layer->GetTextureChannels())
      cleared += layer->GetTextures(channel)->ClearIndicesOutsideDirectArray();
  }
  return cleared;
}

}  // namespace zylsdk

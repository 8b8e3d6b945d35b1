#pragma once
// Library objects made directly with the kit, as the geometry and controller imports would make
// them, for tests of the node import that need meshes, skins and materials.

#include <string>
#include <vector>

#include "kit/zylsdk.h"

namespace zyltest {

// A mesh with three control points (normals by control point), one triangle, and in layer 0 a
// material element whose direct array holds one placeholder material per slot name.
inline zylsdk::KZylMesh* MakeLibraryMesh(zylsdk::KZylSdkManager& manager, const std::vector<std::string>& slots) {
  using namespace zylsdk;
  KZylMesh* mesh = KZylMesh::Create(&manager, "");
  mesh->InitControlPointArray(3);
  mesh->InitNormals(3);
  for (int i = 0; i < 3; ++i)
    mesh->SetControlPointAndNormal(KZylVector4(i, i * 2.0, 0.0, 1.0), KZylVector4(0.0, 0.0, 1.0), i);
  mesh->BeginPolygon(0, -1, 7);
  for (int i = 0; i < 3; ++i) mesh->AddPolygon(i);
  mesh->EndPolygon();
  KZylLayerElementMaterial* materials = manager.CreateKZylLayerElementMaterial("");
  materials->SetMappingMode(KZylLayerElement::eAllSame);
  for (const std::string& slot : slots) materials->GetDirectArray().Add(KZylSurfaceMaterial::Create(&manager, slot.c_str()));
  mesh->GetLayer(0)->SetMaterials(materials);
  return mesh;
}

}  // namespace zyltest

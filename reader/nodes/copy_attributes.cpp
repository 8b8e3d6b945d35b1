// Copies of library objects: every node that instances a geometry, camera, light or skin gets
// an independent object filled from the library one.

#include "reader/collada_import.h"

namespace zylsdk {
namespace {

// Control points with their normals (layer 0's normal array, read by control-point index).
// The points are shared with the source until one of them changes.
void CopyControlPoints(KZylGeometryBase& destination, const KZylGeometryBase& source) {
  const int count = source.GetControlPointsCount();
  destination.GetControlPoints() = source.GetControlPoints();
  destination.InitNormals(count);
  const KZylLayerElementNormal* normals = source.GetNormals();
  if (!normals) return;
  KArrayTemplate<KZylVector4>& copied = destination.GetNormals()->GetDirectArray();
  const KArrayTemplate<KZylVector4>& original = normals->GetDirectArray();
  if (original.GetCount() == count) {
    copied = original;
    return;
  }
  for (int i = 0; i < count; ++i) copied[i] = original.GetAt(i);
}

void CopyLayers(KZylMesh& destination, const KZylMesh& source, KZylSdkManager* manager) {
  for (int i = 0; i < source.GetLayerCount(); ++i) {
    while (destination.GetLayerCount() <= i) destination.CreateLayer();
    destination.GetLayer(i)->Clone(*source.GetLayer(i), manager);
  }
}

}  // namespace

void KZylReaderCollada::CopyMesh(KZylMesh* destination, KZylMesh* source) {
  if (!source) return;
  if (source->GetLayerCount() > 0) {
    // The layers' copies below replace layer 0 and its normals: only the points are needed.
    destination->GetControlPoints() = source->GetControlPoints();
  } else {
    CopyControlPoints(*destination, *source);
  }
  destination->CopyPolygonsFrom(*source);
  CopyLayers(*destination, *source, mManager);

  for (int i = 0; i < source->GetShapeCount(); ++i) {
    KZylShape* shape = KZylShape::Create(mManager, "");
    CopyShape(shape, source->GetShape(i));
    const KString name = source->GetShapeName(i);
    if (destination->AddShape(shape, name) == -1) AddNotificationWarning("Could not add shape " + name + " to mesh.");
    // The property named after the shape holds its morph weight.
    const KZylProperty weight = source->FindProperty(name, true);
    if (!weight.IsValid()) continue;
    KZylProperty copy = destination->FindProperty(name, true);
    if (copy.IsValid()) copy.Set(weight.GetDouble());
  }

  for (int d = 0; d < source->GetDeformerCount(KZylDeformer::eSkin); ++d) {
    const KZylSkin* sourceSkin = static_cast<const KZylSkin*>(source->GetDeformer(d, KZylDeformer::eSkin));
    KZylSkin* skin = KZylSkin::Create(mManager, "");
    destination->AddDeformer(skin);
    for (int c = 0; c < sourceSkin->GetClusterCount(); ++c) {
      KZylCluster* cluster = CreateCluster();
      CopyLink(cluster, sourceSkin->GetCluster(c));
      skin->AddCluster(cluster);
    }
  }
}

void KZylReaderCollada::CopyShape(KZylShape* destination, KZylGeometryBase* source) {
  if (source) CopyControlPoints(*destination, *source);
}

void KZylReaderCollada::CopyCamera(KZylCamera* destination, KZylCamera* source) {
  if (!source) return;
  destination->SetProjectionType(source->GetProjectionType());
  destination->SetDefaultCameraInterestPosition(source->GetDefaultCameraInterestPosition());
  destination->SetSpecificDistance(source->GetSpecificDistance());
  destination->SetApertureHeight(source->GetApertureHeight());
  destination->SetApertureWidth(source->GetApertureWidth());
  destination->SetSqueezeRatio(source->GetSqueezeRatio());
  destination->SetAspect(source->GetAspectRatioMode(), source->GetAspectWidth(), source->GetAspectHeight());
  destination->SetNearPlane(source->GetNearPlane());
  destination->SetFarPlane(source->GetFarPlane());
  destination->SetApertureMode(source->GetApertureMode());
  destination->SetApertureFormat(source->GetApertureFormat());
  destination->SetDefaultFieldOfView(source->GetDefaultFieldOfView());
  destination->SetFormat(source->GetFormat());
  destination->SetOrthoZoom(source->GetOrthoZoom());
  destination->SetPosition(source->GetPosition());
  destination->SetUpVector(source->GetUpVector());
  destination->SetFocusDistanceSource(source->GetFocusDistanceSource());
}

void KZylReaderCollada::CopyLight(KZylLight* destination, KZylLight* source) {
  if (!source) return;
  destination->SetLightType(source->GetLightType());
  destination->SetDefaultColor(source->GetDefaultColor());
  destination->SetDefaultIntensity(source->GetDefaultIntensity());
  destination->SetDefaultConeAngle(source->GetDefaultConeAngle());
  destination->SetDefaultFog(source->GetDefaultFog());
}

// A null carries nothing of its own.
void KZylReaderCollada::CopyNull(KZylNull*, KZylNull*) {}

void KZylReaderCollada::CopySkeleton(KZylSkeleton* destination, KZylSkeleton* source) {
  if (source) destination->SetSkeletonType(source->GetSkeletonType());
}

void KZylReaderCollada::CopyLink(KZylCluster* destination, KZylCluster* source) {
  if (!source) return;
  // The same indices and weights, in the same order (a cluster always has as many of each).
  destination->CopyControlPointsFrom(*source);
  destination->SetTransformMatrix(source->GetTransformMatrix());
  destination->SetTransformLinkMatrix(source->GetTransformLinkMatrix());
  destination->SetLinkMode(source->GetLinkMode());
  destination->SetLink(source->GetLink());
}

KZylCluster* KZylReaderCollada::CreateCluster() {
  KZylCluster* cluster = KZylCluster::Create(mManager, "");
  mState->clusters.push_back(cluster);
  return cluster;
}

}  // namespace zylsdk

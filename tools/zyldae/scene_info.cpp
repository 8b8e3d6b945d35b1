#include "tools/zyldae/scene_info.h"

#include "tools/zyldae/scene_objects.h"

#include <sstream>
#include <string>
#include <vector>

namespace zyldae {

using namespace zylsdk;

namespace {

const char* const kLightTypes[] = {"point", "directional", "spot"};
const char* const kCurveNames[KZylTakeNode::eChannelCount] = {
    "T.X", "T.Y", "T.Z", "R.X", "R.Y", "R.Z", "S.X", "S.Y", "S.Z",
    "Color.R", "Color.G", "Color.B", "Intensity", "ConeAngle", "FieldOfView"};

std::string Quoted(const KString& name) { return name.IsEmpty() ? std::string("(no name)") : name.Std(); }

std::string MeshSummary(const KZylMesh& mesh) {
  std::ostringstream text;
  text << "mesh: " << mesh.GetControlPointsCount() << " control points, " << mesh.GetPolygonCount() << " polygons, "
       << mesh.GetLayerCount() << (mesh.GetLayerCount() == 1 ? " layer" : " layers");
  for (int d = 0; d < mesh.GetDeformerCount(KZylDeformer::eSkin); ++d)
    text << ", skin of " << static_cast<KZylSkin*>(mesh.GetDeformer(d, KZylDeformer::eSkin))->GetClusterCount()
         << " clusters";
  if (mesh.GetShapeCount() > 0) {
    text << ", shapes";
    for (int s = 0; s < mesh.GetShapeCount(); ++s) text << (s ? ", " : " ") << mesh.GetShapeName(s).Std();
  }
  return text.str();
}

std::string AttributeSummary(const KZylNodeAttribute* attribute) {
  if (!attribute) return "no attribute";
  if (attribute->Is(KZylMesh::ClassId)) return MeshSummary(static_cast<const KZylMesh&>(*attribute));
  if (attribute->Is(KZylCamera::ClassId)) {
    const KZylCamera& camera = static_cast<const KZylCamera&>(*attribute);
    std::ostringstream text;
    text << "camera: " << (camera.GetProjectionType() == KZylCamera::ePerspective ? "perspective" : "orthographic")
         << ", field of view " << camera.GetDefaultFieldOfView();
    return text.str();
  }
  if (attribute->Is(KZylLight::ClassId)) {
    const KZylLight& light = static_cast<const KZylLight&>(*attribute);
    int type = light.GetLightType();
    std::ostringstream text;
    text << "light: " << ((type >= 0 && type < 3) ? kLightTypes[type] : "unknown") << ", intensity "
         << light.GetDefaultIntensity();
    return text.str();
  }
  if (attribute->Is(KZylSkeleton::ClassId)) return "skeleton";
  if (attribute->Is(KZylNull::ClassId)) return "null";
  return "other attribute";
}

std::string AnimatedChannels(const KZylNode& node) {
  std::string channels;
  for (int i = 0; i < node.GetTakeNodeCount(); ++i) {
    const KZylTakeNode* take = node.GetTakeNode(i);
    for (int c = 0; c < KZylTakeNode::eChannelCount; ++c) {
      const KFCurve* curve = take->FindCurve(static_cast<KZylTakeNode::EChannel>(c));
      if (curve && curve->KeyGetCount() > 0)
        channels += std::string(" ") + kCurveNames[c] + "(" + std::to_string(curve->KeyGetCount()) + ")";
    }
    if (const KZylGeometry* geometry = node.GetGeometry())
      for (int s = 0; s < geometry->GetShapeCount(); ++s) {
        const KFCurve* curve = take->FindShapeChannel(geometry, s);
        if (curve && curve->KeyGetCount() > 0)
          channels += " Shape." + std::to_string(s) + "(" + std::to_string(curve->KeyGetCount()) + ")";
      }
  }
  return channels.empty() ? channels : "  animated:" + channels;
}

void PrintTree(std::ostream& out, const KZylNode& root) {
  // Depth first with an explicit stack, so that deep hierarchies print too.
  std::vector<std::pair<const KZylNode*, int>> pending;
  for (int i = root.GetChildCount() - 1; i >= 0; --i) pending.push_back({root.GetChild(i), 1});
  while (!pending.empty()) {
    auto [node, depth] = pending.back();
    pending.pop_back();
    out << std::string(static_cast<size_t>(depth) * 2, ' ') << Quoted(node->GetName()) << "  ["
        << AttributeSummary(node->GetNodeAttribute()) << "]" << AnimatedChannels(*node) << '\n';
    for (int i = node->GetChildCount() - 1; i >= 0; --i) pending.push_back({node->GetChild(i), depth + 1});
  }
}

}  // namespace

void PrintInfo(std::ostream& out, const ReadResult& read, const KString& file) {
  out << "File: " << file.Std() << '\n';
  out << "Read: " << (read.ok ? "ok" : "failed") << '\n';
  if (!read.notifications.empty()) {
    out << "Notifications:\n";
    for (const auto& detail : read.notifications) {
      std::string text = detail.text.Std();
      while (!text.empty() && text.back() == '\n') text.pop_back();
      out << "  " << text << '\n';
    }
  }
  const KZylScene& scene = *read.scene;
  const KZylAxisSystem& axes = scene.GetGlobalSettings().GetAxisSystem();
  out << "Axis system: up " << axes.GetUpVector() << ", front " << axes.GetFrontVector() << ", coordinates "
      << axes.GetCoorSystem() << "; unit " << scene.GetGlobalSettings().GetSystemUnit().GetScaleFactor() << " cm\n";
  if (const KZylSceneInfo* info = scene.GetSceneInfo()) {
    if (!info->mAuthor.IsEmpty()) out << "Author: " << info->mAuthor.Std() << '\n';
    if (!info->mTitle.IsEmpty()) out << "Title: " << info->mTitle.Std() << '\n';
  }
  out << "Nodes:\n";
  if (scene.GetRootNode()) PrintTree(out, *scene.GetRootNode());
  const SceneObjects objects(scene);
  if (!objects.Materials().empty()) {
    out << "Materials:\n";
    for (const KZylSurfaceMaterial* material : objects.Materials())
      out << "  " << Quoted(material->GetName()) << " (" << material->GetShadingModel().GetString().Std() << ")\n";
  }
  if (!objects.Textures().empty()) {
    out << "Textures:\n";
    for (const KZylTexture* texture : objects.Textures())
      out << "  " << Quoted(texture->GetName()) << ": " << texture->GetFileName().Std() << '\n';
  }
  if (scene.GetPoseCount() > 0) {
    out << "Poses:\n";
    for (int i = 0; i < scene.GetPoseCount(); ++i) {
      const KZylPose* pose = scene.GetPose(i);
      out << "  " << Quoted(pose->GetName()) << (pose->IsBindPose() ? " (bind pose, " : " (") << pose->GetCount()
          << " nodes)\n";
    }
  }
  for (int i = 0; i < scene.GetTakeCount(); ++i) {
    const KZylTakeInfo* take = scene.GetTakeInfo(i);
    out << "Take: " << take->mName.Std() << ", " << take->mLocalTimeSpan.GetStart().GetSecondDouble() << " s to "
        << take->mLocalTimeSpan.GetStop().GetSecondDouble() << " s"
        << (take->mName == scene.GetCurrentTakeName() ? " (current)" : "") << '\n';
  }
}

}  // namespace zyldae

#include "tools/zyldae/scene_info.h"

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "tools/zyldae/scene_bounds.h"
#include "tools/zyldae/scene_objects.h"
#include "tools/zyldae/scene_stats.h"

namespace zyldae {

using namespace zylsdk;

namespace {

const char* const kLightTypes[] = {"point", "directional", "spot"};
const char* const kCurveNames[KZylTakeNode::eChannelCount] = {
    "T.X", "T.Y", "T.Z", "R.X", "R.Y", "R.Z", "S.X", "S.Y", "S.Z",
    "Color.R", "Color.G", "Color.B", "Intensity", "ConeAngle", "FieldOfView"};

// Lengths with a name of their own, in centimetres.
struct NamedUnit {
  const char* name;
  double centimetres;
};
const NamedUnit kNamedUnits[] = {{"millimetre", 0.1}, {"centimetre", 1},   {"inch", 2.54},
                                 {"foot", 30.48},     {"yard", 91.44},     {"metre", 100},
                                 {"kilometre", 100000}, {"mile", 160934.4}};

// "3 polygons", "1 polygon".
std::string Counted(int count, const char* singular, const char* plural) {
  return std::to_string(count) + " " + (count == 1 ? singular : plural);
}

std::string Number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

// "Z up, -Y front, right-handed". The front axis is one of the two axes other than the up
// axis: the first of them for even parity, the second for odd; a negative front points the
// other way.
std::string AxesLine(const KZylAxisSystem& axes) {
  const char* const names = "XYZ";
  int up = std::abs(axes.GetUpVector());
  int front = std::abs(axes.GetFrontVector());
  if (up < 1 || up > 3 || front < 1 || front > 2)
    return "up " + std::to_string(axes.GetUpVector()) + ", front " + std::to_string(axes.GetFrontVector());
  int others[2];
  for (int axis = 1, next = 0; axis <= 3; ++axis)
    if (axis != up) others[next++] = axis;
  std::string text;
  if (axes.GetUpVector() < 0) text += '-';
  text += std::string(1, names[up - 1]) + " up, ";
  if (axes.GetFrontVector() < 0) text += '-';
  text += std::string(1, names[others[front - 1] - 1]) + " front, ";
  text += axes.GetCoorSystem() == KZylAxisSystem::eLeftHanded ? "left-handed" : "right-handed";
  return text;
}

// "1 inch = 2.54 cm"; a length without a name of its own is "1 unit".
std::string UnitLine(double centimetres) {
  std::string name = "unit";
  for (const NamedUnit& unit : kNamedUnits)
    if (std::fabs(centimetres - unit.centimetres) <= 1e-9 * unit.centimetres) name = unit.name;
  return "1 " + name + " = " + Number(centimetres) + " cm";
}

std::string TotalsLine(const SceneStats& stats) {
  return Counted(stats.nodes, "node", "nodes") + ", " + Counted(stats.meshes, "mesh", "meshes") + ", " +
         Counted(stats.polygons, "polygon", "polygons") + ", " + Counted(stats.triangles, "triangle", "triangles") +
         ", " + Counted(stats.materials, "material", "materials") + ", " +
         Counted(stats.textures, "texture", "textures") + ", " + Counted(stats.skins, "skin", "skins") + ", " +
         Counted(stats.shapes, "shape", "shapes") + ", " + Counted(stats.curves, "curve", "curves");
}

std::string BoundsLine(const Bounds& bounds) {
  if (bounds.empty) return "none (no mesh has a point)";
  auto point = [](const double* xyz) {
    return "(" + Number(xyz[0]) + ", " + Number(xyz[1]) + ", " + Number(xyz[2]) + ")";
  };
  return point(bounds.min) + " to " + point(bounds.max);
}

std::string Quoted(const KString& name) { return name.IsEmpty() ? std::string("(no name)") : name.Std(); }

std::string MeshSummary(const KZylMesh& mesh) {
  std::ostringstream text;
  text << "mesh: " << Counted(mesh.GetControlPointsCount(), "control point", "control points") << ", "
       << Counted(mesh.GetPolygonCount(), "polygon", "polygons") << ", "
       << Counted(mesh.GetLayerCount(), "layer", "layers");
  for (int d = 0; d < mesh.GetDeformerCount(KZylDeformer::eSkin); ++d)
    text << ", skin of "
         << Counted(static_cast<KZylSkin*>(mesh.GetDeformer(d, KZylDeformer::eSkin))->GetClusterCount(), "cluster",
                    "clusters");
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
    // As compilers write them, so that editors can jump to the line: "file:line: text".
    out << "Notifications:\n";
    for (const auto& detail : read.notifications) {
      std::string text = detail.text.Std();
      while (!text.empty() && text.back() == '\n') text.pop_back();
      out << file.Std() << ':';
      if (detail.location.line > 0) out << detail.location.line << ':';
      out << ' ' << text << '\n';
    }
  }
  const KZylScene& scene = *read.scene;
  const KZylAxisSystem& axes = scene.GetGlobalSettings().GetAxisSystem();
  out << "Axes: " << AxesLine(axes) << '\n';
  out << "Unit: " << UnitLine(scene.GetGlobalSettings().GetSystemUnit().GetScaleFactor()) << '\n';
  if (const KZylSceneInfo* info = scene.GetSceneInfo()) {
    if (!info->mAuthor.IsEmpty()) out << "Author: " << info->mAuthor.Std() << '\n';
    if (!info->mTitle.IsEmpty()) out << "Title: " << info->mTitle.Std() << '\n';
  }
  const SceneStats stats = ComputeStats(scene);
  out << "Totals: " << TotalsLine(stats) << '\n';
  for (const auto& [what, count] : read.leftUnread)
    out << count << ' ' << what.Std() << " not read: use --complete\n";
  out << "Bounding box (world): " << BoundsLine(ComputeBounds(scene)) << '\n';
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
      out << "  " << Quoted(pose->GetName()) << (pose->IsBindPose() ? " (bind pose, " : " (")
          << Counted(pose->GetCount(), "node", "nodes") << ")\n";
    }
  }
  for (int i = 0; i < scene.GetTakeCount(); ++i) {
    const KZylTakeInfo* take = scene.GetTakeInfo(i);
    out << "Take: " << take->mName.Std() << (take->mName == scene.GetCurrentTakeName() ? " (current)" : "") << ", ";
    if (stats.curves == 0)
      out << "no animation\n";
    else
      out << take->mLocalTimeSpan.GetStart().GetSecondDouble() << " s to "
          << take->mLocalTimeSpan.GetStop().GetSecondDouble() << " s\n";
  }
}

}  // namespace zyldae

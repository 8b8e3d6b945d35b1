#include "tools/zyldae/scene_dump.h"

#include "tools/zyldae/scene_objects.h"

#include <unordered_map>
#include <unordered_set>

namespace zyldae {

using namespace zylsdk;

namespace {

Json Text(const KString& text) { return text.Std(); }

Json Vector(const KZylVector4& v) { return Json::array({Number(v[0]), Number(v[1]), Number(v[2]), Number(v[3])}); }
Json Vector(const KZylVector2& v) { return Json::array({Number(v[0]), Number(v[1])}); }
Json Color(const KZylColor& c) { return Json::array({Number(c.mRed), Number(c.mGreen), Number(c.mBlue), Number(c.mAlpha)}); }
Json Matrix(const KZylMatrix& m) {
  Json values = Json::array();
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) values.push_back(Number(m.mData[r][c]));
  return values;
}
Json Ticks(KTime time) { return time.Get(); }

const char* AttributeTypeName(int type) {
  static const char* const kNames[] = {"unidentified", "null", "marker", "skeleton", "mesh",
                                       "nurb", "patch", "camera", "cameraSwitcher", "light"};
  return (type >= 0 && type < 10) ? kNames[type] : "unidentified";
}

const char* const kCurveNames[KZylTakeNode::eChannelCount] = {
    "T.X", "T.Y", "T.Z", "R.X", "R.Y", "R.Z", "S.X", "S.Y", "S.Z",
    "Color.R", "Color.G", "Color.B", "Intensity", "ConeAngle", "FieldOfView"};

class SceneDumper {
 public:
  SceneDumper(const KZylScene& scene, bool brief) : mScene(scene), mBrief(brief), mIds(scene) {
    for (KZylNode* node : SceneObjects::AllNodes(scene)) mSceneNodes.insert(node);
  }

  Json Dump() {
    Json json;
    const KZylAxisSystem& axes = mScene.GetGlobalSettings().GetAxisSystem();
    json["axisSystem"] = {{"up", axes.GetUpVector()}, {"front", axes.GetFrontVector()}, {"coordSystem", axes.GetCoorSystem()}};
    json["systemUnit"] = Number(mScene.GetGlobalSettings().GetSystemUnit().GetScaleFactor());
    json["ambientColor"] = Color(mScene.GetGlobalLightSettings().GetAmbientColor());
    json["sceneInfo"] = SceneInfo(mScene.GetSceneInfo());
    json["currentTake"] = Text(mScene.GetCurrentTakeName());
    json["takes"] = Json::array();
    for (int i = 0; i < mScene.GetTakeCount(); ++i) json["takes"].push_back(Take(*mScene.GetTakeInfo(i)));
    json["root"] = mScene.GetRootNode() ? Node(*mScene.GetRootNode(), KZylXMatrix()) : Json(nullptr);
    json["poses"] = Json::array();
    for (int i = 0; i < mScene.GetPoseCount(); ++i) json["poses"].push_back(Pose(*mScene.GetPose(i)));
    json["materials"] = Json::array();
    for (const KZylSurfaceMaterial* material : mIds.Materials()) json["materials"].push_back(Material(*material));
    json["textures"] = Json::array();
    for (const KZylTexture* texture : mIds.Textures()) json["textures"].push_back(Texture(*texture));
    return json;
  }

 private:
  static Json SceneInfo(const KZylSceneInfo* info) {
    if (!info) return nullptr;
    return {{"author", Text(info->mAuthor)},     {"title", Text(info->mTitle)},
            {"subject", Text(info->mSubject)},   {"keywords", Text(info->mKeywords)},
            {"revision", Text(info->mRevision)}, {"comment", Text(info->mComment)}};
  }

  static Json Span(const KTimeSpan& span) {
    return {{"start", Number(span.GetStart().GetSecondDouble())},
            {"stop", Number(span.GetStop().GetSecondDouble())},
            {"startTicks", Ticks(span.GetStart())},
            {"stopTicks", Ticks(span.GetStop())}};
  }

  static Json Take(const KZylTakeInfo& take) {
    return {{"name", Text(take.mName)},
            {"localTimeSpan", Span(take.mLocalTimeSpan)},
            {"referenceTimeSpan", Span(take.mReferenceTimeSpan)}};
  }

  // `parentGlobal` is the parent's global matrix, passed down so that deep hierarchies cost
  // one matrix product per node.
  Json Node(const KZylNode& node, const KZylXMatrix& parentGlobal) {
    KZylXMatrix global = node.GetLocalFromDefaultTake(eSourcePivot);
    if (node.GetParent()) global = global * parentGlobal;
    Json json;
    json["name"] = Text(node.GetName());
    json["inheritType"] = static_cast<int>(node.GetTransformationInheritType());
    json["rotationOrder"] = static_cast<int>(node.GetRotationOrder(eSourcePivot));
    json["rotationActive"] = node.GetRotationActive(eSourcePivot);
    json["shadingMode"] = static_cast<int>(node.GetShadingMode());
    json["translation"] = Vector(node.GetDefaultT());
    json["rotation"] = Vector(node.GetDefaultR());
    json["scaling"] = Vector(node.GetDefaultS());
    json["preRotation"] = Vector(node.GetPreRotation(eSourcePivot));
    json["postRotation"] = Vector(node.GetPostRotation(eSourcePivot));
    json["rotationPivot"] = Vector(node.GetRotationPivot(eSourcePivot));
    json["scalingPivot"] = Vector(node.GetScalingPivot(eSourcePivot));
    json["rotationOffset"] = Vector(node.GetRotationOffset(eSourcePivot));
    json["scalingOffset"] = Vector(node.GetScalingOffset(eSourcePivot));
    json["globalMatrix"] = Matrix(global);
    json["materials"] = Json::array();
    for (int i = 0; i < node.GetSrcObjectCount(KZylSurfaceMaterial::ClassId); ++i)
      json["materials"].push_back(UidOf(node.GetSrcObject(KZylSurfaceMaterial::ClassId, i)));
    json["attribute"] = Attribute(node.GetNodeAttribute());
    json["takes"] = Takes(node);
    json["children"] = Json::array();
    for (int i = 0; i < node.GetChildCount(); ++i) json["children"].push_back(Node(*node.GetChild(i), global));
    return json;
  }

  Json Takes(const KZylNode& node) {
    Json takes = Json::object();
    const KZylGeometry* geometry = node.GetGeometry();
    for (int i = 0; i < node.GetTakeNodeCount(); ++i) {
      const KZylTakeNode* take = node.GetTakeNode(i);
      Json curves = Json::object();
      for (int c = 0; c < KZylTakeNode::eChannelCount; ++c) {
        const KFCurve* curve = take->FindCurve(static_cast<KZylTakeNode::EChannel>(c));
        if (curve && curve->KeyGetCount() > 0) curves[kCurveNames[c]] = Curve(*curve);
      }
      if (geometry) {
        for (int s = 0; s < geometry->GetShapeCount(); ++s) {
          const KFCurve* curve = take->FindShapeChannel(geometry, s);
          if (curve && curve->KeyGetCount() > 0) curves["Shape." + std::to_string(s)] = Curve(*curve);
        }
      }
      takes[take->GetName().Std()] = curves;
    }
    return takes;
  }

  Json Curve(const KFCurve& curve) {
    Json json;
    json["keyCount"] = curve.KeyGetCount();
    if (mBrief) return json;
    json["keys"] = Json::array();
    for (int k = 0; k < curve.KeyGetCount(); ++k) {
      const KFCurveKey& key = curve.KeyGet(k);
      json["keys"].push_back({{"time", Number(key.time.GetSecondDouble())},
                              {"value", Number(key.value)},
                              {"interpolation", key.interpolation},
                              {"tangentMode", key.tangentMode},
                              {"leftDerivative", Number(key.leftDerivative)},
                              {"rightDerivative", Number(key.rightDerivative)},
                              {"leftWeight", Number(key.leftWeight)},
                              {"rightWeight", Number(key.rightWeight)},
                              {"break", key.isBreak}});
    }
    return json;
  }

  Json Attribute(const KZylNodeAttribute* attribute) {
    if (!attribute) return nullptr;
    int type = attribute->GetAttributeType();
    Json json;
    json["type"] = AttributeTypeName(type);
    json["typeId"] = type;
    json["name"] = Text(attribute->GetName());
    if (attribute->Is(KZylSkeleton::ClassId)) {
      json["skeletonType"] = static_cast<int>(static_cast<const KZylSkeleton*>(attribute)->GetSkeletonType());
    } else if (attribute->Is(KZylCamera::ClassId)) {
      Camera(static_cast<const KZylCamera&>(*attribute), json);
    } else if (attribute->Is(KZylLight::ClassId)) {
      const KZylLight& light = static_cast<const KZylLight&>(*attribute);
      json["lightType"] = static_cast<int>(light.GetLightType());
      json["color"] = Color(light.GetDefaultColor());
      json["intensity"] = Number(light.GetDefaultIntensity());
      json["coneAngle"] = Number(light.GetDefaultConeAngle());
      json["fog"] = Number(light.GetDefaultFog());
    } else if (attribute->Is(KZylMesh::ClassId)) {
      Mesh(static_cast<const KZylMesh&>(*attribute), json);
    }
    return json;
  }

  static void Camera(const KZylCamera& camera, Json& json) {
    json["projection"] = static_cast<int>(camera.GetProjectionType());
    json["fieldOfView"] = Number(camera.GetDefaultFieldOfView());
    json["apertureMode"] = static_cast<int>(camera.GetApertureMode());
    json["aspect"] = {{"mode", static_cast<int>(camera.GetAspectRatioMode())},
                      {"width", Number(camera.GetAspectWidth())},
                      {"height", Number(camera.GetAspectHeight())}};
    json["nearPlane"] = Number(camera.GetNearPlane());
    json["farPlane"] = Number(camera.GetFarPlane());
    json["orthoZoom"] = Number(camera.GetOrthoZoom());
    json["position"] = Vector(camera.GetPosition());
    json["interestPosition"] = Vector(camera.GetDefaultCameraInterestPosition());
    json["upVector"] = Vector(camera.GetUpVector());
    json["focusDistanceSource"] = static_cast<int>(camera.GetFocusDistanceSource());
    json["specificDistance"] = Number(camera.GetSpecificDistance());
    json["apertureWidth"] = Number(camera.GetApertureWidth());
    json["apertureHeight"] = Number(camera.GetApertureHeight());
    json["squeezeRatio"] = Number(camera.GetSqueezeRatio());
    json["apertureFormat"] = camera.GetApertureFormat();
    json["format"] = camera.GetFormat();
  }

  Json ControlPoints(const KZylGeometryBase& geometry) {
    Json points = Json::array();
    for (const KZylVector4& point : geometry.GetControlPoints()) points.push_back(Vector(point));
    return points;
  }

  void Mesh(const KZylMesh& mesh, Json& json) {
    json["controlPointCount"] = mesh.GetControlPointsCount();
    json["polygonCount"] = mesh.GetPolygonCount();
    json["polygonVertexCount"] = mesh.GetPolygonVertexCount();
    if (!mBrief) {
      json["controlPoints"] = ControlPoints(mesh);
      Json polygons = Json::array();
      for (int p = 0; p < mesh.GetPolygonCount(); ++p) {
        Json vertices = Json::array();
        for (int v = 0; v < mesh.GetPolygonSize(p); ++v) vertices.push_back(mesh.GetPolygonVertex(p, v));
        polygons.push_back({{"vertices", vertices},
                            {"material", mesh.GetPolygonMaterial(p)},
                            {"texture", mesh.GetPolygonTexture(p)},
                            {"group", mesh.GetPolygonGroup(p)}});
      }
      json["polygons"] = polygons;
    }
    json["layers"] = Json::array();
    for (int i = 0; i < mesh.GetLayerCount(); ++i) json["layers"].push_back(Layer(*mesh.GetLayer(i)));
    json["skins"] = Json::array();
    for (int d = 0; d < mesh.GetDeformerCount(KZylDeformer::eSkin); ++d) {
      const KZylSkin* skin = static_cast<const KZylSkin*>(mesh.GetDeformer(d, KZylDeformer::eSkin));
      Json clusters = Json::array();
      for (int c = 0; c < skin->GetClusterCount(); ++c) clusters.push_back(Cluster(*skin->GetCluster(c)));
      json["skins"].push_back({{"clusters", clusters}});
    }
    json["shapes"] = Json::array();
    for (int s = 0; s < mesh.GetShapeCount(); ++s) {
      const KZylShape* shape = mesh.GetShape(s);
      KZylProperty weight = mesh.FindProperty(mesh.GetShapeName(s));
      Json entry;
      entry["name"] = Text(mesh.GetShapeName(s));
      entry["index"] = s;
      entry["weight"] = weight.IsValid() ? Number(weight.GetDouble()) : Json(nullptr);
      entry["controlPointCount"] = shape->GetControlPointsCount();
      if (!mBrief) entry["controlPoints"] = ControlPoints(*shape);
      entry["normals"] = shape->GetNormals() ? Element(*shape->GetNormals(), Vectors(*shape->GetNormals())) : Json(nullptr);
      json["shapes"].push_back(entry);
    }
  }

  template <class E>
  static Json Vectors(const E& element) {
    Json values = Json::array();
    for (const auto& value : element.GetDirectArray()) values.push_back(Vector(value));
    return values;
  }

  template <class E>
  Json Uids(const E& element) const {
    Json values = Json::array();
    for (const auto* object : element.GetDirectArray()) values.push_back(UidOf(object));
    return values;
  }

  Json Element(const KZylLayerElement& element, Json direct, int directCount = -1) const {
    Json json;
    json["name"] = Text(element.GetName());
    json["mapping"] = static_cast<int>(element.GetMappingMode());
    json["reference"] = static_cast<int>(element.GetReferenceMode());
    json["directCount"] = directCount >= 0 ? directCount : static_cast<int>(direct.size());
    json["indexCount"] = element.GetIndexArray().GetCount();
    if (!mBrief) {
      json["direct"] = std::move(direct);
      json["index"] = element.GetIndexArray().Std();
    }
    return json;
  }

  Json Layer(const KZylLayer& layer) {
    Json json = Json::object();
    if (const auto* normals = layer.GetNormals()) json["normals"] = Element(*normals, Vectors(*normals));
    if (const auto* colors = layer.GetVertexColors()) {
      Json values = Json::array();
      for (const KZylColor& color : colors->GetDirectArray()) values.push_back(Color(color));
      json["vertexColors"] = Element(*colors, values);
    }
    if (const auto* materials = layer.GetMaterials()) json["materials"] = Element(*materials, Uids(*materials));
    Json uvs = Json::object();
    for (auto channel : layer.GetUVChannels())
      uvs[std::to_string(channel)] = Element(*layer.GetUVs(channel), Vectors(*layer.GetUVs(channel)));
    if (!uvs.empty()) json["uvs"] = uvs;
    Json textures = Json::object();
    for (auto channel : layer.GetTextureChannels()) {
      const KZylLayerElementTexture& element = *layer.GetTextures(channel);
      Json entry = Element(element, Uids(element));
      entry["blendMode"] = static_cast<int>(element.GetBlendMode());
      textures[std::to_string(channel)] = entry;
    }
    if (!textures.empty()) json["textures"] = textures;
    return json;
  }

  Json Link(const KZylNode* node) const {
    if (!node) return nullptr;
    return {{"name", Text(node->GetName())}, {"inScene", mSceneNodes.count(node) != 0}};
  }

  Json Cluster(const KZylCluster& cluster) {
    Json json;
    json["linkMode"] = static_cast<int>(cluster.GetLinkMode());
    json["link"] = Link(cluster.GetLink());
    json["indexCount"] = cluster.GetControlPointIndicesCount();
    if (!mBrief) {
      json["indices"] = cluster.GetControlPointIndices().Std();
      Json weights = Json::array();
      for (double weight : cluster.GetControlPointWeights()) weights.push_back(Number(weight));
      json["weights"] = weights;
    }
    json["transformMatrix"] = Matrix(cluster.GetTransformMatrix());
    json["transformLinkMatrix"] = Matrix(cluster.GetTransformLinkMatrix());
    return json;
  }

  Json Pose(const KZylPose& pose) const {
    Json entries = Json::array();
    for (int i = 0; i < pose.GetCount(); ++i) {
      const KZylNode* node = pose.GetNode(i);
      entries.push_back({{"node", node ? Text(node->GetName()) : Json(nullptr)},
                         {"inScene", node && mSceneNodes.count(node) != 0},
                         {"matrix", Matrix(pose.GetMatrix(i))}});
    }
    return {{"name", Text(pose.GetName())}, {"isBindPose", pose.IsBindPose()}, {"entries", entries}};
  }

  Json Material(const KZylSurfaceMaterial& material) const {
    const char* kind = material.Is(KZylSurfacePhong::ClassId)     ? "phong"
                       : material.Is(KZylSurfaceLambert::ClassId) ? "lambert"
                                                                  : "surface";
    Json properties = Json::object();
    for (int i = 0; i < material.GetPropertyCount(); ++i) {
      KZylProperty property = material.GetProperty(i);
      if (property.GetPropertyDataType() == eZylString) {
        properties[property.GetName().Std()] = Text(property.GetString());
        continue;
      }
      std::vector<double> numbers = property.GetNumbers();
      if (numbers.size() == 1) {
        properties[property.GetName().Std()] = Number(numbers[0]);
      } else {
        Json values = Json::array();
        for (double n : numbers) values.push_back(Number(n));
        properties[property.GetName().Std()] = values;
      }
    }
    return {{"uid", mIds.Uid(&material)},
            {"name", Text(material.GetName())},
            {"class", kind},
            {"shadingModel", Text(material.GetShadingModel().GetString())},
            {"properties", properties}};
  }

  Json Texture(const KZylTexture& texture) const {
    return {{"uid", mIds.Uid(&texture)},
            {"name", Text(texture.GetName())},
            {"fileName", Text(texture.GetFileName())},
            {"relativeFileName", Text(texture.GetRelativeFileName())},
            {"wrapU", static_cast<int>(texture.GetWrapModeU())},
            {"wrapV", static_cast<int>(texture.GetWrapModeV())},
            {"blendMode", static_cast<int>(texture.GetBlendMode())},
            {"materialUse", texture.GetMaterialUse()}};
  }

  // A material's or texture's uid; null for a null reference.
  Json UidOf(const KZylObject* object) const {
    int uid = mIds.Uid(object);
    return uid > 0 ? Json(uid) : Json(nullptr);
  }

  const KZylScene& mScene;
  bool mBrief;
  SceneObjects mIds;
  std::unordered_set<const KZylNode*> mSceneNodes;
};

}  // namespace

Json DumpScene(const KZylScene& scene, bool brief) { return SceneDumper(scene, brief).Dump(); }

Json DumpRead(const ReadResult& read, const KString& file, bool brief) {
  Json json;
  json["dump"] = kDumpVersion;
  json["file"] = Text(file);
  json["ok"] = read.ok;
  json["lastError"] = {{"id", read.lastErrorId}, {"text", Text(read.lastErrorText)}};
  json["errorText"] = Text(read.errorText);
  json["notifications"] = Json::array();
  for (const auto& detail : read.notifications)
    json["notifications"].push_back({{"code", detail.code},
                                     {"text", Text(detail.text)},
                                     {"line", detail.location.line},
                                     {"element", Text(detail.location.element)}});
  json["scene"] = read.scene ? DumpScene(*read.scene, brief) : Json(nullptr);
  return json;
}

}  // namespace zyldae

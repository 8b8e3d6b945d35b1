#include "tools/zyldae/scene_dump.h"

#include <cmath>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "tools/zyldae/json_value_builder.h"
#include "tools/zyldae/scene_objects.h"

namespace zyldae {

using namespace zylsdk;

namespace {

const char* AttributeTypeName(int type) {
  static const char* const kNames[] = {"unidentified", "null", "marker", "skeleton", "mesh",
                                       "nurb", "patch", "camera", "cameraSwitcher", "light"};
  return (type >= 0 && type < 10) ? kNames[type] : "unidentified";
}

const char* const kCurveNames[KZylTakeNode::eChannelCount] = {
    "T.X", "T.Y", "T.Z", "R.X", "R.Y", "R.Z", "S.X", "S.Y", "S.Z",
    "Color.R", "Color.G", "Color.B", "Intensity", "ConeAngle", "FieldOfView"};

// For keys that may repeat: the position of the last entry of each key, in the order of each
// key's first entry. A JSON object keeps a repeated key in its first place with its last value.
std::vector<size_t> LastOfEachKey(const std::vector<std::string>& keys) {
  std::unordered_map<std::string, size_t> slotOfKey;
  std::vector<size_t> chosen;
  for (size_t i = 0; i < keys.size(); ++i) {
    auto [slot, isNew] = slotOfKey.emplace(keys[i], chosen.size());
    if (isNew) chosen.push_back(i);
    else chosen[slot->second] = i;
  }
  return chosen;
}

// Tells the sink what a read holds, in the dump's order.
class DumpWalker {
 public:
  DumpWalker(JsonSink& out, bool brief) : mOut(out), mBrief(brief) {}

  void Read(const ReadResult& read, const KString& file) {
    mOut.BeginObject();
    Key("dump");
    mOut.Integer(kDumpVersion);
    Key("file");
    Text(file);
    Key("ok");
    mOut.Bool(read.ok);
    Key("lastError");
    mOut.BeginObject();
    Key("id");
    mOut.Integer(read.lastErrorId);
    Key("text");
    Text(read.lastErrorText);
    mOut.EndObject();
    Key("errorText");
    Text(read.errorText);
    Key("notifications");
    mOut.BeginArray(false);
    for (const auto& detail : read.notifications) {
      mOut.BeginObject();
      Key("code");
      mOut.Integer(detail.code);
      Key("text");
      Text(detail.text);
      Key("line");
      mOut.Integer(detail.location.line);
      Key("element");
      Text(detail.location.element);
      mOut.EndObject();
    }
    mOut.EndArray();
    Key("scene");
    if (read.scene) Scene(*read.scene);
    else mOut.Null();
    mOut.EndObject();
  }

  void Scene(const KZylScene& scene) {
    const SceneObjects ids(scene);
    mIds = &ids;
    mSceneNodes.clear();
    for (KZylNode* node : SceneObjects::AllNodes(scene)) mSceneNodes.insert(node);

    mOut.BeginObject();
    const KZylAxisSystem& axes = scene.GetGlobalSettings().GetAxisSystem();
    Key("axisSystem");
    mOut.BeginObject();
    Key("up");
    mOut.Integer(axes.GetUpVector());
    Key("front");
    mOut.Integer(axes.GetFrontVector());
    Key("coordSystem");
    mOut.Integer(axes.GetCoorSystem());
    mOut.EndObject();
    Key("systemUnit");
    Number(scene.GetGlobalSettings().GetSystemUnit().GetScaleFactor());
    Key("ambientColor");
    Color(scene.GetGlobalLightSettings().GetAmbientColor());
    Key("sceneInfo");
    SceneInfo(scene.GetSceneInfo());
    Key("currentTake");
    Text(scene.GetCurrentTakeName());
    Key("takes");
    mOut.BeginArray(false);
    for (int i = 0; i < scene.GetTakeCount(); ++i) Take(*scene.GetTakeInfo(i));
    mOut.EndArray();
    Key("root");
    if (scene.GetRootNode()) Node(*scene.GetRootNode(), KZylXMatrix());
    else mOut.Null();
    Key("poses");
    mOut.BeginArray(false);
    for (int i = 0; i < scene.GetPoseCount(); ++i) Pose(*scene.GetPose(i));
    mOut.EndArray();
    Key("materials");
    mOut.BeginArray(false);
    for (const KZylSurfaceMaterial* material : ids.Materials()) Material(*material);
    mOut.EndArray();
    Key("textures");
    mOut.BeginArray(false);
    for (const KZylTexture* texture : ids.Textures()) Texture(*texture);
    mOut.EndArray();
    mOut.EndObject();
    mIds = nullptr;
  }

 private:
  void Key(const std::string& key) { mOut.Key(key); }
  void Text(const KString& text) { mOut.String(text.Std()); }
  // A number as the dump writes it: a JSON number when finite, else its text.
  void Number(double value) {
    if (std::isfinite(value)) mOut.Double(value);
    else mOut.String(NonFiniteText(value));
  }
  // A short list of numbers: on one line unless one of them is written as a text.
  void Numbers(const double* values, size_t count) {
    bool allFinite = true;
    for (size_t i = 0; i < count; ++i) allFinite = allFinite && std::isfinite(values[i]);
    mOut.BeginArray(allFinite);
    for (size_t i = 0; i < count; ++i) Number(values[i]);
    mOut.EndArray();
  }
  template <class Integers>
  void IntegerList(const Integers& values) {
    mOut.BeginArray(true);
    for (auto value : values) mOut.Integer(value);
    mOut.EndArray();
  }
  void Vector(const KZylVector4& v) {
    const double values[] = {v[0], v[1], v[2], v[3]};
    Numbers(values, 4);
  }
  void Vector(const KZylVector2& v) {
    const double values[] = {v[0], v[1]};
    Numbers(values, 2);
  }
  void Color(const KZylColor& c) {
    const double values[] = {c.mRed, c.mGreen, c.mBlue, c.mAlpha};
    Numbers(values, 4);
  }
  void Matrix(const KZylMatrix& m) {
    double values[16];
    for (int r = 0; r < 4; ++r)
      for (int c = 0; c < 4; ++c) values[r * 4 + c] = m.mData[r][c];
    Numbers(values, 16);
  }
  // A material's or texture's uid; null for a null reference.
  void UidOf(const KZylObject* object) {
    const int uid = mIds->Uid(object);
    if (uid > 0) mOut.Integer(uid);
    else mOut.Null();
  }

  void SceneInfo(const KZylSceneInfo* info) {
    if (!info) return mOut.Null();
    mOut.BeginObject();
    Key("author");
    Text(info->mAuthor);
    Key("title");
    Text(info->mTitle);
    Key("subject");
    Text(info->mSubject);
    Key("keywords");
    Text(info->mKeywords);
    Key("revision");
    Text(info->mRevision);
    Key("comment");
    Text(info->mComment);
    mOut.EndObject();
  }

  void Span(const KTimeSpan& span) {
    mOut.BeginObject();
    Key("start");
    Number(span.GetStart().GetSecondDouble());
    Key("stop");
    Number(span.GetStop().GetSecondDouble());
    Key("startTicks");
    mOut.Integer(span.GetStart().Get());
    Key("stopTicks");
    mOut.Integer(span.GetStop().Get());
    mOut.EndObject();
  }

  void Take(const KZylTakeInfo& take) {
    mOut.BeginObject();
    Key("name");
    Text(take.mName);
    Key("localTimeSpan");
    Span(take.mLocalTimeSpan);
    Key("referenceTimeSpan");
    Span(take.mReferenceTimeSpan);
    mOut.EndObject();
  }

  // `parentGlobal` is the parent's global matrix, passed down so that deep hierarchies cost
  // one matrix product per node.
  void Node(const KZylNode& node, const KZylXMatrix& parentGlobal) {
    KZylXMatrix global = node.GetLocalFromDefaultTake(eSourcePivot);
    if (node.GetParent()) global = global * parentGlobal;
    mOut.BeginObject();
    Key("name");
    Text(node.GetName());
    Key("inheritType");
    mOut.Integer(static_cast<int>(node.GetTransformationInheritType()));
    Key("rotationOrder");
    mOut.Integer(static_cast<int>(node.GetRotationOrder(eSourcePivot)));
    Key("rotationActive");
    mOut.Bool(node.GetRotationActive(eSourcePivot));
    Key("shadingMode");
    mOut.Integer(static_cast<int>(node.GetShadingMode()));
    Key("translation");
    Vector(node.GetDefaultT());
    Key("rotation");
    Vector(node.GetDefaultR());
    Key("scaling");
    Vector(node.GetDefaultS());
    Key("preRotation");
    Vector(node.GetPreRotation(eSourcePivot));
    Key("postRotation");
    Vector(node.GetPostRotation(eSourcePivot));
    Key("rotationPivot");
    Vector(node.GetRotationPivot(eSourcePivot));
    Key("scalingPivot");
    Vector(node.GetScalingPivot(eSourcePivot));
    Key("rotationOffset");
    Vector(node.GetRotationOffset(eSourcePivot));
    Key("scalingOffset");
    Vector(node.GetScalingOffset(eSourcePivot));
    Key("globalMatrix");
    Matrix(global);
    Key("materials");
    mOut.BeginArray(true);
    for (int i = 0; i < node.GetSrcObjectCount(KZylSurfaceMaterial::ClassId); ++i)
      UidOf(node.GetSrcObject(KZylSurfaceMaterial::ClassId, i));
    mOut.EndArray();
    Key("attribute");
    Attribute(node.GetNodeAttribute());
    Key("takes");
    Takes(node);
    Key("children");
    mOut.BeginArray(false);
    for (int i = 0; i < node.GetChildCount(); ++i) Node(*node.GetChild(i), global);
    mOut.EndArray();
    mOut.EndObject();
  }

  void Takes(const KZylNode& node) {
    std::vector<std::string> names;
    for (int i = 0; i < node.GetTakeNodeCount(); ++i) names.push_back(node.GetTakeNode(i)->GetName().Std());
    mOut.BeginObject();
    for (size_t i : LastOfEachKey(names)) {
      Key(names[i]);
      Curves(node, *node.GetTakeNode(static_cast<int>(i)));
    }
    mOut.EndObject();
  }

  void Curves(const KZylNode& node, const KZylTakeNode& take) {
    mOut.BeginObject();
    for (int c = 0; c < KZylTakeNode::eChannelCount; ++c) {
      const KFCurve* curve = take.FindCurve(static_cast<KZylTakeNode::EChannel>(c));
      if (!curve || curve->KeyGetCount() == 0) continue;
      Key(kCurveNames[c]);
      Curve(*curve);
    }
    if (const KZylGeometry* geometry = node.GetGeometry()) {
      for (int s = 0; s < geometry->GetShapeCount(); ++s) {
        const KFCurve* curve = take.FindShapeChannel(geometry, s);
        if (!curve || curve->KeyGetCount() == 0) continue;
        Key("Shape." + std::to_string(s));
        Curve(*curve);
      }
    }
    mOut.EndObject();
  }

  void Curve(const KFCurve& curve) {
    mOut.BeginObject();
    Key("keyCount");
    mOut.Integer(curve.KeyGetCount());
    if (!mBrief) {
      Key("keys");
      mOut.BeginArray(false);
      for (int k = 0; k < curve.KeyGetCount(); ++k) CurveKey(curve.KeyGet(k));
      mOut.EndArray();
    }
    mOut.EndObject();
  }

  void CurveKey(const KFCurveKey& key) {
    mOut.BeginObject();
    Key("time");
    Number(key.time.GetSecondDouble());
    Key("value");
    Number(key.value);
    Key("interpolation");
    mOut.Integer(key.interpolation);
    Key("tangentMode");
    mOut.Integer(key.tangentMode);
    Key("leftDerivative");
    Number(key.leftDerivative);
    Key("rightDerivative");
    Number(key.rightDerivative);
    Key("leftWeight");
    Number(key.leftWeight);
    Key("rightWeight");
    Number(key.rightWeight);
    Key("break");
    mOut.Bool(key.isBreak);
    mOut.EndObject();
  }

  void Attribute(const KZylNodeAttribute* attribute) {
    if (!attribute) return mOut.Null();
    const int type = attribute->GetAttributeType();
    mOut.BeginObject();
    Key("type");
    mOut.String(AttributeTypeName(type));
    Key("typeId");
    mOut.Integer(type);
    Key("name");
    Text(attribute->GetName());
    if (attribute->Is(KZylSkeleton::ClassId)) {
      Key("skeletonType");
      mOut.Integer(static_cast<int>(static_cast<const KZylSkeleton*>(attribute)->GetSkeletonType()));
    } else if (attribute->Is(KZylCamera::ClassId)) {
      Camera(static_cast<const KZylCamera&>(*attribute));
    } else if (attribute->Is(KZylLight::ClassId)) {
      Light(static_cast<const KZylLight&>(*attribute));
    } else if (attribute->Is(KZylMesh::ClassId)) {
      Mesh(static_cast<const KZylMesh&>(*attribute));
    }
    mOut.EndObject();
  }

  void Light(const KZylLight& light) {
    Key("lightType");
    mOut.Integer(static_cast<int>(light.GetLightType()));
    Key("color");
    Color(light.GetDefaultColor());
    Key("intensity");
    Number(light.GetDefaultIntensity());
    Key("coneAngle");
    Number(light.GetDefaultConeAngle());
    Key("fog");
    Number(light.GetDefaultFog());
  }

  void Camera(const KZylCamera& camera) {
    Key("projection");
    mOut.Integer(static_cast<int>(camera.GetProjectionType()));
    Key("fieldOfView");
    Number(camera.GetDefaultFieldOfView());
    Key("apertureMode");
    mOut.Integer(static_cast<int>(camera.GetApertureMode()));
    Key("aspect");
    mOut.BeginObject();
    Key("mode");
    mOut.Integer(static_cast<int>(camera.GetAspectRatioMode()));
    Key("width");
    Number(camera.GetAspectWidth());
    Key("height");
    Number(camera.GetAspectHeight());
    mOut.EndObject();
    Key("nearPlane");
    Number(camera.GetNearPlane());
    Key("farPlane");
    Number(camera.GetFarPlane());
    Key("orthoZoom");
    Number(camera.GetOrthoZoom());
    Key("position");
    Vector(camera.GetPosition());
    Key("interestPosition");
    Vector(camera.GetDefaultCameraInterestPosition());
    Key("upVector");
    Vector(camera.GetUpVector());
    Key("focusDistanceSource");
    mOut.Integer(static_cast<int>(camera.GetFocusDistanceSource()));
    Key("specificDistance");
    Number(camera.GetSpecificDistance());
    Key("apertureWidth");
    Number(camera.GetApertureWidth());
    Key("apertureHeight");
    Number(camera.GetApertureHeight());
    Key("squeezeRatio");
    Number(camera.GetSqueezeRatio());
    Key("apertureFormat");
    mOut.Integer(camera.GetApertureFormat());
    Key("format");
    mOut.Integer(camera.GetFormat());
  }

  void ControlPoints(const KZylGeometryBase& geometry) {
    mOut.BeginArray(false);
    for (const KZylVector4& point : geometry.GetControlPoints()) Vector(point);
    mOut.EndArray();
  }

  void Polygons(const KZylMesh& mesh) {
    mOut.BeginArray(false);
    for (int p = 0; p < mesh.GetPolygonCount(); ++p) {
      mOut.BeginObject();
      Key("vertices");
      mOut.BeginArray(true);
      for (int v = 0; v < mesh.GetPolygonSize(p); ++v) mOut.Integer(mesh.GetPolygonVertex(p, v));
      mOut.EndArray();
      Key("material");
      mOut.Integer(mesh.GetPolygonMaterial(p));
      Key("texture");
      mOut.Integer(mesh.GetPolygonTexture(p));
      Key("group");
      mOut.Integer(mesh.GetPolygonGroup(p));
      mOut.EndObject();
    }
    mOut.EndArray();
  }

  void Mesh(const KZylMesh& mesh) {
    Key("controlPointCount");
    mOut.Integer(mesh.GetControlPointsCount());
    Key("polygonCount");
    mOut.Integer(mesh.GetPolygonCount());
    Key("polygonVertexCount");
    mOut.Integer(mesh.GetPolygonVertexCount());
    if (!mBrief) {
      Key("controlPoints");
      ControlPoints(mesh);
      Key("polygons");
      Polygons(mesh);
    }
    Key("layers");
    mOut.BeginArray(false);
    for (int i = 0; i < mesh.GetLayerCount(); ++i) Layer(*mesh.GetLayer(i));
    mOut.EndArray();
    Key("skins");
    mOut.BeginArray(false);
    for (int d = 0; d < mesh.GetDeformerCount(KZylDeformer::eSkin); ++d) {
      const KZylSkin* skin = static_cast<const KZylSkin*>(mesh.GetDeformer(d, KZylDeformer::eSkin));
      mOut.BeginObject();
      Key("clusters");
      mOut.BeginArray(false);
      for (int c = 0; c < skin->GetClusterCount(); ++c) Cluster(*skin->GetCluster(c));
      mOut.EndArray();
      mOut.EndObject();
    }
    mOut.EndArray();
    Key("shapes");
    mOut.BeginArray(false);
    for (int s = 0; s < mesh.GetShapeCount(); ++s) Shape(mesh, s);
    mOut.EndArray();
  }

  void Shape(const KZylMesh& mesh, int s) {
    const KZylShape* shape = mesh.GetShape(s);
    KZylProperty weight = mesh.FindProperty(mesh.GetShapeName(s));
    mOut.BeginObject();
    Key("name");
    Text(mesh.GetShapeName(s));
    Key("index");
    mOut.Integer(s);
    Key("weight");
    if (weight.IsValid()) Number(weight.GetDouble());
    else mOut.Null();
    Key("controlPointCount");
    mOut.Integer(shape->GetControlPointsCount());
    if (!mBrief) {
      Key("controlPoints");
      ControlPoints(*shape);
    }
    Key("normals");
    if (const KZylLayerElementNormal* normals = shape->GetNormals()) Element(*normals, [&] { Vectors(*normals); });
    else mOut.Null();
    mOut.EndObject();
  }

  template <class E>
  void Vectors(const E& element) {
    mOut.BeginArray(false);
    for (const auto& value : element.GetDirectArray()) Vector(value);
    mOut.EndArray();
  }

  template <class E>
  void Uids(const E& element) {
    mOut.BeginArray(true);
    for (const auto* object : element.GetDirectArray()) UidOf(object);
    mOut.EndArray();
  }

  // A layer element, its values told by `direct` unless the dump is brief.
  template <class E, class TellDirect>
  void Element(const E& element, TellDirect direct) {
    mOut.BeginObject();
    ElementMembers(element, direct);
    mOut.EndObject();
  }

  template <class E, class TellDirect>
  void ElementMembers(const E& element, TellDirect direct) {
    Key("name");
    Text(element.GetName());
    Key("mapping");
    mOut.Integer(static_cast<int>(element.GetMappingMode()));
    Key("reference");
    mOut.Integer(static_cast<int>(element.GetReferenceMode()));
    Key("directCount");
    mOut.Integer(element.GetDirectArray().GetCount());
    Key("indexCount");
    mOut.Integer(element.GetIndexArray().GetCount());
    if (!mBrief) {
      Key("direct");
      direct();
      Key("index");
      IntegerList(element.GetIndexArray());
    }
  }

  void Layer(const KZylLayer& layer) {
    mOut.BeginObject();
    if (const auto* normals = layer.GetNormals()) {
      Key("normals");
      Element(*normals, [&] { Vectors(*normals); });
    }
    if (const auto* colors = layer.GetVertexColors()) {
      Key("vertexColors");
      Element(*colors, [&] {
        mOut.BeginArray(false);
        for (const KZylColor& color : colors->GetDirectArray()) Color(color);
        mOut.EndArray();
      });
    }
    if (const auto* materials = layer.GetMaterials()) {
      Key("materials");
      Element(*materials, [&] { Uids(*materials); });
    }
    const auto uvChannels = layer.GetUVChannels();
    if (!uvChannels.empty()) {
      Key("uvs");
      mOut.BeginObject();
      for (auto channel : uvChannels) {
        const KZylLayerElementUV& element = *layer.GetUVs(channel);
        Key(std::to_string(channel));
        Element(element, [&] { Vectors(element); });
      }
      mOut.EndObject();
    }
    const auto textureChannels = layer.GetTextureChannels();
    if (!textureChannels.empty()) {
      Key("textures");
      mOut.BeginObject();
      for (auto channel : textureChannels) {
        const KZylLayerElementTexture& element = *layer.GetTextures(channel);
        Key(std::to_string(channel));
        mOut.BeginObject();
        ElementMembers(element, [&] { Uids(element); });
        Key("blendMode");
        mOut.Integer(static_cast<int>(element.GetBlendMode()));
        mOut.EndObject();
      }
      mOut.EndObject();
    }
    mOut.EndObject();
  }

  void Link(const KZylNode* node) {
    if (!node) return mOut.Null();
    mOut.BeginObject();
    Key("name");
    Text(node->GetName());
    Key("inScene");
    mOut.Bool(mSceneNodes.count(node) != 0);
    mOut.EndObject();
  }

  void Cluster(const KZylCluster& cluster) {
    mOut.BeginObject();
    Key("linkMode");
    mOut.Integer(static_cast<int>(cluster.GetLinkMode()));
    Key("link");
    Link(cluster.GetLink());
    Key("indexCount");
    mOut.Integer(cluster.GetControlPointIndicesCount());
    if (!mBrief) {
      Key("indices");
      IntegerList(cluster.GetControlPointIndices());
      Key("weights");
      const auto& weights = cluster.GetControlPointWeights();
      Numbers(weights.GetArray(), static_cast<size_t>(weights.GetCount()));
    }
    Key("transformMatrix");
    Matrix(cluster.GetTransformMatrix());
    Key("transformLinkMatrix");
    Matrix(cluster.GetTransformLinkMatrix());
    mOut.EndObject();
  }

  void Pose(const KZylPose& pose) {
    mOut.BeginObject();
    Key("name");
    Text(pose.GetName());
    Key("isBindPose");
    mOut.Bool(pose.IsBindPose());
    Key("entries");
    mOut.BeginArray(false);
    for (int i = 0; i < pose.GetCount(); ++i) {
      const KZylNode* node = pose.GetNode(i);
      mOut.BeginObject();
      Key("node");
      if (node) Text(node->GetName());
      else mOut.Null();
      Key("inScene");
      mOut.Bool(node && mSceneNodes.count(node) != 0);
      Key("matrix");
      Matrix(pose.GetMatrix(i));
      mOut.EndObject();
    }
    mOut.EndArray();
    mOut.EndObject();
  }

  void Material(const KZylSurfaceMaterial& material) {
    const char* kind = material.Is(KZylSurfacePhong::ClassId)     ? "phong"
                       : material.Is(KZylSurfaceLambert::ClassId) ? "lambert"
                                                                  : "surface";
    mOut.BeginObject();
    Key("uid");
    mOut.Integer(mIds->Uid(&material));
    Key("name");
    Text(material.GetName());
    Key("class");
    mOut.String(kind);
    Key("shadingModel");
    Text(material.GetShadingModel().GetString());
    Key("properties");
    Properties(material);
    mOut.EndObject();
  }

  void Properties(const KZylSurfaceMaterial& material) {
    std::vector<std::string> names;
    for (int i = 0; i < material.GetPropertyCount(); ++i) names.push_back(material.GetProperty(i).GetName().Std());
    mOut.BeginObject();
    for (size_t i : LastOfEachKey(names)) {
      KZylProperty property = material.GetProperty(static_cast<int>(i));
      Key(names[i]);
      if (property.GetPropertyDataType() == eZylString) {
        Text(property.GetString());
        continue;
      }
      const std::vector<double> numbers = property.GetNumbers();
      if (numbers.size() == 1) Number(numbers[0]);
      else Numbers(numbers.data(), numbers.size());
    }
    mOut.EndObject();
  }

  void Texture(const KZylTexture& texture) {
    mOut.BeginObject();
    Key("uid");
    mOut.Integer(mIds->Uid(&texture));
    Key("name");
    Text(texture.GetName());
    Key("fileName");
    Text(texture.GetFileName());
    Key("relativeFileName");
    Text(texture.GetRelativeFileName());
    Key("wrapU");
    mOut.Integer(static_cast<int>(texture.GetWrapModeU()));
    Key("wrapV");
    mOut.Integer(static_cast<int>(texture.GetWrapModeV()));
    Key("blendMode");
    mOut.Integer(static_cast<int>(texture.GetBlendMode()));
    Key("materialUse");
    mOut.Integer(texture.GetMaterialUse());
    mOut.EndObject();
  }

  JsonSink& mOut;
  bool mBrief;
  // The scene's materials and textures with their uids, while a scene is told.
  const SceneObjects* mIds = nullptr;
  std::unordered_set<const KZylNode*> mSceneNodes;
};

}  // namespace

void DumpRead(const ReadResult& read, const KString& file, bool brief, JsonSink& sink) {
  DumpWalker(sink, brief).Read(read, file);
}

Json DumpRead(const ReadResult& read, const KString& file, bool brief) {
  JsonValueBuilder builder;
  DumpRead(read, file, brief, builder);
  return std::move(builder.Value());
}

Json DumpScene(const KZylScene& scene, bool brief) {
  JsonValueBuilder builder;
  DumpWalker(builder, brief).Scene(scene);
  return std::move(builder.Value());
}

}  // namespace zyldae

#pragma once
// KZylReaderCollada: the kit's reader of COLLADA 1.4 documents (.dae).
//
// Use it through the manager:
//
//   KZylSdkManager manager;
//   RegisterColladaReader(manager);
//   std::unique_ptr<KZylReader> reader = manager.CreateReader("model.dae");
//   KZylScene* scene = KZylScene::Create(&manager, "");
//   if (reader->FileOpen("model.dae")) {
//     KZylStreamOptions* options = reader->GetReadOptions();
//     bool ok = reader->Read(*scene, options);
//     reader->FileClose();
//   }
//
// What the kit cannot represent is reported as a warning ("Warning: ...") to the manager's
// user notification and skipped; structural faults of the document are reported as errors
// ("ERROR: ...") and make Read return false, leaving what was made so far in the scene.
//
// The import steps below are public so that each can be run and tested on its own; an
// application only needs the KZylReader interface. Every import step returns true on success
// and also stores its result in the reader's status.

#include <cstdio>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kit/zylsdk.h"
#include "reader/dom/dom.h"
#include "reader/id_list.h"
#include "reader/records.h"
#include "reader/xml_document.h"

namespace zylsdk {

// Registers the COLLADA reader with the manager for the extension "dae".
void RegisterColladaReader(KZylSdkManager& manager);

// Lookups of the joint re-targeting (reader/nodes/joints.cpp).
struct JointIndex;
// Lookups of the animation targets (reader/animation/target_index.h).
class AnimationTargetIndex;

class KZylReaderCollada : public KZylReader {
 public:
  explicit KZylReaderCollada(KZylSdkManager& manager);
  // Closes the file and destroys the placeholder materials that no mesh of a node uses.
  // The reader must not outlive its manager.
  ~KZylReaderCollada() override;

  // ---------------------------------------------------------------- file and read entry
  // Opens the file only to check that it can be opened, and keeps its path; an open file is
  // closed first. False (last error 3) when it cannot be opened.
  bool FileOpen(const char* fileName) override;
  // False (last error 3) when no file is open, or when closing failed; the file is considered
  // closed either way.
  bool FileClose() override;
  bool IsFileOpen() override { return mFile != nullptr; }
  // New read options, owned by the manager, reporting start 0, frame count 0 and frame rate 0
  // (the options are made before any read). Null (last error 3) when no file is open.
  KZylStreamOptions* GetReadOptions(bool parseFile = true) override;
  // Parses the kept path and reads the document into `scene`. False (last error 6) for null
  // options; false with the error "Unable to parse xml/dae file\n" when the file is not
  // well-formed XML or the document is faulty. The options' "COMPLETE" (false when absent)
  // chooses the complete reading.
  bool Read(KZylScene& scene, KZylStreamOptions* options) override;
  // True while reading completely: everything the kit can represent is read, where the
  // traditional reading skips, refuses or replaces. Set by Read from its options.
  bool IsComplete() const { return mComplete; }
  void SetComplete(bool complete) { mComplete = complete; }
  void ResetFileInfo();
  // Kept for the reader interface: links are made while nodes are read. Returns true.
  bool ImportLink(KZylNode& node);

  // ---------------------------------------------------------------- diagnostics
  // Adds "Warning: " / "ERROR: " + text to the manager's user notification, detail code 6;
  // nothing when the manager has none.
  void AddNotificationWarning(KString text);
  void AddNotificationError(KString text);
  // Adds the warning unless `key` was already reported by this reader; then remembers `key`.
  // True when the warning was added.
  bool WarnOnce(const KString& key, const KString& text);
  // The reported-features list: keys of the warnings given once per reader.
  bool IsReported(const KString& key) const;
  void MarkReported(const KString& key);
  // Splits an animation target "id/path.member" or "path(member)" into its parts.
  static void SplitReferenceTarget(const KString& target, KString& id, KString& path, KString& member);

  // ---------------------------------------------------------------- document walk
  bool ReadCollada(KZylScene& scene, DaeElement* root);
  bool CheckColladaVersion();
  bool ImportAsset(DaeElement* asset, KZylScene& scene, KZylSceneInfo& sceneInfo);
  bool ImportLibrary(KZylScene& scene, DaeElement* library);
  bool ImportVisualScene(DaeElement* visualScene);
  bool ImportScene(KZylScene& scene, DaeElement* sceneElement);
  bool IsNodeExportable(const KString& id);

  // ---------------------------------------------------------------- nodes
  bool ImportNode(DaeElement* nodeElement, KZylNode& node, KString id);
  bool ImportTransforms(DaeElement* nodeElement, KZylNode* node);
  KZylVector4& ImportRotation(DaeElement* rotate, KZylNode* node, int& axis, KZylVector4& rotation);
  static ERotationOrder ExtrapolateRotationOrder(int positions[3], int count);
  // Sets a node's default transform from a global matrix (SetGlobalState on a node without
  // parent).
  void SetMatrix(KZylNode* node, const KZylXMatrix* matrix);
  bool ImportNodeAttribute(DaeElement* nodeElement, KZylNode& node, KZylNodeAttribute* attribute);
  KArrayTemplate<KZylNode*> FindInstances(DaeElement* element, KZylNode* root, KString url);
  bool ImportLookAt(DaeElement* nodeElement, KZylVector4& position, KZylVector4& interest, KZylVector4& up,
                    KZylXMatrix& matrix);
  // Registers the animatable value `sid` of the object named `owner` under "<owner>/<sid>",
  // once for each axis from `firstAxis` to `lastAxis`. Nothing is recorded for a document
  // without animations.
  void RegisterAnimationTargets(const KString& owner, std::string_view sid, const KString& kind, int firstAxis,
                                int lastAxis);

  // ---------------------------------------------------------------- copies
  bool CopyScene(KZylScene* destination, KZylScene* source);
  bool CopyNodeHierarchy(KZylNode* destination, KZylNode* source);
  bool CopyNode(KZylNode* destination, KZylNode* source);
  bool CopyNodeAttribute(KZylNode* destination, KZylNode* source);
  void CopyNodeTransforms(KZylNode* destination, KZylNode* source);
  void CopyMesh(KZylMesh* destination, KZylMesh* source);
  // The source is a shape, or the mesh of a morph target.
  void CopyShape(KZylShape* destination, KZylGeometryBase* source);
  void CopyCamera(KZylCamera* destination, KZylCamera* source);
  void CopyLight(KZylLight* destination, KZylLight* source);
  void CopyNull(KZylNull* destination, KZylNull* source);
  void CopySkeleton(KZylSkeleton* destination, KZylSkeleton* source);
  void CopyLink(KZylCluster* destination, KZylCluster* source);
  void CopyPose(KZylPose* destination, KZylPose* source);
  void UpdateLinkInHierarchy(KZylScene* scene, KZylNode* node);
  // A new cluster (name ""), remembered in the state's clusters: every cluster the reader
  // makes is created here.
  KZylCluster* CreateCluster();

  // ---------------------------------------------------------------- geometry and controllers
  bool ImportGeometry(DaeElement* geometry);
  bool ImportMesh(DaeElement* meshElement, KZylMesh* mesh);
  bool ImportVertices(DaeElement* meshElement, KZylGeometry* geometry);
  bool ImportPolygons(DaeElement* meshElement, KZylMesh& mesh);
  bool ImportController(DaeElement* controller);
  bool ImportVertexWeightsInController(DaeElement* skin, KArrayTemplate<KZylCluster*>& clusters);
  bool ImportLinkMatricesInController(DaeElement* skin, KArrayTemplate<KZylCluster*>& clusters);
  bool ImportTargetsInController(DaeElement* morph, KArrayTemplate<KString>& targets, KString& weightSource,
                                 KArrayTemplate<double>& weights);
  bool ConnectShapes(KZylGeometry* geometry, KString name, const KArrayTemplate<KString>& targets, KString key,
                     const KArrayTemplate<double>& weights);

  // ---------------------------------------------------------------- materials and textures
  bool ImportEffect(DaeElement* effect);
  bool ImportMaterial(DaeElement* material);
  bool ImportImage(DaeElement* image);
  bool ImportTexture(DaeElement* texture, KString effectId, KZylLayerElement::ELayerElementType layerKind);

  // ---------------------------------------------------------------- animation, cameras, lights
  bool ImportAnimation(DaeElement* animation, KZylScene& scene);
  bool ImportCamera(DaeElement* camera);
  bool ImportLight(KZylScene& scene, DaeElement* light);

  // ---------------------------------------------------------------- state, for inspection
  // Everything the reader registers while it reads one document. Read starts each document
  // with an empty state.
  struct DocumentState {
    IdList<KZylScene> visualScenes;
    IdList<KZylSurfaceMaterial> materials{IdList<KZylSurfaceMaterial>::kTrackItems};
    IdList<KZylSurfaceMaterial> effects;
    IdList<KZylTexture> images;
    IdList<TextureUseArray> textures;
    IdList<KZylNodeAttribute> nodeAttributes;
    IdList<ControllerRecord> controllers;
    IdList<DaeElement> animations;
    IdList<ChannelRecord> animationTargets;
    // False for a document without animations: no channel can then look a target up, so none
    // is recorded.
    bool recordsAnimationTargets = true;
    IdList<ShapeRecordList> shapes;
    KArrayTemplate<KZylPose*> bindPoses;
    // Clusters made by this read, in creation order (joint re-targeting looks at these).
    std::vector<KZylCluster*> clusters;
    // Made by the first joint; held through a shared pointer so that its type stays private.
    std::shared_ptr<JointIndex> jointIndex;
    // Made by the first animation that needs it; held the same way.
    std::shared_ptr<AnimationTargetIndex> animationTargetIndex;
  };
  const DocumentState& GetState() const { return *mState; }
  bool GetStatus() const { return mStatus; }
  const KString& GetColladaVersion() const { return mColladaVersion; }
  KTime GetAnimationStart() const { return mAnimationStart; }
  KTime GetAnimationStop() const { return mAnimationStop; }
  // Placeholder materials replaced by material binding, destroyed with the reader unless a
  // mesh of a node still uses them.
  const KSet2<KZylSurfaceMaterial*>& GetMaterialSet() const { return mMaterialSet; }
  // Puts a placeholder material replaced by material binding into the material set, unless it
  // is one of the document's materials.
  void AddToMaterialSet(KZylSurfaceMaterial* material);

 private:
  // Empties the per-document state (everything but the reported features).
  void ResetDocumentState();
  // Connects the materials of every mesh of the scene to its node and to the scene.
  void ConnectMeshMaterials(KZylScene& scene);
  void DestroyUnusedPlaceholderMaterials();

  FILE* mFile = nullptr;
  KString mFileName;
  bool mStatus = false;
  bool mComplete = false;
  KTime mAnimationStart;
  KTime mAnimationStop;
  bool mFirstKey = false;  // the next animation key starts the take's time span
  int64_t mFrameCount = 0;
  double mFrameRate = 0.0;
  KString mColladaVersion;
  KStringList mReportedFeatures;
  KNumberRenamingStrategy mRenamingStrategy;
  DaeDocumentPtr mDocument;
  DaeElement* mSceneElement = nullptr;
  DaeElement* mVisualSceneElement = nullptr;
  std::unique_ptr<DocumentState> mState;
  KSet2<KZylSurfaceMaterial*> mMaterialSet;
  std::unordered_map<const KZylSurfaceMaterial*, uint64_t> mMaterialSetIds;  // to spot destroyed ones
};

}  // namespace zylsdk

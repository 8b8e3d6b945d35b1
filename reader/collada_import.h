#pragma once
// KZylReaderCollada: the COLLADA reader's class with its import steps and document state, for
// the reader's own files and the tests. Applications use reader/collada_reader.h.
//
// The import steps are public so that each can be run and tested on its own. Every import step
// returns true on success and also stores its result in the reader's status.

#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "kit/zylsdk.h"
#include "reader/collada_reader.h"
#include "reader/dom/dom.h"
#include "reader/element_index.h"
#include "reader/id_list.h"
#include "reader/output_budget.h"
#include "reader/records.h"
#include "reader/dom/source.h"
#include "reader/xml_document.h"

namespace zylsdk {

// Lookups of the joint re-targeting (reader/nodes/joints.cpp).
struct JointIndex;
class MeshSources;
// Lookups of the animation targets (reader/animation/target_index.h).
class AnimationTargetIndex;
// Channels on matrix elements waiting to be baked (reader/animation/matrix_channels.cpp).
struct MatrixAnimations;
// Skin links kept across the copies of visual scenes (reader/nodes/copy_scene.cpp).
class SceneLinks;

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
  // chooses the complete reading; "MAX SCENE INSTANCES" (its default when absent) how many
  // instances of one visual scene are copied into the scene.
  bool Read(KZylScene& scene, KZylStreamOptions* options) override;
  // Where and why the last read's file was not well-formed XML; empty when it was, or when
  // the read failed for another reason.
  const std::optional<XmlParseFailure>& GetXmlFailure() const { return mXmlFailure; }
  // True while reading completely: everything the kit can represent is read, where the
  // traditional reading skips, refuses or replaces. Set by Read from its options.
  bool IsComplete() const { return mComplete; }
  void SetComplete(bool complete) { mComplete = complete; }
  // How much of a source the reading takes (every param and SID_array when complete).
  SourceRules SourceReadingRules() const { return mComplete ? SourceRules::Everything() : SourceRules{}; }
  // While a library member whose lists nothing else reads is imported (ImportLibrary), its
  // import gives back the lists of `element` once it has read them, or the first `count`
  // values of a list it reads in order, without waiting for the member's end: what it makes
  // next then takes their memory. Outside such a member, nothing is given back.
  void ReleaseReadLists(const DaeElement* element);
  void ReleaseReadListFront(const DaeElement* list, size_t count);
  void ResetFileInfo();
  // Kept for the reader interface: links are made while nodes are read. Returns true.
  bool ImportLink(KZylNode& node);

  // ---------------------------------------------------------------- diagnostics
  // Adds "Warning: " / "ERROR: " + text to the manager's user notification, detail code 6,
  // located at the element being read (see ReadingAt); nothing when the manager has none.
  void AddNotificationWarning(KString text);
  void AddNotificationError(KString text);
  // Marks `element` as the element being read while it lives, for the location of the
  // notifications given meanwhile; a null element keeps the enclosing one.
  class ReadingAt {
   public:
    ReadingAt(KZylReaderCollada& reader, const DaeElement* element);
    ~ReadingAt();
    ReadingAt(const ReadingAt&) = delete;
    ReadingAt& operator=(const ReadingAt&) = delete;

   private:
    KZylReaderCollada& mReader;
    const DaeElement* mEnclosing;
  };
  // Adds the warning unless `key` was already reported by this reader; then remembers `key`.
  // True when the warning was added.
  bool WarnOnce(const KString& key, const KString& text);
  // Takes `bytes` from the read's output budget (reader/output_budget.h); false when they would
  // pass it: the caller then skips what it was about to make, and `skipped` (what it makes:
  // "skins") is named in a warning, once per read.
  bool SpendOutput(int64_t bytes, const char* skipped);
  // What the default reading passed over without a word and the complete reading reads (see
  // ColladaReadResult::leftUnread); counted by CountLeftUnread, emptied by each read.
  const std::vector<std::pair<KString, int>>& GetLeftUnread() const { return mLeftUnread; }
  void CountLeftUnread(const KString& what);
  // The reported-features list: keys of the warnings given once per reader.
  bool IsReported(const KString& key) const;
  void MarkReported(const KString& key);
  // Splits an animation target "id/path.member" or "path(member)" into its parts.
  static void SplitReferenceTarget(const KString& target, KString& id, KString& path, KString& member);

  // ---------------------------------------------------------------- document walk
  bool ReadCollada(KZylScene& scene, DaeElement* root);
  // The complete reading's walk: the asset wherever it stands (defaults without one), then the
  // libraries in the order their references need, the first scene last; unknown elements warn.
  bool ReadAnyStructure(KZylScene& scene, DaeElement* root, KZylSceneInfo*& sceneInfo);
  // The complete reading skips an element it does not know, with one warning per element name.
  void SkipUnknownElement(const char* name);
  bool CheckColladaVersion();
  bool ImportAsset(DaeElement* asset, KZylScene& scene, KZylSceneInfo& sceneInfo);
  bool ImportLibrary(KZylScene& scene, DaeElement* library);
  bool ImportVisualScene(DaeElement* visualScene);
  // `lastReadOfDocument`: nothing reads the document once the scene is copied (no animations
  // follow, nothing after the scene element is looked at), so that its last visual scene is
  // copied without it (ReleaseDocument).
  bool ImportScene(KZylScene& scene, DaeElement* sceneElement, bool lastReadOfDocument = false);
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
  // CopyNodeHierarchy, listing each destination node in depth-first pre-order as it is filled
  // (when `copied` is not null), so that no walk of the copy is needed afterwards.
  bool CopyNodeSubtree(KZylNode* destination, KZylNode* source, std::vector<KZylNode*>* copied);
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
  // The complete reading's joints: links the clusters of every skin of the visual scene being
  // built to the joint nodes its controller names (sids under the instance's skeleton roots,
  // then node ids, then node names) and gives each skin a bind pose of those nodes.
  void LinkSkinsToJoints();
  // A new cluster (name ""), remembered in the state's clusters: every cluster the reader
  // makes is created here.
  KZylCluster* CreateCluster();

  // ---------------------------------------------------------------- geometry and controllers
  bool ImportGeometry(DaeElement* geometry);
  // The complete reading of a geometry: its mesh or convex mesh (a convex hull reads the mesh
  // of the geometry it names), other kinds skipped with a warning; never fails for its kind.
  bool ImportAnyGeometry(DaeElement* geometry);
  // The mesh element a geometry's mesh is read from; null when it has none.
  DaeElement* MeshElementOf(DaeElement* geometry);
  // Whether the complete reading may read the mesh of `geometry` again, as the mesh of a convex
  // hull that names it.
  bool IsHullOfAnother(const DaeElement* geometry);
  // Texture coordinates of `vertices`, one per control point, into layer 0.
  void SetControlPointUVs(KZylGeometry& geometry, const KArrayTemplate<KZylVector2>& uvs);
  // The mesh's control points, then its polygons; both steps read the mesh's sources from one
  // MeshSources, so that a source that both use is read once.
  bool ImportMesh(DaeElement* meshElement, KZylMesh* mesh);
  bool ImportVertices(DaeElement* meshElement, KZylGeometry* geometry, MeshSources& sources);
  // The same step with sources of its own, for a reading of `vertices` alone.
  bool ImportVertices(DaeElement* meshElement, KZylGeometry* geometry);
  bool ImportPolygons(DaeElement* meshElement, KZylMesh& mesh, MeshSources& sources);
  // The primitive elements of a mesh that become polygons, in the order of the mesh's polygons;
  // the complete reading warns once about line primitives, which the kit cannot hold.
  KArrayTemplate<DaeElement*> PrimitiveElements(DaeElement* meshElement);
  // The default reading counts the primitives of a mesh it passes over (CountLeftUnread).
  void CountPrimitivesLeftUnread(const DaeElement* meshElement);
  bool ImportController(DaeElement* controller);
  bool ImportVertexWeightsInController(DaeElement* skin, KArrayTemplate<KZylCluster*>& clusters);
  bool ImportLinkMatricesInController(DaeElement* skin, KArrayTemplate<KZylCluster*>& clusters);
  bool ImportTargetsInController(DaeElement* morph, KArrayTemplate<KString>& targets, KString& weightSource,
                                 KArrayTemplate<double>& weights);
  bool ConnectShapes(KZylGeometry* geometry, KString name, const KArrayTemplate<KString>& targets, KString key,
                     const KArrayTemplate<double>& weights);

  // ---------------------------------------------------------------- materials and textures
  bool ImportEffect(DaeElement* effect);
  // The complete reading's images declared inside an effect or its profiles.
  void ImportEffectImages(DaeElement* effect);
  bool ImportMaterial(DaeElement* material);
  bool ImportImage(DaeElement* image);
  bool ImportTexture(DaeElement* texture, KString effectId, KZylLayerElement::ELayerElementType layerKind);

  // ---------------------------------------------------------------- animation, cameras, lights
  bool ImportAnimation(DaeElement* animation, KZylScene& scene);
  // The complete reading's channels on `matrix` elements, once every animation is read: each
  // animated node gets translation, rotation and scaling keys at the channels' key times.
  void BakeMatrixAnimations();
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
    // For the complete reading's material binding, and filled by it only: the textures of each
    // effect, and the effect each material instances.
    std::unordered_map<KString, const TextureUseArray*> effectTextures;
    std::unordered_map<KString, KString> materialEffects;
    IdList<KZylNodeAttribute> nodeAttributes;
    // The document's elements by id, for the references the complete reading follows anywhere
    // in the document.
    ElementIndex elementsById;
    // The ids that convex meshes name as the geometry they are the hull of; found by the first
    // question about them.
    std::optional<std::unordered_set<KString>> convexHullTargets;
    IdList<ControllerRecord> controllers;
    // The library member being imported whose number lists only its own import reads.
    const DaeElement* listsReadOnceIn = nullptr;
    IdList<DaeElement> animations;
    IdList<ChannelRecord> animationTargets;
    // The complete reading's `matrix` elements by "<node>/<sid>", and the channels on them,
    // baked into curves once every animation is read.
    IdList<MatrixTarget> matrixTargets;
    std::shared_ptr<MatrixAnimations> matrixAnimations;
    // False for a document without animations: no channel can then look a target up, so none
    // is recorded.
    bool recordsAnimationTargets = true;
    IdList<ShapeRecordList> shapes;
    KArrayTemplate<KZylPose*> bindPoses;
    // The complete reading links skins to their joints once a visual scene is built: the node
    // made for each node element of that visual scene, the skins its nodes received, and where
    // its bind poses start in the bind pose array.
    std::unordered_map<const DaeElement*, KZylNode*> nodeOfElement;
    // The node elements being read (an instance_node naming one of them is a cycle), and how
    // many nodes the complete reading has read.
    std::unordered_set<const DaeElement*> openNodeElements;
    int64_t nodesRead = 0;
    std::vector<SkinInstance> skinInstances;
    int firstBindPoseOfScene = 0;
    // Clusters made by this read, in creation order (joint re-targeting looks at these).
    std::vector<KZylCluster*> clusters;
    // Made by the first joint; held through a shared pointer so that its type stays private.
    std::shared_ptr<JointIndex> jointIndex;
    // Made by the first animation that needs it; held the same way.
    std::shared_ptr<AnimationTargetIndex> animationTargetIndex;
    // Made by the first scene copy; held the same way.
    std::shared_ptr<SceneLinks> sceneLinks;
    OutputBudget output;
    // What the budget made the read skip, each named once.
    std::unordered_set<std::string> outputSkipped;
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
  // Where a notification given now arose: the element being read, or the parser's line.
  KZylUserNotification::Location CurrentLocation() const;
  // Frees the document before the read ends, once nothing will read it again: a large scene's
  // copy then does not sit beside the document's tree. Notifications given afterwards are
  // located where the reading was when it was freed.
  void ReleaseDocument();
  // Gives back the number lists of `element` and its descendants once nothing will read them
  // again; only in a document the reader parsed itself.
  void ReleaseListsOf(const DaeElement* element);
  // True when the document has animations, which are read once the scene is complete.
  bool AnimationsToRead() const;

  FILE* mFile = nullptr;
  KString mFileName;
  bool mStatus = false;
  bool mComplete = false;
  int mMaxSceneInstances = KZylStreamOptionsColladaReader::kDefaultSceneInstances;
  KTime mAnimationStart;
  KTime mAnimationStop;
  bool mFirstKey = false;  // the next animation key starts the take's time span
  int64_t mFrameCount = 0;
  double mFrameRate = 0.0;
  KString mColladaVersion;
  KStringList mReportedFeatures;
  KNumberRenamingStrategy mRenamingStrategy;
  DaeDocumentPtr mDocument;
  std::optional<XmlParseFailure> mXmlFailure;
  const DaeElement* mReadingAt = nullptr;
  std::optional<KZylUserNotification::Location> mReleasedAt;  // set by ReleaseDocument
  std::vector<std::pair<KString, int>> mLeftUnread;
  DaeElement* mSceneElement = nullptr;
  DaeElement* mVisualSceneElement = nullptr;
  std::unique_ptr<DocumentState> mState;
  KSet2<KZylSurfaceMaterial*> mMaterialSet;
  std::vector<uint64_t> mMaterialSetIds;  // the unique id of each, in order: to spot destroyed ones
};

}  // namespace zylsdk

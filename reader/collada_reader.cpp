#include "reader/collada_import.h"

#include <cstdint>
#include <unordered_set>

#include "kit/memory_advice.h"

namespace zylsdk {
namespace {

const char* const kParseFailure = "Unable to parse xml/dae file\n";
const char* const kTakeName = "Take 001";

// An integer read option, or `fallback` when the options do not have it.
int64_t IntegerOption(const KZylStreamOptions& options, const char* name, int64_t fallback) {
  const KZylProperty option = options.GetOption(name);
  return option.IsValid() ? option.GetInt() : fallback;
}

}  // namespace

void RegisterColladaReader(KZylSdkManager& manager) {
  for (const char* extension : {"dae", "zae"})
    manager.RegisterReader(extension, [](KZylSdkManager& m) { return std::make_unique<KZylReaderCollada>(m); });
}

KZylReaderCollada::KZylReaderCollada(KZylSdkManager& manager)
    : KZylReader(manager), mState(std::make_unique<DocumentState>()) {}

KZylReaderCollada::~KZylReaderCollada() {
  if (IsFileOpen()) FileClose();
  DestroyUnusedPlaceholderMaterials();
}

bool KZylReaderCollada::FileOpen(const char* fileName) {
  if (IsFileOpen()) FileClose();
  FILE* file = fileName ? std::fopen(fileName, "rt") : nullptr;
  if (!file) {
    mError.SetLastErrorID(KError::eFileNotOpened);
    return false;
  }
  mFile = file;
  mFileName = fileName;
  return true;
}

bool KZylReaderCollada::FileClose() {
  if (!IsFileOpen()) {
    mError.SetLastErrorID(KError::eFileNotOpened);
    return false;
  }
  int result = std::fclose(mFile);
  mFile = nullptr;
  mFileName = "";
  return result == 0;
}

KZylStreamOptions* KZylReaderCollada::GetReadOptions(bool) {
  if (!IsFileOpen()) {
    mError.SetLastErrorID(KError::eFileNotOpened);
    return nullptr;
  }
  // The options are made before any read, so they always report a zero start, frame count and
  // frame rate.
  ResetFileInfo();
  KZylStreamOptionsColladaReader* options = KZylStreamOptionsColladaReader::Create(mManager, "");
  options->GetOption("START").Set(mAnimationStart);
  options->GetOption("FRAME COUNT").Set(static_cast<int>(mFrameCount));
  options->SetTimeMode(0, mFrameRate);
  return options;
}

void KZylReaderCollada::ResetFileInfo() {
  mAnimationStart = KTime();
  mAnimationStop = KTime();
  mFrameCount = 0;
  mFrameRate = 0.0;
}

bool KZylReaderCollada::ImportLink(KZylNode&) { return true; }

bool KZylReaderCollada::Read(KZylScene& scene, KZylStreamOptions* options) {
  if (!options) {
    mError.SetLastErrorID(KError::eInvalidReadOptions);
    return false;
  }
  mComplete = options->GetOption(kColladaOptionComplete).GetBool();
  mMaxSceneInstances = static_cast<int>(
      IntegerOption(*options, "MAX SCENE INSTANCES", KZylStreamOptionsColladaReader::kDefaultSceneInstances));
  mDocument.reset();
  mReleasedAt.reset();
  ResetDocumentState();
  mLeftUnread.clear();
  // The document's tree goes before the scene's copy is made, and lends it its pages.
  const PageRecycling recycling;
  XmlParseFailure xmlFailure;
  InputLimits limits;
  limits.ratio = IntegerOption(*options, "GZIP RATIO", limits.ratio);
  limits.floorBytes = IntegerOption(*options, "GZIP FLOOR", limits.floorBytes);
  limits.maxAttributesPerElement = IntegerOption(*options, "MAX ATTRIBUTES PER ELEMENT", limits.maxAttributesPerElement);
  limits.zaeArchives = mComplete;
  mDocument = ParseXmlFile(mFileName, &xmlFailure, limits);
  mXmlFailure.reset();
  if (!mDocument) mXmlFailure = xmlFailure;
  // The reader's own refusal of the file's bytes says why before the usual failure.
  if (xmlFailure.refused) AddNotificationError(xmlFailure.message);
  if (mDocument) {
    mState->output = OutputBudget(
        static_cast<int64_t>(mDocument->InputBytes()),
        IntegerOption(*options, "OUTPUT RATIO", KZylStreamOptionsColladaReader::kDefaultOutputRatio),
        IntegerOption(*options, "OUTPUT FLOOR", KZylStreamOptionsColladaReader::kDefaultOutputFloor));
  }
  bool ok = mDocument && ReadCollada(scene, mDocument->Root());
  if (!ok) {
    // The same message for a file that is not XML and for a faulty document. A faulty
    // document stays held until the next read or the reader's end.
    mErrorText += kParseFailure;
    mError.SetLastError(0, kParseFailure);
    AddNotificationError(kParseFailure);
    return false;
  }

  KZylTakeInfo take;
  take.mName = kTakeName;
  take.mLocalTimeSpan.Set(mAnimationStart, mAnimationStop);
  take.mReferenceTimeSpan.Set(mAnimationStart, mAnimationStop);
  scene.SetTakeInfo(take);
  scene.SetCurrentTake(kTakeName);

  KZylSceneRenamer(scene, mRenamingStrategy).RenameFor(KZylSceneRenamer::eColladaToZyl);
  mDocument.reset();
  return true;
}

void KZylReaderCollada::ResetDocumentState() {
  mState = std::make_unique<DocumentState>();
  mAnimationStart = KTime();
  mAnimationStop = KTime();
  mFirstKey = false;
  mSceneElement = nullptr;
  mVisualSceneElement = nullptr;
}

void KZylReaderCollada::AddToMaterialSet(KZylSurfaceMaterial* material) {
  if (!material) return;
  if (mState->materials.HasItem(material)) return;
  if (mMaterialSet.Add(material)) mMaterialSetIds.push_back(material->GetUniqueID());
}

void KZylReaderCollada::DestroyUnusedPlaceholderMaterials() {
  if (mMaterialSet.GetCount() == 0) return;
  // Materials that meshes held by nodes still use stay.
  std::unordered_set<const KZylObject*> used;
  const int meshCount = mManager->GetSrcObjectCount<KZylMesh>();
  for (int i = 0; i < meshCount; ++i) {
    KZylMesh* mesh = mManager->GetSrcObject<KZylMesh>(i);
    if (mesh->GetNodeCount() == 0) continue;
    for (int j = 0; j < mesh->GetLayerCount(); ++j)
      if (const KZylLayerElementMaterial* materials = mesh->GetLayer(j)->GetMaterials())
        for (KZylSurfaceMaterial* material : materials->GetDirectArray()) used.insert(material);
  }
  // Only the set's materials that are still alive: the application may have destroyed some,
  // and their addresses may since have been reused (their unique ids cannot).
  std::unordered_map<const KZylSurfaceMaterial*, uint64_t> setIds;
  for (int i = 0; i < mMaterialSet.GetCount(); ++i)
    setIds.emplace(mMaterialSet.GetAt(i), mMaterialSetIds[static_cast<size_t>(i)]);
  std::vector<KZylObject*> unused;
  const int materialCount = mManager->GetSrcObjectCount<KZylSurfaceMaterial>();
  for (int i = 0; i < materialCount; ++i) {
    KZylSurfaceMaterial* material = mManager->GetSrcObject<KZylSurfaceMaterial>(i);
    auto entry = setIds.find(material);
    if (entry != setIds.end() && entry->second == material->GetUniqueID() && !used.count(material))
      unused.push_back(material);
  }
  mManager->DestroyObjects(unused);
}

}  // namespace zylsdk

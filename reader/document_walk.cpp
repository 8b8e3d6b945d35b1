// The walk over the top level of a document, and the version check.

#include <algorithm>
#include <cstring>
#include <vector>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"

namespace zylsdk {
namespace {

constexpr int kSupportedMajor = 1;
constexpr int kSupportedMinor = 4;

bool IsOneOf(const char* name, std::initializer_list<const char*> names) {
  for (const char* candidate : names)
    if (std::strcmp(name, candidate) == 0) return true;
  return false;
}

// True when the document has a library of animations, in either form.
bool HasAnimationLibrary(DaeElement* root) {
  for (DaeElement* element = firstChildElement(root); element; element = nextSiblingElement(element))
    if (DAE_IsElement(element, "library_animations") ||
        (DAE_IsElement(element, "library") && DAE_GetProperty(element, "type") == "ANIMATION"))
      return true;
  return false;
}

}  // namespace

bool KZylReaderCollada::ReadCollada(KZylScene& scene, DaeElement* root) {
  if (!DAE_IsElement(root, "COLLADA")) return false;
  const ReadingAt reading(*this, root);
  mColladaVersion = DAE_GetProperty(root, "version");
  if (!(mStatus = CheckColladaVersion())) return false;
  scene.GetGlobalLightSettings().SetAmbientColor(KZylColor(0.0, 0.0, 0.0, 1.0));
  mState->recordsAnimationTargets = HasAnimationLibrary(root);
  mState->elementsById.SetDocument(root);

  KZylSceneInfo* sceneInfo = nullptr;
  if (mComplete) {
    if (!ReadAnyStructure(scene, root, sceneInfo)) return false;
  } else if (DaeElement* asset = firstChildElement(root)) {
    if (!DAE_IsElement(asset, "asset")) {
      const ReadingAt readingFirst(*this, asset);
      AddNotificationError(KString("<asset> node not found, at node: <") + DAE_GetName(asset) + ">");
      return false;
    }
    sceneInfo = KZylSceneInfo::Create(mManager, "");
    if (!(mStatus = ImportAsset(asset, scene, *sceneInfo))) return false;

    for (DaeElement* element = nextSiblingElement(asset); element; element = nextSiblingElement(element)) {
      const char* name = DAE_GetName(element);
      const ReadingAt readingElement(*this, element);
      if (IsOneOf(name, {"library_animations", "library_cameras", "library_controllers", "library_geometries",
                         "library_lights", "library_visual_scenes"})) {
        if (!(mStatus = ImportLibrary(scene, element))) return false;
      } else if (std::strcmp(name, "library_effects") == 0) {
        // Effects are read with the materials that use them.
        if (!findChildByType(root, "library_materials"))
          AddNotificationWarning(KString("library_effects exists but there is no library_materials using it.") +
                                 " This library will not be read.");
      } else if (std::strcmp(name, "library_images") == 0) {
        // Images are read with the effects that use them.
        if (!findChildByType(root, "library_effects"))
          AddNotificationWarning(KString("library_images exists but there is no library_effects using it.") +
                                 " This library will not be read.");
      } else if (std::strcmp(name, "library_materials") == 0) {
        // Images, then effects, then materials: each needs the one before.
        if (DaeElement* images = findChildByType(root, "library_images"))
          if (!(mStatus = ImportLibrary(scene, images))) return false;
        DaeElement* effects = findChildByType(root, "library_effects");
        if (!effects) return false;
        if (!(mStatus = ImportLibrary(scene, effects))) return false;
        if (!(mStatus = ImportLibrary(scene, element))) return false;
      } else if (IsOneOf(name, {"library_nodes", "library_physics_materials", "library_physics_models",
                                "library_physics_scenes", "library_force_fields", "library_animation_clips"})) {
        WarnOnce(name, KString("library type not supported: ") + name);
      } else if (std::strcmp(name, "library") == 0) {
        WarnOnce(name, KString("structure ") + name + " is deprecated in Collada 1.4.");
        if (!(mStatus = ImportLibrary(scene, element))) return false;
      } else if (std::strcmp(name, "scene") == 0) {
        mSceneElement = element;
        DaeElement* extra = nextSiblingElement(element);
        if (!(mStatus = ImportScene(scene, element, !extra && !AnimationsToRead()))) return false;
        if (extra) {
          AddNotificationError(KString("extra structure at the end of the main structure: <") + DAE_GetName(extra) + ">");
          return false;
        }
        break;
      } else {
        AddNotificationWarning(KString("unknown structure in the main structure: <") + name + ">");
      }
    }
  }

  // Animations find their targets in the finished scene, so they come last. Each reads only its
  // own sources, whose lists are given back once it is read.
  for (int i = 0; i < mState->animations.GetCount(); ++i) {
    if (!(mStatus = ImportAnimation(mState->animations.Get(i), scene))) return false;
    ReleaseListsOf(mState->animations.Get(i));
  }
  if (mComplete) BakeMatrixAnimations();

  if (sceneInfo) scene.SetSceneInfo(sceneInfo);
  ConnectMeshMaterials(scene);
  return true;
}

namespace {

// The order in which the complete reading imports the top-level elements: what an element
// refers to comes before it, whatever the document's order.
int ImportRank(const DaeElement* element) {
  static const char* const kOrder[][2] = {
      {"library_images", "IMAGE"},          {"library_effects", ""},        {"library_materials", "MATERIAL"},
      {"library_geometries", "GEOMETRY"},   {"library_controllers", "CONTROLLER"},
      {"library_cameras", "CAMERA"},        {"library_lights", "LIGHT"},    {"library_animations", "ANIMATION"},
      {"library_visual_scenes", ""},        {"scene", ""}};
  const int count = static_cast<int>(sizeof(kOrder) / sizeof(kOrder[0]));
  const KString type = DAE_IsElement(element, "library") ? DAE_GetProperty(element, "type") : KString();
  for (int rank = 0; rank < count; ++rank)
    if (DAE_IsElement(element, kOrder[rank][0]) || (!type.IsEmpty() && type == kOrder[rank][1])) return rank;
  // Anything else (unsupported libraries, unknown elements) only warns: read it first.
  return -1;
}

}  // namespace

bool KZylReaderCollada::ReadAnyStructure(KZylScene& scene, DaeElement* root, KZylSceneInfo*& sceneInfo) {
  std::vector<DaeElement*> elements;
  DaeElement* asset = nullptr;
  for (DaeElement* element = firstChildElement(root); element; element = nextSiblingElement(element)) {
    if (!DAE_IsElement(element, "asset")) {
      elements.push_back(element);
    } else if (!asset) {
      asset = element;
      const ReadingAt readingAsset(*this, element);
      if (element != firstChildElement(root)) AddNotificationWarning("<asset> is not the first element: read where it stands");
    }
  }
  if (asset) {
    sceneInfo = KZylSceneInfo::Create(mManager, "");
    if (!(mStatus = ImportAsset(asset, scene, *sceneInfo))) return false;
  } else if (!elements.empty()) {
    AddNotificationWarning("the document has no <asset>: default axis system and unit");
  }

  std::stable_sort(elements.begin(), elements.end(),
                   [](const DaeElement* a, const DaeElement* b) { return ImportRank(a) < ImportRank(b); });
  bool sceneRead = false;
  for (DaeElement* element : elements) {
    const char* name = DAE_GetName(element);
    const ReadingAt readingElement(*this, element);
    if (std::strcmp(name, "scene") == 0) {
      // The first scene counts.
      if (sceneRead) continue;
      sceneRead = true;
      mSceneElement = element;
      if (!(mStatus = ImportScene(scene, element, element == elements.back() && !AnimationsToRead()))) return false;
    } else if (std::strcmp(name, "library") == 0) {
      WarnOnce(name, KString("structure ") + name + " is deprecated in Collada 1.4.");
      if (!(mStatus = ImportLibrary(scene, element))) return false;
    } else if (std::strcmp(name, "library_nodes") == 0) {
      // Read where instance_node elements name its nodes.
    } else if (IsOneOf(name, {"library_physics_materials", "library_physics_models", "library_physics_scenes",
                              "library_force_fields", "library_animation_clips"})) {
      WarnOnce(name, KString("library type not supported: ") + name);
    } else if (ImportRank(element) >= 0) {
      if (!(mStatus = ImportLibrary(scene, element))) return false;
    } else {
      AddNotificationWarning(KString("unknown structure in the main structure: <") + name + ">");
    }
  }
  return true;
}

bool KZylReaderCollada::AnimationsToRead() const { return mState->animations.GetCount() > 0; }

void KZylReaderCollada::SkipUnknownElement(const char* name) {
  WarnOnce(KString("unknown <") + name + ">", KString("unknown element <") + name + "> skipped");
}

void KZylReaderCollada::ConnectMeshMaterials(KZylScene& scene) {
  for (int i = 0; i < scene.GetGeometryCount(); ++i) {
    KZylGeometry* geometry = scene.GetGeometry(i);
    KZylNode* node = geometry->GetNode();
    if (!node) continue;
    for (int j = 0; j < geometry->GetLayerCount(KZylLayerElement::eMaterial); ++j) {
      const KZylLayerElementMaterial* element = geometry->GetLayer(j, KZylLayerElement::eMaterial)->GetMaterials();
      KZylLayerElement::EReferenceMode mode = element->GetReferenceMode();
      if (mode != KZylLayerElement::eDirect && mode != KZylLayerElement::eIndexToDirect) continue;
      for (KZylSurfaceMaterial* material : element->GetDirectArray()) {
        if (!material) continue;
        if (!node->IsConnectedZylSrc(material)) node->ConnectZylSrc(material);
        KZylScene* owner = material->GetScene();
        if (owner == &scene) continue;
        if (owner) owner->DisconnectZylSrc(material);
        scene.ConnectZylSrc(material);
      }
    }
  }
}

bool KZylReaderCollada::CheckColladaVersion() {
  const KString& version = mColladaVersion;
  int firstDot = version.Find('.');
  if (firstDot < 0) {
    AddNotificationError("Bad syntax for version number (" + version + ")");
    return false;
  }
  int secondDot = version.Find('.', firstDot + 1);
  KString majorText = version.Left(firstDot);
  // The minor part keeps its leading dot; the number reader passes over it.
  KString minorText = secondDot < 0 ? version.Mid(firstDot) : version.Mid(firstDot, secondDot - firstDot);
  const char* cursor = majorText.Buffer();
  int major = strtoint(&cursor);
  cursor = minorText.Buffer();
  int minor = strtoint(&cursor);

  const KString supported = KString() + kSupportedMajor + "." + kSupportedMinor + ".*.";
  if (major <= 0 || (major == kSupportedMajor && minor < kSupportedMinor)) {
    AddNotificationWarning("Old Collada format (" + version + "). " +
                           "This format is weakly supported and could cause read errors. " +
                           "There is strong support for Collada format " + supported);
  } else if (major > kSupportedMajor || (major == kSupportedMajor && minor > kSupportedMinor)) {
    AddNotificationWarning("Collada format " + version + " newer than supported format " + supported +
                           " Might be weakly supported.");
  }
  return true;
}

}  // namespace zylsdk

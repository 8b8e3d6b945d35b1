// Library elements: each member is handed to the import of its kind.

#include <cstring>
#include <functional>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"

namespace zylsdk {

bool KZylReaderCollada::ImportLibrary(KZylScene& scene, DaeElement* library) {
  const ReadingAt reading(*this, library);
  const KString name = DAE_GetName(library);
  const KString type = DAE_GetProperty(library, "type");

  // The member element of the library and the import of one member. A failed image, effect
  // or material is skipped (it reported why) and the library goes on.
  const char* member = nullptr;
  std::function<bool(DaeElement*)> import;
  bool failureEndsLibrary = true;
  // A geometry's and a controller's number lists are read by its own import only (a geometry's
  // also by convex meshes built on it): they are given back as soon as it is read, so that the
  // lists of a whole document are never held beside the scene they became.
  bool listsReadOnce = false;
  if (name == "library_geometries" || type == "GEOMETRY") {
    member = "geometry";
    import = [this](DaeElement* e) { return ImportGeometry(e); };
    listsReadOnce = true;
  } else if (name == "library_controllers" || type == "CONTROLLER") {
    member = "controller";
    import = [this](DaeElement* e) { return ImportController(e); };
    listsReadOnce = true;
  } else if (name == "library_animations" || type == "ANIMATION") {
    // Animations are read after the scene, once their target nodes exist.
    member = "animation";
    import = [this](DaeElement* e) {
      mState->animations.Add(DAE_GetProperty(e, "id"), e);
      return true;
    };
  } else if (name == "library_materials" || type == "MATERIAL") {
    member = "material";
    import = [this](DaeElement* e) { return ImportMaterial(e); };
    failureEndsLibrary = false;
  } else if (name == "library_effects") {
    member = "effect";
    import = [this](DaeElement* e) { return ImportEffect(e); };
    failureEndsLibrary = false;
  } else if (name == "library_images" || type == "IMAGE") {
    member = "image";
    import = [this](DaeElement* e) { return ImportImage(e); };
    failureEndsLibrary = false;
  } else if (name == "library_cameras" || type == "CAMERA") {
    member = "camera";
    import = [this](DaeElement* e) { return ImportCamera(e); };
  } else if (name == "library_lights" || type == "LIGHT") {
    member = "light";
    import = [this, &scene](DaeElement* e) { return ImportLight(scene, e); };
  } else if (type == "PHYSICS") {
    WarnOnce("PHYSICS", "library type not supported: " + type);
    return true;
  } else if (name == "library_visual_scenes") {
    member = "visual_scene";
    import = [this](DaeElement* e) {
      mVisualSceneElement = e;
      return ImportVisualScene(e);
    };
  } else if (name == "library_animation_clips" || name == "library_force_fields" || name == "library_nodes" ||
             name == "library_physics_materials" || name == "library_physics_models" ||
             name == "library_physics_scenes") {
    WarnOnce(name, "library type not supported: " + name);
    return true;
  } else if (mComplete) {
    SkipUnknownElement(name.Buffer());
    return true;
  } else {
    AddNotificationError("Unrecognized library element: " + name);
    return false;
  }

  for (DaeElement* child = firstChildElement(library); child; child = nextSiblingElement(child)) {
    if (!DAE_IsElement(child, member)) continue;
    const bool readOnce = listsReadOnce && !IsHullOfAnother(child);
    mState->listsReadOnceIn = readOnce ? child : nullptr;
    mStatus = import(child);
    mState->listsReadOnceIn = nullptr;
    if (readOnce) ReleaseListsOf(child);
    if (!mStatus && failureEndsLibrary) return false;
  }
  mStatus = true;
  return true;
}

}  // namespace zylsdk

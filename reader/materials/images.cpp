// Images and textures: each `image` into a texture that carries the file name, and each
// `texture` reference of an effect into a texture of its own that takes the image's file and
// is listed, with its channel, under the effect for the meshes that use it.

#include <memory>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"

namespace zylsdk {
namespace {

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Removes one URL prefix from an image path: "file:///", else "file://", else "./", the first
// occurrence wherever it stands. False when the path has none of them.
bool RemoveUrlPrefix(KString& path) {
  const char* const fileUrl = "file:///";
  if (path.Find(fileUrl) == 0) {
    // A POSIX absolute path stays absolute; a drive letter ("C|" or "C:") starts the path.
    const bool driveLetter = path.GetLen() > 9 && IsAsciiLetter(path[8]) && (path[9] == '|' || path[9] == ':');
    return path.FindAndReplace(fileUrl, driveLetter ? "" : "/");
  }
  return path.FindAndReplace(fileUrl, "") || path.FindAndReplace("file://", "") || path.FindAndReplace("./", "");
}

// The `newparam` named `sid` in the scopes around `from` (nearest first, up to the effect)
// that holds a `type` child; that child, or null.
DaeElement* FindParameter(const DaeElement* from, const KString& sid, const char* type) {
  for (const DaeElement* scope = parentElement(from); scope; scope = parentElement(scope)) {
    for (DaeElement* child = firstChildElement(scope); child; child = nextSiblingElement(child))
      if (DAE_IsElement(child, "newparam") && DAE_GetProperty(child, "sid") == sid)
        if (DaeElement* value = findChildByType(child, type)) return value;
    if (DAE_IsElement(scope, "effect")) break;
  }
  return nullptr;
}

// The image a `texture` element names: directly, or through a `sampler2D` parameter of the
// effect whose `source` surface names the image in its `init_from`. The complete reading also
// follows COLLADA 1.5's `instance_image` of the sampler.
KString ImageIdOf(const DaeElement* texture, bool complete) {
  const KString name = DAE_GetProperty(texture, "texture");
  DaeElement* sampler = name.IsEmpty() ? nullptr : FindParameter(texture, name, "sampler2D");
  if (!sampler) return name;
  if (const DaeElement* image = complete ? findChildByType(sampler, "instance_image") : nullptr)
    return DAE_GetUrl(image);
  DaeElement* surface = FindParameter(texture, DAE_GetContent(findChildByType(sampler, "source")), "surface");
  DaeElement* initFrom = findChildByType(surface, "init_from");
  return initFrom ? DAE_GetContent(initFrom) : name;
}

// The address an image's `init_from` gives. COLLADA 1.5 writes it in a `ref` child, which the
// complete reading reads.
KString InitFromAddress(const DaeElement* initFrom, bool complete) {
  if (const DaeElement* ref = complete ? findChildByType(initFrom, "ref") : nullptr) return DAE_GetContent(ref);
  return DAE_GetContent(initFrom);
}

}  // namespace

bool KZylReaderCollada::ImportImage(DaeElement* image) {
  const ReadingAt reading(*this, image);
  const KString id = DAE_GetProperty(image, "id");
  DaeElement* initFrom = findChildByType(image, "init_from");
  if (!initFrom) {
    AddNotificationError("Image " + id + " has no input file.");
    return false;
  }
  KString path = InitFromAddress(initFrom, mComplete);
  if (!RemoveUrlPrefix(path))
    AddNotificationWarning("Image file path " + path +
                           " does not begin with \"./\", \"file://\" or \"file:///\". Some textures might not be loaded.");

  KZylTexture* texture = KZylTexture::Create(mManager, id.Buffer());
  // The drive letter of a file URL is written "C|".
  path.FindAndReplace("|", ":");
  texture->SetFileName(path);

  // The relative name is the path seen from the current directory, when it can be written so.
  const KString directory = GetRelativePath(path, KGetCurrentDirectory());
  const bool relative = directory != KGetCurrentDirectory();
  texture->SetRelativeFileName(relative ? MakeFullPath(directory, ExtractFileName(path, true)) : path);

  mState->images.Add(id, texture);
  return true;
}

bool KZylReaderCollada::ImportTexture(DaeElement* textureElement, KString effectId,
                                      KZylLayerElement::ELayerElementType layerKind) {
  const KString imageId = ImageIdOf(textureElement, mComplete);
  // Every reference gets a texture of its own, even when several name one image.
  KZylTexture* texture = KZylTexture::Create(mManager, imageId.Buffer());
  // Without `extra` the texture stays bare: no file, not placed on any mesh (the complete
  // reading places it all the same).
  DaeElement* extra = findChildByType(textureElement, "extra");
  if (!extra && !mComplete) return true;

  if (DaeElement* technique = getTechniqueNode(extra, "KORU")) {
    KZylTexture::EWrapMode wrapU = KZylTexture::eRepeat;
    KZylTexture::EWrapMode wrapV = KZylTexture::eRepeat;
    KZylTexture::EBlendMode blend = KZylTexture::eNormal;
    for (DaeElement* setting = firstChildElement(technique); setting; setting = nextSiblingElement(setting)) {
      const KString name = DAE_GetName(setting);
      const KString value = DAE_GetContent(setting).Upper();
      if (name == "wrapU" || name == "wrapV") {
        // "wrap false" means the texture does not repeat in that direction.
        (name == "wrapU" ? wrapU : wrapV) = value == "FALSE" ? KZylTexture::eClamp : KZylTexture::eRepeat;
      } else if (name == "blend_mode") {
        blend = value == "NONE" ? KZylTexture::eNormal : KZylTexture::eAdditive;
        // Any unknown mode blends additively; the message names the setting, not the value.
        if (value != "NONE" && value != "ADD") WarnOnce(name, "texture blend mode not recognized: " + name);
      } else {
        WarnOnce(name, "this texture parameter not supported: " + name);
      }
    }
    texture->SetWrapMode(wrapU, wrapV);
    texture->SetBlendMode(blend);
    texture->SetMaterialUse(0);
  }

  const int image = mState->images.Find(imageId);
  if (image < 0) {
    AddNotificationError("Image not found: " + imageId);
    return false;
  }
  texture->SetFileName(mState->images.Get(image)->GetFileName());
  texture->SetRelativeFileName(mState->images.Get(image)->GetRelativeFileName());

  // One array of uses per effect, listed once more for each of its textures, so that each
  // material instancing the effect can take one listing of it.
  TextureUseArray* uses = mState->textures.Lookup(effectId);
  if (!uses) uses = mState->textures.Keep(TextureUseArray());
  uses->Add(TextureUse{texture, 0, layerKind, DAE_GetProperty(textureElement, "texcoord")});
  mState->textures.Add(effectId, uses);
  if (mComplete) mState->effectTextures.emplace(effectId, uses);
  return true;
}

}  // namespace zylsdk

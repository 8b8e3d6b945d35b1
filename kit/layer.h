#pragma once
// Layers and layer elements: per-geometry data such as normals, vertex colours, UVs,
// materials and textures, each with a mapping mode (what one entry is attached to) and a
// reference mode (whether entries are read directly or through an index array).

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <unordered_set>
#include <vector>

#include "kit/karray.h"
#include "kit/kmath.h"
#include "kit/kstring.h"

namespace zylsdk {

class KZylSdkManager;
class KZylSurfaceMaterial;
class KZylTexture;
class KZylObject;

class KZylLayerElement {
 public:
  enum ELayerElementType {
    eUndefined = 0,
    eNormal = 1,
    eMaterial = 2,
    eDiffuseTextures = 3,
    ePolygonGroup = 4,
    eUV = 5,
    eVertexColor = 6,
    eEmissiveTextures = 10,
    eAmbientTextures = 12,
    eSpecularTextures = 15,
    eTransparentTextures = 20,
    eReflectionTextures = 22
  };
  enum EMappingMode {
    eNone = 0,
    eByControlPoint = 1,
    eByPolygonVertex = 2,
    eByPolygon = 3,
    eByEdge = 4,
    eAllSame = 5
  };
  enum EReferenceMode { eDirect = 0, eIndex = 1, eIndexToDirect = 2 };

  virtual ~KZylLayerElement() = default;

  // The kind of element: eNormal, eVertexColor, eUV, eMaterial or eDiffuseTextures (the
  // texture elements, whatever channel they serve).
  virtual ELayerElementType GetKind() const = 0;

  EMappingMode GetMappingMode() const { return mMappingMode; }
  void SetMappingMode(EMappingMode mode) { mMappingMode = mode; }
  EReferenceMode GetReferenceMode() const { return mReferenceMode; }
  void SetReferenceMode(EReferenceMode mode) { mReferenceMode = mode; }
  const KString& GetName() const { return mName; }
  void SetName(const KString& name) { mName = name; }

  KArrayTemplate<int>& GetIndexArray() { return mIndexArray; }
  const KArrayTemplate<int>& GetIndexArray() const { return mIndexArray; }

  // An independent copy: arrays copied, references to materials and textures kept.
  virtual std::unique_ptr<KZylLayerElement> Clone() const = 0;

 protected:
  explicit KZylLayerElement(const char* name) : mName(name) {}
  KZylLayerElement(const KZylLayerElement&) = default;

 private:
  EMappingMode mMappingMode = eNone;
  EReferenceMode mReferenceMode = eDirect;
  KString mName;
  KArrayTemplate<int> mIndexArray;
};

template <class T, KZylLayerElement::ELayerElementType Kind>
class KZylLayerElementTemplate : public KZylLayerElement {
 public:
  explicit KZylLayerElementTemplate(const char* name) : KZylLayerElement(name) {}
  ELayerElementType GetKind() const override { return Kind; }
  KArrayTemplate<T>& GetDirectArray() { return mDirectArray; }
  const KArrayTemplate<T>& GetDirectArray() const { return mDirectArray; }
  // Sets every index that points outside the direct array to -1; returns how many it set. An
  // element read directly has no indices to check.
  int ClearIndicesOutsideDirectArray() {
    if (GetReferenceMode() == eDirect) return 0;
    const int size = mDirectArray.GetCount();
    auto outside = [size](int index) { return index != -1 && (index < 0 || index >= size); };
    const std::vector<int>& indices = std::as_const(GetIndexArray()).Std();
    const int count = static_cast<int>(std::count_if(indices.begin(), indices.end(), outside));
    // Written only when needed: the array may be shared with copies of this element.
    if (count > 0)
      for (int& index : GetIndexArray().Std())
        if (outside(index)) index = -1;
    return count;
  }
  std::unique_ptr<KZylLayerElement> Clone() const override {
    return std::unique_ptr<KZylLayerElement>(CloneSelf());
  }

 protected:
  virtual KZylLayerElementTemplate* CloneSelf() const { return new KZylLayerElementTemplate(*this); }

 private:
  KArrayTemplate<T> mDirectArray;
};

using KZylLayerElementNormal = KZylLayerElementTemplate<KZylVector4, KZylLayerElement::eNormal>;
using KZylLayerElementVertexColor = KZylLayerElementTemplate<KZylColor, KZylLayerElement::eVertexColor>;
using KZylLayerElementUV = KZylLayerElementTemplate<KZylVector2, KZylLayerElement::eUV>;
using KZylLayerElementMaterial = KZylLayerElementTemplate<KZylSurfaceMaterial*, KZylLayerElement::eMaterial>;

// Textures of one channel, with the way they blend with the layers below.
class KZylLayerElementTexture : public KZylLayerElementTemplate<KZylTexture*, KZylLayerElement::eDiffuseTextures> {
 public:
  enum EBlendMode { eTranslucent = 0, eAdditive = 1 };
  using KZylLayerElementTemplate::KZylLayerElementTemplate;
  EBlendMode GetBlendMode() const { return mBlendMode; }
  void SetBlendMode(EBlendMode mode) { mBlendMode = mode; }

 protected:
  KZylLayerElementTexture* CloneSelf() const override { return new KZylLayerElementTexture(*this); }

 private:
  EBlendMode mBlendMode = eTranslucent;
};

// One layer of a geometry: at most one element of each kind; UVs and textures are keyed by
// the texture channel (layer element type) they serve.
class KZylLayer {
 public:
  using ELayerElementType = KZylLayerElement::ELayerElementType;

  explicit KZylLayer(KZylSdkManager& manager) : mManager(&manager) {}

  KZylLayerElementNormal* GetNormals() const { return mNormals.get(); }
  KZylLayerElementVertexColor* GetVertexColors() const { return mVertexColors.get(); }
  KZylLayerElementMaterial* GetMaterials() const { return mMaterials.get(); }
  KZylLayerElementUV* GetUVs(ELayerElementType channel = KZylLayerElement::eDiffuseTextures) const;
  KZylLayerElementTexture* GetTextures(ELayerElementType channel) const;
  // Channels that hold UVs / textures, in increasing order.
  std::vector<ELayerElementType> GetUVChannels() const;
  std::vector<ELayerElementType> GetTextureChannels() const;

  // Attach an element. The layer takes ownership of an element made by its manager's
  // factories; an element that another layer owns is copied instead. Null removes the element.
  void SetNormals(KZylLayerElementNormal* element);
  void SetVertexColors(KZylLayerElementVertexColor* element);
  void SetMaterials(KZylLayerElementMaterial* element);
  void SetUVs(KZylLayerElementUV* element, ELayerElementType channel = KZylLayerElement::eDiffuseTextures);
  void SetTextures(ELayerElementType channel, KZylLayerElementTexture* element);

  // True when the layer holds an element of that type (for UVs, eUV; for textures, a channel).
  bool HasElement(ELayerElementType type) const;

  // Makes this layer an independent copy of `source` (elements cloned).
  void Clone(const KZylLayer& source, KZylSdkManager* manager = nullptr);

  // Removes references to destroyed materials and textures (their entries become null).
  void ForgetObjects(const std::unordered_set<const KZylObject*>& gone);

 private:
  template <class E>
  std::unique_ptr<E> Adopt(E* element);

  KZylSdkManager* mManager;
  std::unique_ptr<KZylLayerElementNormal> mNormals;
  std::unique_ptr<KZylLayerElementVertexColor> mVertexColors;
  std::unique_ptr<KZylLayerElementMaterial> mMaterials;
  std::map<int, std::unique_ptr<KZylLayerElementUV>> mUVs;
  std::map<int, std::unique_ptr<KZylLayerElementTexture>> mTextures;
};

}  // namespace zylsdk

#pragma once
// KZylScene: a node hierarchy under a root node, with the scene-wide settings (axis system,
// unit, ambient light), document information, takes and poses.
//
// Defaults: Y-up right-handed axis system (up 2, front 2, coordinate system 0); system unit
// 1 centimetre; ambient colour (0, 0, 0, 1); no scene info; no take.

#include <vector>

#include "kit/node.h"
#include "kit/object.h"

namespace zylsdk {

class KZylGeometry;
class KZylPose;
class KZylSurfaceMaterial;
class KZylTexture;

class KZylAxisSystem {
 public:
  enum EUpVector { eXAxis = 1, eYAxis = 2, eZAxis = 3 };
  // Parity of the front axis; negative values point the opposite way.
  enum EFrontVector { eParityEven = 1, eParityOdd = 2 };
  enum ECoordSystem { eRightHanded = 0, eLeftHanded = 1 };

  KZylAxisSystem() = default;
  KZylAxisSystem(int upVector, int frontVector, int coordSystem)
      : mUp(upVector), mFront(frontVector), mCoordSystem(coordSystem) {}
  int GetUpVector() const { return mUp; }
  int GetFrontVector() const { return mFront; }
  int GetCoorSystem() const { return mCoordSystem; }
  friend bool operator==(const KZylAxisSystem& a, const KZylAxisSystem& b) {
    return a.mUp == b.mUp && a.mFront == b.mFront && a.mCoordSystem == b.mCoordSystem;
  }

 private:
  int mUp = eYAxis;
  int mFront = eParityOdd;
  int mCoordSystem = eRightHanded;
};

// A length unit, as its size in centimetres.
class KZylSystemUnit {
 public:
  explicit KZylSystemUnit(double centimetres = 1.0) : mCentimetres(centimetres) {}
  double GetScaleFactor() const { return mCentimetres; }

 private:
  double mCentimetres;
};

class KZylGlobalSettings {
 public:
  const KZylAxisSystem& GetAxisSystem() const { return mAxisSystem; }
  void SetAxisSystem(const KZylAxisSystem& axisSystem) { mAxisSystem = axisSystem; }
  const KZylSystemUnit& GetSystemUnit() const { return mSystemUnit; }
  void SetSystemUnit(const KZylSystemUnit& unit) { mSystemUnit = unit; }

 private:
  KZylAxisSystem mAxisSystem;
  KZylSystemUnit mSystemUnit;
};

class KZylGlobalLightSettings {
 public:
  const KZylColor& GetAmbientColor() const { return mAmbientColor; }
  void SetAmbientColor(const KZylColor& color) { mAmbientColor = color; }

 private:
  KZylColor mAmbientColor;
};

// Document information: who made the scene and what it is.
class KZylSceneInfo : public KZylObject {
  KZYL_DECLARE_CLASS(KZylSceneInfo)
 public:
  KString mAuthor;
  KString mTitle;
  KString mSubject;
  KString mKeywords;
  KString mRevision;
  KString mComment;

 protected:
  using KZylObject::KZylObject;
  void CopyFrom(const KZylObject& source) override;
};

// A take: a named animation with its time spans.
class KZylTakeInfo {
 public:
  KString mName;
  KTimeSpan mLocalTimeSpan;
  KTimeSpan mReferenceTimeSpan;
};

class KZylScene : public KZylObject {
  KZYL_DECLARE_CLASS(KZylScene)
 public:
  KZylNode* GetRootNode() const { return mRootNode; }

  KZylGlobalSettings& GetGlobalSettings() { return mGlobalSettings; }
  const KZylGlobalSettings& GetGlobalSettings() const { return mGlobalSettings; }
  KZylGlobalLightSettings& GetGlobalLightSettings() { return mGlobalLightSettings; }
  const KZylGlobalLightSettings& GetGlobalLightSettings() const { return mGlobalLightSettings; }

  KZylSceneInfo* GetSceneInfo() const { return mSceneInfo; }
  void SetSceneInfo(KZylSceneInfo* sceneInfo) { mSceneInfo = sceneInfo; }

  // Takes: SetTakeInfo adds the take or replaces the one of the same name.
  void SetTakeInfo(const KZylTakeInfo& takeInfo);
  const KZylTakeInfo* GetTakeInfo(const KString& name) const;
  int GetTakeCount() const { return static_cast<int>(mTakes.size()); }
  const KZylTakeInfo* GetTakeInfo(int index) const;
  // Makes an existing take current; false when there is no take of that name.
  bool SetCurrentTake(const KString& name);
  const KString& GetCurrentTakeName() const { return mCurrentTake; }

  // Poses. A pose may be added to several scenes.
  bool AddPose(KZylPose* pose);
  int GetPoseCount() const { return static_cast<int>(mPoses.size()); }
  KZylPose* GetPose(int index) const;

  // The geometries attached to the nodes of the hierarchy, depth first, children in order.
  int GetGeometryCount() const;
  KZylGeometry* GetGeometry(int index) const;

  // Materials and textures connected to the scene (as its sources).
  int GetMaterialCount() const;
  KZylSurfaceMaterial* GetMaterial(int index) const;
  int GetTextureCount() const;
  KZylTexture* GetTexture(int index) const;

  // Every node below the root (root excluded), depth first, children in order.
  std::vector<KZylNode*> GetNodes() const;
  // The first node of that name, depth-first pre-order from the root (root included).
  KZylNode* FindNodeByName(const KString& name) const;

 protected:
  KZylScene(KZylSdkManager& manager, const char* name);
  void ForgetObjects(const ObjectSet& gone) override;

 private:
  const std::vector<KZylGeometry*>& Geometries() const;

  KZylNode* mRootNode;
  KZylGlobalSettings mGlobalSettings;
  KZylGlobalLightSettings mGlobalLightSettings;
  KZylSceneInfo* mSceneInfo = nullptr;
  std::vector<KZylTakeInfo> mTakes;
  KString mCurrentTake;
  std::vector<KZylPose*> mPoses;
  // Geometries of the hierarchy, rebuilt when the manager's hierarchy version changes.
  mutable std::vector<KZylGeometry*> mGeometries;
  mutable uint64_t mGeometriesVersion = UINT64_MAX;
};

}  // namespace zylsdk

#pragma once
// KZylPose: a list of nodes, each with a matrix; a bind pose holds each skin joint's global
// matrix at bind time.

#include <vector>

#include "kit/object.h"

namespace zylsdk {

class KZylNode;

class KZylPose : public KZylObject {
  KZYL_DECLARE_CLASS(KZylPose)
 public:
  bool IsBindPose() const { return mIsBindPose; }
  void SetIsBindPose(bool isBindPose) { mIsBindPose = isBindPose; }

  // Appends an entry and returns its index. `local` tells whether the matrix is local to the
  // node's parent (false: global).
  int Add(KZylNode* node, const KZylMatrix& matrix, bool local = false);
  int GetCount() const { return static_cast<int>(mEntries.size()); }
  // Entry access; out of range, null and the identity.
  KZylNode* GetNode(int index) const;
  KZylMatrix GetMatrix(int index) const;
  bool IsLocalMatrix(int index) const;
  // The first entry of the node object itself, or -1.
  int Find(const KZylNode* node) const;
  // Removes an entry; out-of-range indices are ignored.
  void Remove(int index);

 protected:
  using KZylObject::KZylObject;
  void CopyFrom(const KZylObject& source) override;
  void ForgetObjects(const ObjectSet& gone) override;

 private:
  struct Entry {
    KZylNode* node;
    KZylMatrix matrix;
    bool local;
  };
  std::vector<Entry> mEntries;
  bool mIsBindPose = false;
};

}  // namespace zylsdk

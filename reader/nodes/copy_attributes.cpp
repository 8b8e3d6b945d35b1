#include "reader/collada_reader.h"

namespace zylsdk {

void KZylReaderCollada::CopyMesh(KZylMesh*, KZylMesh*) {}
void KZylReaderCollada::CopyShape(KZylShape*, KZylShape*) {}
void KZylReaderCollada::CopyCamera(KZylCamera*, KZylCamera*) {}
void KZylReaderCollada::CopyLight(KZylLight*, KZylLight*) {}
void KZylReaderCollada::CopyNull(KZylNull*, KZylNull*) {}
void KZylReaderCollada::CopySkeleton(KZylSkeleton*, KZylSkeleton*) {}
void KZylReaderCollada::CopyLink(KZylCluster*, KZylCluster*) {}

KZylCluster* KZylReaderCollada::CreateCluster() {
  KZylCluster* cluster = KZylCluster::Create(mManager, "");
  mState->clusters.push_back(cluster);
  return cluster;
}

}  // namespace zylsdk

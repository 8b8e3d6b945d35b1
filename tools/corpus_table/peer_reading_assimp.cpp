// The peer reader through Assimp's C interface, with no post-processing step: meshes, faces and
// nodes are the importer's own. The one setting made stops Assimp from inventing a mesh that
// draws the skeleton when a document instances no geometry. Assimp stops the process on some
// documents (its assertions are on, and it can crash on malformed input), so each document is
// read in a child process that hands its figures back through a pipe; a child that dies or
// overruns reads as "failed".

#include <assimp/cimport.h>
#include <assimp/config.h>
#include <assimp/material.h>
#include <assimp/scene.h>
#include <assimp/version.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "tools/corpus_table/peer_reading.h"

namespace zyldae {

namespace {

using ScenePtr = std::unique_ptr<const aiScene, decltype(&aiReleaseImport)>;

long long Triangles(const aiMesh& mesh) {
  long long triangles = 0;
  for (unsigned f = 0; f < mesh.mNumFaces; ++f)
    triangles += mesh.mFaces[f].mNumIndices > 2 ? mesh.mFaces[f].mNumIndices - 2 : 0;
  return triangles;
}

void AddVertices(const aiMesh& mesh, const aiMatrix4x4& global, Box& box) {
  for (unsigned v = 0; v < mesh.mNumVertices; ++v) {
    const aiVector3D point = global * mesh.mVertices[v];
    box.Add(point.x, point.y, point.z);
  }
}

// Walks the node tree depth first with an explicit stack; the root's own transform is left out.
// Collects the materials the node meshes use in `used`.
void MeasureNodes(const aiScene& scene, PeerStats& stats, std::set<unsigned>& used) {
  std::vector<std::pair<const aiNode*, aiMatrix4x4>> pending{{scene.mRootNode, aiMatrix4x4()}};
  while (!pending.empty()) {
    auto [node, global] = pending.back();
    pending.pop_back();
    for (unsigned m = 0; m < node->mNumMeshes; ++m) {
      if (node->mMeshes[m] >= scene.mNumMeshes) continue;
      const aiMesh& mesh = *scene.mMeshes[node->mMeshes[m]];
      stats.triangles += Triangles(mesh);
      used.insert(mesh.mMaterialIndex);
      AddVertices(mesh, global, stats.worldBox);
    }
    for (unsigned c = 0; c < node->mNumChildren; ++c) {
      ++stats.nodes;
      const aiNode* child = node->mChildren[c];
      pending.push_back({child, global * child->mTransformation});
    }
  }
}

// Assimp makes every material of the document's library; ours holds only those in use.
void CountMaterials(const aiScene& scene, const std::set<unsigned>& used, PeerStats& stats) {
  std::set<std::string> paths;
  for (unsigned i : used) {
    if (i >= scene.mNumMaterials) continue;
    const aiMaterial* material = scene.mMaterials[i];
    aiString name;
    const bool placeholder = aiGetMaterialString(material, AI_MATKEY_NAME, &name) == aiReturn_SUCCESS &&
                             std::string(name.C_Str()) == AI_DEFAULT_MATERIAL_NAME;
    stats.materials += placeholder ? 0 : 1;
    for (int type = aiTextureType_NONE; type <= AI_TEXTURE_TYPE_MAX; ++type) {
      const auto textureType = static_cast<aiTextureType>(type);
      for (unsigned t = 0; t < aiGetMaterialTextureCount(material, textureType); ++t) {
        aiString path;
        if (aiGetMaterialTexture(material, textureType, t, &path) == aiReturn_SUCCESS) paths.insert(path.C_Str());
      }
    }
  }
  stats.textures = static_cast<int>(paths.size());
}

void CountAnimation(const aiScene& scene, PeerStats& stats) {
  std::set<std::string> animated;
  for (unsigned a = 0; a < scene.mNumAnimations; ++a) {
    const aiAnimation& animation = *scene.mAnimations[a];
    for (unsigned c = 0; c < animation.mNumChannels; ++c) {
      const aiNodeAnim& channel = *animation.mChannels[c];
      animated.insert(channel.mNodeName.C_Str());
      stats.tracks += (channel.mNumPositionKeys > 0) + (channel.mNumRotationKeys > 0) + (channel.mNumScalingKeys > 0);
    }
  }
  stats.animatedNodes = static_cast<int>(animated.size());
}

// Reads in this process; a document Assimp cannot read ends with `error` set.
PeerStats ReadHere(const std::string& path) {
  PeerStats stats;
  stats.available = true;
  std::unique_ptr<aiPropertyStore, decltype(&aiReleasePropertyStore)> settings(aiCreatePropertyStore(),
                                                                               &aiReleasePropertyStore);
  aiSetImportPropertyInteger(settings.get(), AI_CONFIG_IMPORT_NO_SKELETON_MESHES, 1);
  ScenePtr scene(aiImportFileExWithProperties(path.c_str(), 0, nullptr, settings.get()), &aiReleaseImport);
  if (!scene || !scene->mRootNode) {
    stats.error = aiGetErrorString();
    return stats;
  }
  stats.read = true;
  std::set<unsigned> usedMaterials;
  MeasureNodes(*scene, stats, usedMaterials);
  CountMaterials(*scene, usedMaterials, stats);
  for (unsigned m = 0; m < scene->mNumMeshes; ++m) stats.skins += scene->mMeshes[m]->mNumBones > 0 ? 1 : 0;
  CountAnimation(*scene, stats);
  return stats;
}

// The figures as one line of text for the pipe, the error message last.
std::string Serialize(const PeerStats& s) {
  const Box& b = s.worldBox;
  char text[512];
  std::snprintf(text, sizeof text, "%d %lld %d %d %d %d %d %d %d %.17g %.17g %.17g %.17g %.17g %.17g ", s.read,
                s.triangles, s.nodes, s.materials, s.textures, s.skins, s.animatedNodes, s.tracks, b.empty, b.min[0],
                b.min[1], b.min[2], b.max[0], b.max[1], b.max[2]);
  return text + s.error;
}

bool Deserialize(const std::string& text, PeerStats& s) {
  int read = 0, empty = 0, consumed = 0;
  Box& b = s.worldBox;
  if (std::sscanf(text.c_str(), "%d %lld %d %d %d %d %d %d %d %lg %lg %lg %lg %lg %lg %n", &read, &s.triangles,
                  &s.nodes, &s.materials, &s.textures, &s.skins, &s.animatedNodes, &s.tracks, &empty, &b.min[0],
                  &b.min[1], &b.min[2], &b.max[0], &b.max[1], &b.max[2], &consumed) < 15)
    return false;
  s.read = read != 0;
  b.empty = empty != 0;
  s.error = text.substr(static_cast<size_t>(consumed));
  return true;
}

// Longest a child may read one document.
constexpr unsigned kChildSeconds = 120;

}  // namespace

std::string PeerName() {
  return "Assimp " + std::to_string(aiGetVersionMajor()) + "." + std::to_string(aiGetVersionMinor()) + "." +
         std::to_string(aiGetVersionPatch());
}

PeerStats ReadWithPeer(const std::string& path) {
  PeerStats stats;
  stats.available = true;
  int fds[2];
  if (pipe(fds) != 0) {
    stats.error = "no pipe for the child reader";
    return stats;
  }
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    close(fds[0]);
    alarm(kChildSeconds);
    const std::string text = Serialize(ReadHere(path));
    const bool written = write(fds[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
    _exit(written ? 0 : 1);
  }
  close(fds[1]);
  std::string text;
  char buffer[4096];
  for (ssize_t n; child > 0 && (n = read(fds[0], buffer, sizeof buffer)) > 0;) text.append(buffer, static_cast<size_t>(n));
  close(fds[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) {
    stats.error = "no child reader";
    return stats;
  }
  if (WIFSIGNALED(status)) {
    stats.error = "Assimp stopped the process (signal " + std::to_string(WTERMSIG(status)) + ")";
    return stats;
  }
  if (!Deserialize(text, stats)) stats.error = "no answer from the child reader";
  return stats;
}

}  // namespace zyldae

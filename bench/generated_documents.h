#pragma once
// Documents made up for the benchmarks, each as the text of a whole COLLADA file.

#include <string>

namespace zylbench {

// A gently waved grid of `side` x `side` quads (two triangles each) with normals and UVs,
// instanced by one node.
std::string MeshDocument(long side);
// A skin of `joints` joints over `vertices` vertices, each weighted by four joints, instanced
// by `instances` nodes after a skeleton of joint chains.
std::string SkinDocument(long vertices, int joints, int instances);
// `nodes` nodes with `keys` keys each on their X translation; every channel in one animation
// when `grouped`, else one animation per node.
std::string AnimationDocument(int nodes, int keys, bool grouped);
// A visual scene of `count` sibling nodes, each with translate, three rotates and scale.
std::string SiblingNodesDocument(int count);
// A chain of `depth` nested nodes.
std::string NodeChainDocument(int depth);
// A mesh of `count` triangles, each in a primitive element of its own material, instanced by
// one node that binds all `count` materials (each with its own effect).
std::string MaterialsDocument(int count);

}  // namespace zylbench

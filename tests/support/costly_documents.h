#pragma once
// Small documents that ask a reader for a lot of work: each repeats one structure (instances
// of a visual scene, channels, keys, attributes, morph targets, joints, inputs, nodes, numbers)
// as often as a byte budget allows. The cost tests and the cost benchmark read them to check
// that the work of a read stays proportionate to the size of the document.
//
// This file needs no test framework, so that the benchmarks can build it too.

#include <cstddef>
#include <string>
#include <vector>

namespace zyltest {

enum class CostlyKind {
  kVisualSceneInstances,     // one visual scene (with a skinned node) instanced again and again
  kUnknownChannelTargets,    // channels on ids that name nothing, over many nodes
  kDescendingKeyTimes,       // one channel whose key times descend
  kSharedSampler,            // many channels, on many nodes, sharing one sampler
  kManyAttributes,           // elements of as many attributes as the reader takes
  kLongSamplerManyChannels,  // one sampler of many keys on many channels
  kManyMorphTargets,         // a morph of many targets, instanced
  kInstancedSkin,            // a skin of many joints instanced many times
  kRepeatedNormalInputs,     // triangles with the same NORMAL input again and again
  kEmptyNodes,               // nothing but empty nodes
  kLargeFloatArray,          // one long float_array in a mesh
  kMatrixChannels,           // channels on the matrices of many nodes, whole or one entry
};

// Every kind, in the order above.
std::vector<CostlyKind> AllCostlyKinds();
// A short name of the kind, fit for a test name ("VisualSceneInstances").
const char* CostlyName(CostlyKind kind);

// A well-formed document of the kind, at most `bytes` long and not much shorter: the repeated
// structure is repeated as often as the budget allows.
std::string CostlyDocument(CostlyKind kind, size_t bytes);

}  // namespace zyltest

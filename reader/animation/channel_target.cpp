// Channel targets: "node/sid.member" names a transform of a node, "object/sid" a camera or
// light parameter of the nodes that instance the object, and "weights(index)" a morph weight.

#include "reader/animation/animation_steps.h"
#include "reader/dom/numbers.h"

namespace zylsdk {
namespace {

const char* const kTakeName = "Take 001";

// How the element kind of a registered target chooses curves.
enum class MemberRule {
  kVector,  // "" drives the three curves from `first`; one of `letters` drives one of them
  kAngle,   // "ANGLE" drives the rotation curve of the registered axis
  kWhole,   // only "" is accepted
};

struct KindCurves {
  const char* kind;
  KZylTakeNode::EChannel first;
  MemberRule rule;
  const char* letters;
  bool percent;
};

const KindCurves kKinds[] = {
    {"translate", KZylTakeNode::eTranslationX, MemberRule::kVector, "XYZ", false},
    {"rotate", KZylTakeNode::eRotationX, MemberRule::kAngle, "", false},
    {"scale", KZylTakeNode::eScaleX, MemberRule::kVector, "XYZ", false},
    {"color", KZylTakeNode::eColorR, MemberRule::kVector, "RGB", false},
    {"intensity", KZylTakeNode::eLightIntensity, MemberRule::kWhole, "", true},
    {"falloff_angle", KZylTakeNode::eLightConeAngle, MemberRule::kWhole, "", false},
    {"xfov", KZylTakeNode::eCameraFieldOfView, MemberRule::kWhole, "", false},
    {"yfov", KZylTakeNode::eCameraFieldOfView, MemberRule::kWhole, "", false},
};

const KindCurves* FindKind(const KString& kind) {
  for (const KindCurves& row : kKinds)
    if (kind == row.kind) return &row;
  return nullptr;
}

// The node's "Take 001" take node, made current when it is made here.
KZylTakeNode* TakeOf(KZylNode& node) {
  if (node.CreateTakeNode(kTakeName)) node.SetCurrentTakeNode(kTakeName);
  return node.GetCurrentTakeNode();
}

KZylTakeNode::EChannel Offset(KZylTakeNode::EChannel first, int by) {
  return static_cast<KZylTakeNode::EChannel>(static_cast<int>(first) + by);
}

// The curves of `row` for `member` on `take`. False with the member's warning when the row
// does not accept it; true with no curve when the curve cannot be had.
bool ChooseCurves(KZylReaderCollada& reader, const KindCurves& row, const ChannelRecord& record, const KString& member,
                  KZylTakeNode& take, ChannelCurves& curves) {
  curves.percent = row.percent;
  switch (row.rule) {
    case MemberRule::kVector:
      if (member.IsEmpty()) {
        curves.stride = 3;
        for (int axis = 0; axis < 3; ++axis) curves.targets.push_back({take.GetCurve(Offset(row.first, axis)), axis});
        return true;
      }
      if (member.GetLen() == 1) {
        const int axis = KString(row.letters).Find(member[0]);
        if (axis < 0) break;
        curves.targets.push_back({take.GetCurve(Offset(row.first, axis)), 0});
        return true;
      }
      break;
    case MemberRule::kAngle:
      if (member == "ANGLE") {
        // A rotation about another axis than X, Y or Z has no curve.
        if (record.axis >= 0 && record.axis <= 2)
          curves.targets.push_back({take.GetCurve(Offset(row.first, record.axis)), 0});
        return true;
      }
      break;
    case MemberRule::kWhole:
      if (member.IsEmpty()) {
        curves.targets.push_back({take.GetCurve(row.first), 0});
        return true;
      }
      break;
  }
  reader.AddNotificationWarning("unknown target in animation channel: " + member);
  return false;
}

// A morph weight drives the shape channel of the member's target on every node that the
// morph's shapes went to.
TargetResult ResolveMorphWeight(AnimationContext& context, const KString& target, const KString& path,
                                const KString& member, ChannelCurves& curves) {
  KZylReaderCollada& reader = context.reader;
  const ShapeRecordList* records = context.state.shapes.Lookup(path);
  if (!records) {
    reader.AddNotificationError(KString("shape not found for animation") + ": " + target);
    return TargetResult::kFail;
  }
  const char* cursor = member.Buffer();
  const int position = strtoint(&cursor);
  curves.percent = true;
  for (const AnimationTargetIndex::MorphNode& morphNode : context.targets.MorphNodes(path, *records)) {
    KZylNode* node = context.targets.FindNode(morphNode.name);
    if (!node) {
      reader.AddNotificationWarning(KString("node channel not found for animation") + ": " + target);
      continue;
    }
    KZylTakeNode* take = TakeOf(*node);
    auto shape = morphNode.shapeByTarget.find(position);
    KFCurve* curve = take && shape != morphNode.shapeByTarget.end()
                         ? take->GetShapeChannel(node->GetGeometry(), shape->second)
                         : nullptr;
    if (!curve) {
      reader.AddNotificationWarning(KString("Could not get shape channel for shape ") + position +
                                    ", node: " + morphNode.name);
      continue;
    }
    curves.targets.push_back({curve, 0});
  }
  return TargetResult::kCurves;
}

}  // namespace

TargetResult ResolveChannelTarget(AnimationContext& context, const KString& target, ChannelCurves& curves) {
  KZylReaderCollada& reader = context.reader;
  KString id, path, member;
  KZylReaderCollada::SplitReferenceTarget(target, id, path, member);
  if (id.IsEmpty()) return ResolveMorphWeight(context, target, path, member, curves);

  // A node of that name, or else the first node that instances the object of that id.
  KZylNode* node = context.targets.FindNode(id);
  if (!node) node = context.targets.FindInstance(id);
  if (!node) {
    reader.AddNotificationWarning(KString("node channel not found for animation") + ": " + target);
    return TargetResult::kSkip;
  }
  KZylTakeNode* take = TakeOf(*node);
  if (reader.IsComplete() && take && ResolveMatrixTarget(context, *node, *take, path, member, curves))
    return TargetResult::kCurves;

  const ChannelRecord* record = context.state.animationTargets.Lookup(path);
  if (!record) {
    reader.AddNotificationWarning("unknown animation channel: " + path);
    return TargetResult::kSkip;
  }
  const KindCurves* row = FindKind(record->kind);
  if (!row) {
    reader.AddNotificationWarning("unknown animation channel: " + record->kind + ". This animation will be lost.");
    return TargetResult::kSkip;
  }
  if (take && !ChooseCurves(reader, *row, *record, member, *take, curves)) return TargetResult::kSkip;
  if (curves.targets.empty()) {
    reader.AddNotificationWarning("could not find curve for target " + target);
    return TargetResult::kSkip;
  }
  return TargetResult::kCurves;
}

}  // namespace zylsdk

#include "reader/collada_import.h"

#include <string>

namespace zylsdk {
namespace {

constexpr int kNotificationCode = 6;

// Whether `element` is `member` or one of its descendants.
bool IsWithin(const DaeElement* element, const DaeElement* member) {
  return element && member && &element->Document() == &member->Document() && element->Order() >= member->Order() &&
         element->Order() < member->DescendantsEnd();
}

// The id, or else the name, of the element or of its nearest ancestor that has one.
KString NearestIdentifiedElement(const DaeElement* element) {
  for (; element; element = element->Parent()) {
    if (const char* id = element->FindAttribute("id")) return id;
    if (const char* name = element->FindAttribute("name")) return name;
  }
  return "";
}

}  // namespace

KZylReaderCollada::ReadingAt::ReadingAt(KZylReaderCollada& reader, const DaeElement* element)
    : mReader(reader), mEnclosing(reader.mReadingAt) {
  if (element) reader.mReadingAt = element;
}

KZylReaderCollada::ReadingAt::~ReadingAt() { mReader.mReadingAt = mEnclosing; }

KZylUserNotification::Location KZylReaderCollada::CurrentLocation() const {
  // Once the document is freed, the elements being read are gone: their place was kept.
  if (mReadingAt && mReleasedAt) return *mReleasedAt;
  if (mReadingAt) return {mReadingAt->Line(), NearestIdentifiedElement(mReadingAt)};
  if (mXmlFailure) return {mXmlFailure->line, ""};
  return {};
}

void KZylReaderCollada::ReleaseDocument() {
  mReleasedAt = CurrentLocation();
  mDocument.reset();
}

void KZylReaderCollada::ReleaseListsOf(const DaeElement* element) {
  if (mDocument && element && &element->Document() == mDocument.get()) mDocument->ReleaseLists(*element);
}

void KZylReaderCollada::ReleaseReadLists(const DaeElement* element) {
  if (IsWithin(element, mState->listsReadOnceIn)) ReleaseListsOf(element);
}

void KZylReaderCollada::ReleaseReadListFront(const DaeElement* list, size_t count) {
  if (mDocument && IsWithin(list, mState->listsReadOnceIn) && &list->Document() == mDocument.get())
    mDocument->ReleaseListFront(*list, count);
}

void KZylReaderCollada::AddNotificationWarning(KString text) {
  if (KZylUserNotification* notification = mManager->GetUserNotification())
    notification->AddDetail(kNotificationCode, "Warning: " + text, CurrentLocation());
}

void KZylReaderCollada::AddNotificationError(KString text) {
  if (KZylUserNotification* notification = mManager->GetUserNotification())
    notification->AddDetail(kNotificationCode, "ERROR: " + text, CurrentLocation());
}

void KZylReaderCollada::CountLeftUnread(const KString& what) {
  // A handful of kinds at most: a scan costs less than a map.
  for (auto& [known, count] : mLeftUnread)
    if (known == what) {
      ++count;
      return;
    }
  mLeftUnread.emplace_back(what, 1);
}

bool KZylReaderCollada::IsReported(const KString& key) const { return mReportedFeatures.Find(key) >= 0; }

void KZylReaderCollada::MarkReported(const KString& key) { mReportedFeatures.Add(key, 1); }

bool KZylReaderCollada::WarnOnce(const KString& key, const KString& text) {
  if (IsReported(key)) return false;
  AddNotificationWarning(text);
  MarkReported(key);
  return true;
}

bool KZylReaderCollada::SpendOutput(int64_t bytes, const char* skipped) {
  if (mState->output.Take(bytes)) return true;
  if (mState->outputSkipped.insert(skipped).second)
    AddNotificationWarning(KString(skipped) + " skipped: the read would make more than " +
                           KString(std::to_string(mState->output.Limit())) +
                           " bytes of keys and skins, the limit for this document (read options OUTPUT RATIO and OUTPUT FLOOR)");
  return false;
}

void KZylReaderCollada::SplitReferenceTarget(const KString& target, KString& id, KString& path, KString& member) {
  const int length = target.GetLen();
  const int slash = target.Find('/');
  // Parentheses ("morph(2)") are recognised only in targets without a slash.
  int open = -1;
  int close = -1;
  if (slash < 0) {
    open = target.Find('(');
    close = open >= 0 ? target.Find(')', open) : -1;
  }
  const KString rest = slash < 0 ? target : target.Mid(slash + 1);
  const int dot = rest.Find('.');
  if (slash >= 0) id = target.Left(slash);
  if (dot < 0 && open < 0) {
    path = target;
    member = "";
    return;
  }
  int split;
  if (slash >= 0)
    split = dot + slash + 1;
  else if (open >= 0)
    split = dot >= 0 ? dot : open;
  else
    split = length;
  path = target.Left(split);
  member = close < 0 ? target.Mid(split + 1) : target.Mid(split + 1, close - open - 1);
}

}  // namespace zylsdk

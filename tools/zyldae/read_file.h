#pragma once
// Reads one document exactly as an application would: ReadColladaFile (reader/collada_reader.h)
// into a fresh manager of its own.

#include <memory>
#include <utility>
#include <vector>

#include "kit/zylsdk.h"

namespace zyldae {

struct ReadResult {
  std::unique_ptr<zylsdk::KZylSdkManager> manager;
  zylsdk::KZylScene* scene = nullptr;  // owned by the manager
  bool opened = false;                 // FileOpen accepted the file
  bool ok = false;                     // Read returned true
  int lastErrorId = 0;
  zylsdk::KString lastErrorText;
  zylsdk::KString errorText;
  std::vector<zylsdk::KZylUserNotification::Detail> notifications;
  // When the file is not well-formed XML: the parser's message and the line where it stopped.
  zylsdk::KString xmlError;
  int xmlErrorLine = 0;
  // What the default reading passed over and the complete reading reads, with counts.
  std::vector<std::pair<zylsdk::KString, int>> leftUnread;
};

// How to read: the read options the tool sets.
struct ReadSettings {
  bool complete = false;  // the read option "COMPLETE"
  // Integer read options (the limits), by name; see zylsdk::ColladaReadSettings.
  std::vector<std::pair<zylsdk::KString, int>> integerOptions;
};

ReadResult ReadDocument(const zylsdk::KString& path, const ReadSettings& settings = {});

}  // namespace zyldae

#pragma once
// The kit's reader of COLLADA 1.4 documents (.dae): what an application uses.
//
// The common case, one call:
//
//   KZylSdkManager manager;
//   ColladaReadResult read = ReadColladaFile(manager, "model.dae");
//   if (read.ok) { ... walk read.scene ... }
//   for (const auto& message : read.messages) std::puts(message.text.Buffer());
//
// The manager's life cycle, for applications that drive readers themselves:
//
//   RegisterColladaReader(manager);
//   std::unique_ptr<KZylReader> reader = manager.CreateReader("dae");
//   KZylScene* scene = KZylScene::Create(&manager, "");
//   if (reader->FileOpen("model.dae")) {
//     KZylStreamOptions* options = reader->GetReadOptions();
//     options->GetOption(kColladaOptionComplete).Set(true);  // optional
//     bool ok = reader->Read(*scene, options);
//     reader->FileClose();
//   }
//
// CreateReader takes an extension or a file name: by file name, a reader exists only for names
// ending in ".dae" or ".zae" (a zip archive of a document, read by the complete reading). The
// reader must not outlive its manager.
//
// What the kit cannot represent is reported as a warning ("Warning: ...") to the manager's user
// notification and skipped; structural faults of the document are reported as errors
// ("ERROR: ...") and make the read fail, leaving what was made so far in the scene.

#include <utility>
#include <vector>

#include "kit/zylsdk.h"

namespace zylsdk {

// Registers the COLLADA reader with the manager for the extensions "dae" and "zae".
void RegisterColladaReader(KZylSdkManager& manager);

// The reader's own read option (a bool, false when absent): read completely, that is read
// everything the kit can represent, where the default reading skips, refuses or replaces.
inline constexpr const char* kColladaOptionComplete = "COMPLETE";

// How ReadColladaFile reads.
struct ColladaReadSettings {
  bool complete = false;  // the option kColladaOptionComplete
  // Integer read options set before the read, by name: the limits ("MAX SCENE INSTANCES",
  // "MAX ATTRIBUTES PER ELEMENT", "OUTPUT RATIO", "OUTPUT FLOOR", "GZIP RATIO", "GZIP FLOOR").
  // A name the reader does not have fails the read, before the file is read.
  std::vector<std::pair<KString, int>> integerOptions;
};

// What ReadColladaFile did.
struct ColladaReadResult {
  KZylScene* scene = nullptr;  // a new scene of the manager, made even when the file cannot be opened
  bool opened = false;         // the file could be opened
  bool ok = false;             // the read succeeded
  // The notifications this read added to the manager's user notification, in order.
  std::vector<KZylUserNotification::Detail> messages;
  int lastErrorId = 0;  // the reader's last error: 3 when the file could not be opened
  KString lastErrorText;
  KString errorText;  // every error text of the read
  // When the file is not well-formed XML: libxml2's message and the line where it stopped;
  // empty otherwise.
  KString xmlError;
  int xmlErrorLine = 0;
  // What the default reading passed over without a word and the complete reading reads, in
  // the order first met: for example {"polylist primitives", 3}. Empty for the complete reading.
  std::vector<std::pair<KString, int>> leftUnread;
};

// Reads the file at `path` into a new scene of `manager` through the COLLADA reader (which need
// not be registered), as the manager's life cycle above does, then ends the reader.
ColladaReadResult ReadColladaFile(KZylSdkManager& manager, const char* path,
                                  const ColladaReadSettings& settings = {});

}  // namespace zylsdk

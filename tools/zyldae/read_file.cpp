#include "tools/zyldae/read_file.h"

#include "reader/collada_reader.h"

namespace zyldae {

using namespace zylsdk;

ReadResult ReadDocument(const KString& path, const ReadSettings& settings) {
  ReadResult result;
  result.manager = std::make_unique<KZylSdkManager>();
  ColladaReadSettings readSettings;
  readSettings.complete = settings.complete;
  readSettings.integerOptions = settings.integerOptions;
  ColladaReadResult read = ReadColladaFile(*result.manager, path.Buffer(), readSettings);
  result.scene = read.scene;
  result.opened = read.opened;
  result.ok = read.ok;
  result.lastErrorId = read.lastErrorId;
  result.lastErrorText = read.lastErrorText;
  result.errorText = read.errorText;
  result.notifications = std::move(read.messages);
  result.xmlError = read.xmlError;
  result.xmlErrorLine = read.xmlErrorLine;
  result.leftUnread = std::move(read.leftUnread);
  return result;
}

}  // namespace zyldae

#include "tools/zyldae/read_file.h"

#include "reader/collada_reader.h"

namespace zyldae {

using namespace zylsdk;

ReadResult ReadDocument(const KString& path, const ReadSettings& settings) {
  ReadResult result;
  result.manager = std::make_unique<KZylSdkManager>();
  RegisterColladaReader(*result.manager);
  std::unique_ptr<KZylReader> reader = result.manager->CreateReader("dae");
  result.scene = KZylScene::Create(result.manager.get(), "");
  result.opened = reader->FileOpen(path.Buffer());
  if (result.opened) {
    KZylStreamOptions* options = reader->GetReadOptions();
    options->GetOption("COMPLETE").Set(settings.complete);
    result.ok = reader->Read(*result.scene, options);
    reader->FileClose();
  }
  result.lastErrorId = reader->GetLastErrorID();
  result.lastErrorText = reader->GetLastErrorString();
  result.errorText = reader->GetErrorText();
  if (const auto& failure = static_cast<const KZylReaderCollada&>(*reader).GetXmlFailure()) {
    result.xmlError = failure->message;
    result.xmlErrorLine = failure->line;
  }
  // The reader's end disposes of the placeholder materials nothing uses; the scene stays.
  reader.reset();
  if (KZylUserNotification* notification = result.manager->GetUserNotification())
    result.notifications = notification->GetDetails();
  return result;
}

}  // namespace zyldae

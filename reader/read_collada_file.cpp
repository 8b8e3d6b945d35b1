#include "reader/collada_import.h"

namespace zylsdk {

ColladaReadResult ReadColladaFile(KZylSdkManager& manager, const char* path, const ColladaReadSettings& settings) {
  ColladaReadResult result;
  const KZylUserNotification* notification = manager.GetUserNotification();
  const size_t earlierMessages = notification ? notification->GetDetails().size() : 0;
  auto reader = std::make_unique<KZylReaderCollada>(manager);
  result.scene = KZylScene::Create(&manager, "");
  result.opened = reader->FileOpen(path);
  if (result.opened) {
    KZylStreamOptions* options = reader->GetReadOptions();
    options->GetOption(kColladaOptionComplete).Set(settings.complete);
    KString unknown;
    for (const auto& [name, value] : settings.integerOptions) {
      KZylProperty option = options->GetOption(name);
      if (!option.IsValid() || !option.Set(value)) unknown = name;
    }
    if (unknown.IsEmpty()) {
      result.ok = reader->Read(*result.scene, options);
    } else {
      reader->AddNotificationError(KString("unknown integer read option: ") + unknown);
    }
    reader->FileClose();
  }
  result.lastErrorId = reader->GetLastErrorID();
  result.lastErrorText = reader->GetLastErrorString();
  result.errorText = reader->GetErrorText();
  result.leftUnread = reader->GetLeftUnread();
  if (const std::optional<XmlParseFailure>& failure = reader->GetXmlFailure()) {
    result.xmlError = failure->message;
    result.xmlErrorLine = failure->line;
  }
  // The reader's end disposes of the placeholder materials nothing uses; the scene stays.
  reader.reset();
  if ((notification = manager.GetUserNotification())) {
    const auto& details = notification->GetDetails();
    if (details.size() >= earlierMessages) result.messages.assign(details.begin() + earlierMessages, details.end());
  }
  return result;
}

}  // namespace zylsdk

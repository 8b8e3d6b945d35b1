#include "tests/support/reader_fixture.h"

#include "reader/xml_document.h"

namespace zyltest {

ReaderTest::ReaderTest()
    : reader(std::make_unique<zylsdk::KZylReaderCollada>(manager)), scene(zylsdk::KZylScene::Create(&manager, "")) {}

ReaderTest::~ReaderTest() {
  reader.reset();
}

zylsdk::DaeElement* ReaderTest::Parse(const std::string& xml) {
  zylsdk::DaeDocumentPtr document = zylsdk::ParseXmlText(xml);
  if (!document) {
    ADD_FAILURE() << "the test's XML does not parse: " << xml;
    return nullptr;
  }
  mDocuments.push_back(std::move(document));
  return mDocuments.back()->Root();
}

std::vector<std::string> ReaderTest::Messages() const {
  std::vector<std::string> texts;
  if (zylsdk::KZylUserNotification* notification = manager.GetUserNotification())
    for (const auto& detail : notification->GetDetails()) texts.push_back(detail.text.Std());
  return texts;
}

int ReaderTest::CountMessage(const std::string& text) const {
  int count = 0;
  for (const std::string& message : Messages()) count += message == text ? 1 : 0;
  return count;
}

}  // namespace zyltest

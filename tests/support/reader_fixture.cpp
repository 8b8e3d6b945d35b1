#include "tests/support/reader_fixture.h"

#include <libxml/parser.h>

namespace zyltest {

ReaderTest::ReaderTest()
    : reader(std::make_unique<zylsdk::KZylReaderCollada>(manager)), scene(zylsdk::KZylScene::Create(&manager, "")) {}

ReaderTest::~ReaderTest() {
  reader.reset();
  for (xmlDoc* document : mDocuments) xmlFreeDoc(document);
}

zylsdk::DaeElement* ReaderTest::Parse(const std::string& xml) {
  xmlDoc* document = xmlReadMemory(xml.data(), static_cast<int>(xml.size()), "fragment.xml", nullptr,
                                   XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  if (!document) {
    ADD_FAILURE() << "the test's XML does not parse: " << xml;
    return nullptr;
  }
  mDocuments.push_back(document);
  return xmlDocGetRootElement(document);
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

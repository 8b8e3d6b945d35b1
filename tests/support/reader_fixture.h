#pragma once
// A fixture for tests of single import steps: a manager with the COLLADA reader, and XML
// fragments parsed into elements that live as long as the test.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"

namespace zyltest {

class ReaderTest : public ::testing::Test {
 protected:
  ReaderTest();
  ~ReaderTest() override;

  // Parses `xml` (a fragment with one root element) and returns its root element.
  zylsdk::DaeElement* Parse(const std::string& xml);
  // The notification texts so far, and how many equal `text`.
  std::vector<std::string> Messages() const;
  int CountMessage(const std::string& text) const;

  zylsdk::KZylSdkManager manager;
  std::unique_ptr<zylsdk::KZylReaderCollada> reader;
  zylsdk::KZylScene* scene;

 private:
  std::vector<zylsdk::DaeDocumentPtr> mDocuments;
};

}  // namespace zyltest

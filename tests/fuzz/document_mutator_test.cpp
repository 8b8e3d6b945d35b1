// The fuzzer's structural mutations: each keeps a document well-formed, and together they
// change what they are meant to change; the reading mode an input asks for switches back and
// forth.

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>

#include "fuzz/document_mutator.h"

namespace {

bool WellFormed(const std::string& document) {
  xmlDoc* parsed = xmlReadMemory(document.data(), static_cast<int>(document.size()), "m.dae", nullptr,
                                 XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  xmlFreeDoc(parsed);
  return parsed != nullptr;
}

std::string Example() {
  std::ifstream in(std::string(ZYL_SOURCE_DIR) + "/examples/scene.dae", std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(DocumentMutator, MutantsStayWellFormedAndDiffer) {
  const std::string original = Example();
  ASSERT_TRUE(WellFormed(original));
  std::mt19937 random(7);
  std::set<std::string> mutants;
  int changed = 0;
  for (int i = 0; i < 200; ++i) {
    std::string document = original;
    if (!zylfuzz::MutateStructure(document, random)) continue;
    ++changed;
    EXPECT_TRUE(WellFormed(document)) << "mutant " << i;
    EXPECT_EQ(zylfuzz::AsksForCompleteMode(reinterpret_cast<const uint8_t*>(document.data()), document.size()),
              zylfuzz::AsksForCompleteMode(reinterpret_cast<const uint8_t*>(original.data()), original.size()));
    mutants.insert(document);
  }
  EXPECT_GT(changed, 150);
  EXPECT_GT(mutants.size(), 100u);
}

TEST(DocumentMutator, ReferencesGoMissingNumbersGoExtremeElementsAreDuplicated) {
  const std::string original = "<a><b id=\"x\" count=\"3\">1 2 3</b><c url=\"#x\"/></a>";
  std::mt19937 random(11);
  bool missing = false, duplicated = false, extreme = false;
  for (int i = 0; i < 400; ++i) {
    std::string document = original;
    zylfuzz::MutateStructure(document, random);
    missing = missing || document.find("#zylfuzz-missing") != std::string::npos;
    extreme = extreme || document.find("2147483647") != std::string::npos;
    duplicated = duplicated || document.find("<b id=\"x\" count=\"3\">1 2 3</b><b id=\"x\"") != std::string::npos;
  }
  EXPECT_TRUE(missing);
  EXPECT_TRUE(extreme);
  EXPECT_TRUE(duplicated);
}

TEST(DocumentMutator, TheModeSwitchesAndBack) {
  std::string document = "<a/>";
  const auto complete = [&] {
    return zylfuzz::AsksForCompleteMode(reinterpret_cast<const uint8_t*>(document.data()), document.size());
  };
  EXPECT_FALSE(complete());
  zylfuzz::SwitchReadingMode(document);
  EXPECT_TRUE(complete());
  EXPECT_TRUE(WellFormed(document));
  zylfuzz::SwitchReadingMode(document);
  EXPECT_FALSE(complete());
  EXPECT_EQ(document.size(), 5u);
}

TEST(DocumentMutator, TextThatIsNotXmlIsLeftAlone) {
  std::string document = "not a document";
  std::mt19937 random(3);
  EXPECT_FALSE(zylfuzz::MutateStructure(document, random));
  EXPECT_EQ(document, "not a document");
}

}  // namespace

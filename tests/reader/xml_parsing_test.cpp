// Parsing document files safely: entity declarations refused (no expansion bombs, no external
// entities), no network, nothing printed, and text nodes larger than libxml2's default limit.

#include <arpa/inet.h>
#include <fcntl.h>
#include <libxml/parser.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <sstream>

#include "reader/dom/dom.h"
#include "reader/dom/source.h"
#include "reader/xml_document.h"
#include "tests/reader/reader_file_test.h"

namespace {

using namespace zylsdk;
using zyltest::Collada;
using zyltest::Messages;
using zyltest::PeakResidentKilobytes;
using zyltest::ParseFailure;
using zyltest::ReadText;
using zyltest::TempFile;

using Notifications = std::vector<std::string>;

std::string BillionLaughs() {
  std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE COLLADA [\n <!ENTITY lol0 \"lol\">\n";
  for (int level = 1; level <= 9; ++level) {
    document += " <!ENTITY lol" + std::to_string(level) + " \"";
    for (int i = 0; i < 10; ++i) document += "&lol" + std::to_string(level - 1) + ";";
    document += "\">\n";
  }
  return document + "]>\n<COLLADA version=\"1.4.1\"><asset><title>&lol9;</title></asset></COLLADA>\n";
}

TEST(XmlParsing, ABillionLaughsFailsFastAndSmall) {
  std::string document = BillionLaughs();
  long before = PeakResidentKilobytes();
  auto start = std::chrono::steady_clock::now();
  zyldae::ReadResult read = ReadText(document);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  long grown = PeakResidentKilobytes() - before;
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), Notifications{ParseFailure()});
  EXPECT_LT(seconds, 1.0);
  EXPECT_LT(grown, 100 * 1024);
}

TEST(XmlParsing, AnExternalEntityIsNeverRead) {
  TempFile secret("TOP-SECRET-MARKER", ".txt");
  std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE COLLADA [<!ENTITY secret SYSTEM \"file://" +
                         secret.Path() + "\">]>\n<COLLADA version=\"1.4.1\"><asset><title>&secret;</title>" +
                         "</asset></COLLADA>\n";
  zyldae::ReadResult read = ReadText(document);
  EXPECT_FALSE(read.ok);  // refused, like every entity declaration
  EXPECT_EQ(Messages(read), Notifications{ParseFailure()});
  const KZylSceneInfo* info = read.scene->GetSceneInfo();
  EXPECT_TRUE(info == nullptr || info->mTitle.Find("TOP-SECRET") < 0);
}

TEST(XmlParsing, EvenAHarmlessEntityDeclarationIsRefused) {
  XmlParseFailure failure;
  TempFile file("<?xml version=\"1.0\"?><!DOCTYPE COLLADA [<!ENTITY name \"Ada\">]>"
                "<COLLADA version=\"1.4.1\"><asset/></COLLADA>");
  EXPECT_EQ(ParseXmlFile(file.Path(), &failure), nullptr);
  EXPECT_EQ(failure.message, "entity declarations are not accepted");
  EXPECT_EQ(failure.line, 1);
}

TEST(XmlParsing, ElementsNestedMoreThan2048DeepAreRefused) {
  auto nested = [](int depth) {
    std::string document = "<?xml version=\"1.0\"?>\n";
    for (int i = 0; i < depth; ++i) document += "<a>";
    for (int i = 0; i < depth; ++i) document += "</a>";
    return document;
  };
  TempFile deepest(nested(2048));
  EXPECT_NE(ParseXmlFile(deepest.Path()), nullptr);
  XmlParseFailure failure;
  TempFile tooDeep(nested(2049));
  EXPECT_EQ(ParseXmlFile(tooDeep.Path(), &failure), nullptr);
  EXPECT_EQ(failure.message, "elements are nested more than 2048 deep");
  EXPECT_EQ(failure.line, 2);
}

// A TCP listener on the loopback interface that tells whether anyone connected to it.
class Listener {
 public:
  Listener() {
    mSocket = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (mSocket < 0 || bind(mSocket, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(mSocket, 8) != 0 ||
        getsockname(mSocket, reinterpret_cast<sockaddr*>(&address), &length) != 0)
      return;
    fcntl(mSocket, F_SETFL, O_NONBLOCK);
    mPort = ntohs(address.sin_port);
  }
  ~Listener() {
    if (mSocket >= 0) close(mSocket);
  }
  int Port() const { return mPort; }
  std::string Url(const std::string& file) const { return "http://127.0.0.1:" + std::to_string(mPort) + "/" + file; }
  bool SomeoneConnected() const {
    int connection = accept(mSocket, nullptr, nullptr);
    if (connection < 0) return false;
    close(connection);
    return true;
  }

 private:
  int mSocket = -1;
  int mPort = 0;
};

TEST(XmlParsing, ARemoteDtdIsIgnoredWithoutNetwork) {
  Listener listener;
  if (listener.Port() == 0) GTEST_SKIP() << "no loopback socket";
  std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE COLLADA PUBLIC \"-//COLLADA//DTD\" \"" +
                         listener.Url("collada.dtd") + "\">\n<COLLADA version=\"1.4.1\"><asset/></COLLADA>\n";
  zyldae::ReadResult read = ReadText(document);
  EXPECT_TRUE(read.ok);
  EXPECT_TRUE(Messages(read).empty());
  EXPECT_FALSE(listener.SomeoneConnected());
}

TEST(XmlParsing, ARemoteParameterEntityIsRefusedWithoutNetwork) {
  Listener listener;
  if (listener.Port() == 0) GTEST_SKIP() << "no loopback socket";
  std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE COLLADA [<!ENTITY % remote SYSTEM \"" +
                         listener.Url("entities.ent") + "\"> %remote;]>\n<COLLADA version=\"1.4.1\"><asset/></COLLADA>\n";
  zyldae::ReadResult read = ReadText(document);
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), Notifications{ParseFailure()});
  EXPECT_FALSE(listener.SomeoneConnected());
}

// A geometry source whose float array holds `count` numbers, about 4 bytes each.
std::string BigFloatSource(int count) {
  std::string values;
  values.reserve(static_cast<size_t>(count) * 4);
  for (int i = 0; i < count; ++i) values += (i % 2) ? "0.5 " : "1.5 ";
  return "<source id=\"big\"><float_array id=\"big-array\" count=\"" + std::to_string(count) + "\">" + values +
         "</float_array><technique_common><accessor source=\"#big-array\" count=\"" + std::to_string(count) +
         "\"><param name=\"X\" type=\"float\"/></accessor></technique_common></source>";
}

TEST(XmlParsing, AFifteenMegabyteFloatArrayParses) {
  const int count = 4 * 1000 * 1000;  // 16 MB of text, beyond libxml2's 10 MB text limit
  TempFile file(Collada("<library_geometries><geometry id=\"g\"><mesh>" + BigFloatSource(count) +
                        "</mesh></geometry></library_geometries>"));
  // Without the large-document option libxml2 refuses the file: the test is meaningful.
  xmlParserCtxt* context = xmlNewParserCtxt();
  ASSERT_NE(context, nullptr);
  context->sax->serror = [](void*, auto) {};
  xmlDoc* limited = xmlCtxtReadFile(context, file.Path().c_str(), nullptr, XML_PARSE_NONET);
  EXPECT_EQ(limited, nullptr);
  if (limited) xmlFreeDoc(limited);
  xmlFreeParserCtxt(context);

  DaeDocumentPtr document = ParseXmlFile(file.Path());
  ASSERT_NE(document, nullptr);
  DaeElement* root = document->Root();
  DaeElement* source = findChildById(root, "big");
  ASSERT_NE(source, nullptr);
  std::vector<double> storage;
  EXPECT_EQ(DAE_GetDoubles(findChildByType(source, "float_array"), storage).size(), static_cast<size_t>(count));
  KArrayTemplate<double> values;
  ASSERT_TRUE(ImportSource(source, values));
  ASSERT_EQ(values.GetCount(), count);
  EXPECT_EQ(values[count - 1], 0.5);
}

TEST(XmlParsing, AReadOfADocumentWithAFifteenMegabyteArraySucceeds) {
  zyldae::ReadResult read = ReadText(Collada("<library_animations><animation id=\"a\">" +
                                             BigFloatSource(4 * 1000 * 1000) + "</animation></library_animations>"));
  EXPECT_TRUE(read.ok);
  EXPECT_TRUE(Messages(read).empty());
}

// Runs `action` with standard error sent to a file, and gives what was written there.
template <class Action>
std::string StandardErrorOf(Action action) {
  TempFile capture("", ".err");
  fflush(stderr);
  int saved = dup(2);
  int file = open(capture.Path().c_str(), O_WRONLY);
  dup2(file, 2);
  close(file);
  action();
  fflush(stderr);
  dup2(saved, 2);
  close(saved);
  std::ifstream in(capture.Path());
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(XmlParsing, FailuresPrintNothing) {
  TempFile broken("<COLLADA version=\"1.4.1\"><asset></COLLADA>");
  std::string printed = StandardErrorOf([&] {
    EXPECT_EQ(ParseXmlFile(broken.Path()), nullptr);
    EXPECT_EQ(ParseXmlFile(""), nullptr);
    EXPECT_EQ(ParseXmlFile("/nonexistent/file.dae"), nullptr);
    EXPECT_FALSE(ReadText("not xml at all").ok);
    EXPECT_FALSE(ReadText(BillionLaughs()).ok);
    KZylSdkManager manager;
    KZylReaderCollada reader(manager);
    EXPECT_FALSE(reader.Read(*KZylScene::Create(&manager, ""), KZylStreamOptionsColladaReader::Create(&manager, "")));
  });
  EXPECT_EQ(printed, "");
}

TEST(XmlParsing, AFailureSaysWhereAndWhy) {
  TempFile broken("<COLLADA version=\"1.4.1\">\n<asset>\n</COLLADA>\n");
  XmlParseFailure failure;
  EXPECT_EQ(ParseXmlFile(broken.Path(), &failure), nullptr);
  EXPECT_GE(failure.line, 3);  // where the parser gave up: at or after the unclosed element
  EXPECT_NE(failure.message.Find("COLLADA"), -1);
  EXPECT_NE(failure.message[failure.message.GetLen() - 1], '\n');
  XmlParseFailure missing;
  EXPECT_EQ(ParseXmlFile("/nonexistent/file.dae", &missing), nullptr);
  EXPECT_FALSE(missing.message.IsEmpty());
}

TEST(XmlParsing, PredefinedEntitiesAndCharacterReferencesAreFine) {
  zyldae::ReadResult read = ReadText(
      zyltest::ColladaWithAsset("<title>a &amp; b &lt;c&gt; &#233;&#x4E2D;</title>"));
  EXPECT_TRUE(read.ok);
  ASSERT_NE(read.scene->GetSceneInfo(), nullptr);
  EXPECT_EQ(read.scene->GetSceneInfo()->mTitle.Std(), "a & b <c> \xc3\xa9\xe4\xb8\xad");
}

}  // namespace

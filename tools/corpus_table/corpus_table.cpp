// corpus_table FOLDER: reads every .dae file below FOLDER three ways (our default reading, our
// complete reading, the peer reader) and writes, as Markdown, what each reading holds per file,
// the world boxes, where the complete reading falls short of the peer, and the notifications of
// each file. scripts/update-corpus-table.sh writes docs/corpus.md with it.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tools/corpus_table/peer_comparison.h"
#include "tools/corpus_table/peer_exceptions.h"
#include "tools/corpus_table/peer_reading.h"
#include "tools/zyldae/read_file.h"
#include "tools/zyldae/scene_stats.h"

namespace {

namespace fs = std::filesystem;
using zyldae::PeerStats;
using zyldae::SceneStats;

std::vector<std::string> DocumentsBelow(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file() && entry.path().extension() == ".dae")
      files.push_back(fs::relative(entry.path(), folder).string());
  std::sort(files.begin(), files.end());
  return files;
}

// A notification as one table-safe line.
std::string OneLine(std::string text) {
  while (!text.empty() && text.back() == '\n') text.pop_back();
  for (char& c : text)
    if (c == '\n' || c == '|') c = ' ';
  return text;
}

// One of our readings: whether it read, what it holds, what it said.
struct OurReading {
  bool ok = false;
  SceneStats stats;
  int warnings = 0;
  int errors = 0;
  std::map<std::string, int> messages;  // each distinct notification, with how often it came
};

OurReading ReadOurs(const std::string& path, bool complete) {
  zyldae::ReadSettings settings;
  settings.complete = complete;
  zyldae::ReadResult read = zyldae::ReadDocument(path.c_str(), settings);
  OurReading reading;
  reading.ok = read.ok;
  reading.stats = zyldae::ComputeStats(*read.scene);
  for (const auto& detail : read.notifications) {
    const std::string& text = detail.text.Std();
    reading.warnings += text.rfind("Warning: ", 0) == 0 ? 1 : 0;
    reading.errors += text.rfind("ERROR: ", 0) == 0 ? 1 : 0;
    ++reading.messages[OneLine(text)];
  }
  return reading;
}

struct DocumentReadings {
  std::string file;
  OurReading normal;
  OurReading complete;
  PeerStats peer;
};

// "default / complete / peer" in one cell; the peer's part is "-" where it did not read.
template <class Count>
std::string Three(Count normal, Count complete, const PeerStats& peer, Count peerCount) {
  return std::to_string(normal) + " / " + std::to_string(complete) + " / " +
         (peer.read ? std::to_string(peerCount) : std::string("-"));
}

std::string Read(bool ok) { return ok ? "ok" : "failed"; }

std::string PeerRead(const PeerStats& peer) {
  if (!peer.available) return "n/a";
  return peer.read ? "ok" : "failed";
}

std::string BoxText(const zyldae::Box& box) {
  if (box.empty) return "empty";
  char text[200];
  std::snprintf(text, sizeof text, "%.6g %.6g %.6g .. %.6g %.6g %.6g", box.min[0], box.min[1], box.min[2], box.max[0],
                box.max[1], box.max[2]);
  return text;
}

void PrintCounts(const std::vector<DocumentReadings>& documents) {
  std::printf("| file | read | complete | %s | triangles | nodes | materials | textures | skins | animated nodes | curves "
              "/ tracks | warnings | errors |\n",
              "Assimp");
  std::printf("|---|---|---|---|---|---|---|---|---|---|---|---|---|\n");
  for (const DocumentReadings& d : documents) {
    const SceneStats& n = d.normal.stats;
    const SceneStats& c = d.complete.stats;
    const PeerStats& p = d.peer;
    std::printf("| `%s` | %s | %s | %s | %s | %s | %s | %s | %s | %s | %s | %d / %d | %d / %d |\n", d.file.c_str(),
                Read(d.normal.ok).c_str(), Read(d.complete.ok).c_str(), PeerRead(p).c_str(),
                Three(n.triangles, c.triangles, p, p.triangles).c_str(), Three(n.nodes, c.nodes, p, p.nodes).c_str(),
                Three(n.materials, c.materials, p, p.materials).c_str(),
                Three(n.textures, c.textures, p, p.textures).c_str(), Three(n.skins, c.skins, p, p.skins).c_str(),
                Three(n.animatedNodes, c.animatedNodes, p, p.animatedNodes).c_str(),
                Three(n.curves, c.curves, p, p.tracks).c_str(), d.normal.warnings, d.complete.warnings,
                d.normal.errors, d.complete.errors);
  }
}

void PrintBoxes(const std::vector<DocumentReadings>& documents) {
  std::printf("| file | default | complete | Assimp | complete vs Assimp |\n|---|---|---|---|---|\n");
  for (const DocumentReadings& d : documents) {
    const std::string difference =
        d.peer.read ? std::to_string(zyldae::BoxDifference(d.complete.stats.worldBox, d.peer.worldBox)) : "-";
    std::printf("| `%s` | %s | %s | %s | %s |\n", d.file.c_str(), BoxText(d.normal.stats.worldBox).c_str(),
                BoxText(d.complete.stats.worldBox).c_str(), d.peer.read ? BoxText(d.peer.worldBox).c_str() : "-",
                difference.c_str());
  }
}

void PrintShortfalls(const std::vector<DocumentReadings>& documents) {
  int count = 0;
  for (const DocumentReadings& d : documents) {
    const std::vector<std::string> shortfalls = zyldae::ShortfallsAgainstPeer(d.complete.ok, d.complete.stats, d.peer);
    if (shortfalls.empty()) continue;
    ++count;
    std::printf("- `%s`:", d.file.c_str());
    for (size_t i = 0; i < shortfalls.size(); ++i) std::printf("%s %s", i ? ";" : "", shortfalls[i].c_str());
    const zyldae::PeerException* exception = zyldae::FindPeerException(d.file);
    std::printf(". %s\n", exception ? (std::string(zyldae::KindName(exception->kind)) + ": " + exception->reason).c_str()
                                     : "Not explained: the corpus test fails.");
  }
  if (count == 0) std::printf("None.\n");
}

void PrintNotifications(const char* title, const std::vector<DocumentReadings>& documents,
                        OurReading DocumentReadings::*reading) {
  std::printf("\n## %s\n\nEach distinct notification of a document, with how often it came.\n", title);
  for (const DocumentReadings& d : documents) {
    const auto& texts = (d.*reading).messages;
    if (texts.empty()) continue;
    std::printf("\n### `%s`\n\n", d.file.c_str());
    for (const auto& [text, count] : texts)
      std::printf("- %s%s\n", text.c_str(), count > 1 ? (" (x" + std::to_string(count) + ")").c_str() : "");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: corpus_table FOLDER\n");
    return 2;
  }
  const std::string folder = argv[1];
  std::vector<DocumentReadings> documents;
  for (const std::string& file : DocumentsBelow(folder)) {
    const std::string path = folder + "/" + file;
    documents.push_back({file, ReadOurs(path, false), ReadOurs(path, true), zyldae::ReadWithPeer(path)});
  }

  std::printf("# Corpus results\n\n");
  std::printf("Every document of the shared corpus read three ways: as `zyldae` reads it by default, with the\n");
  std::printf("complete reading (`--complete`), and with %s, with no post-processing. Written by\n",
              zyldae::PeerName().c_str());
  std::printf("`scripts/update-corpus-table.sh`; the corpus tests fail when a document marked ok in the\n");
  std::printf("read column no longer reads, and when the complete reading falls short of Assimp's on a\n");
  std::printf("document not listed below with its reason.\n\n");
  std::printf("Cells read `default / complete / Assimp` (`-` where Assimp did not read the document).\n");
  std::printf("Triangles count a polygon of n vertices as n - 2, per node that instances the mesh. Nodes\n");
  std::printf("are those below the root. Assimp's materials are those its node meshes use, without its\n");
  std::printf("placeholder `DefaultMaterial`; its textures are the distinct texture paths those materials\n");
  std::printf("name, and its skins are meshes with bones after it splits a mesh per material. Curves are\n");
  std::printf("ours holding at least one key; Assimp keeps no per-component curves, so its figure there\n");
  std::printf("is its position, rotation and scaling key lists holding a key.\n\n");
  PrintCounts(documents);

  std::printf("\n## World bounding boxes\n\n");
  std::printf("Every control point a polygon uses, through its node's global matrix (Assimp: every vertex\n");
  std::printf("of the meshes through the node transforms), in the document's own frame: Assimp's root\n");
  std::printf("transform, where it converts the unit and the up axis, is left out, and we convert neither.\n");
  std::printf("The last column is the largest corner difference over the larger box diagonal; up to\n");
  std::printf("%g counts as agreement (Assimp keeps 32-bit floats).\n\n", zyldae::kBoxTolerance);
  PrintBoxes(documents);

  std::printf("\n## Complete reading against Assimp\n\n");
  std::printf("Documents Assimp reads on which the complete reading has fewer triangles, nodes or\n");
  std::printf("materials, or a different world box, each with its reason: Assimp's figure is the wrong\n");
  std::printf("one, or the kit cannot represent what the document holds.\n\n");
  PrintShortfalls(documents);

  PrintNotifications("Notifications", documents, &DocumentReadings::normal);
  PrintNotifications("Notifications of the complete reading", documents, &DocumentReadings::complete);
  return 0;
}

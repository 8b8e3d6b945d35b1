#include "tools/zyldae/view_command.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "gltf/gltf_writer.h"
#include "tools/zyldae/read_flags.h"

namespace zyldae {

namespace {

std::string Base64(const std::string& bytes) {
  static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t left = bytes.size() - i;
    uint32_t group = static_cast<uint32_t>(static_cast<unsigned char>(bytes[i])) << 16;
    if (left > 1) group |= static_cast<uint32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8;
    if (left > 2) group |= static_cast<uint32_t>(static_cast<unsigned char>(bytes[i + 2]));
    text += alphabet[(group >> 18) & 63];
    text += alphabet[(group >> 12) & 63];
    text += left > 1 ? alphabet[(group >> 6) & 63] : '=';
    text += left > 2 ? alphabet[group & 63] : '=';
  }
  return text;
}

std::string EscapeHtml(const std::string& text) {
  std::string escaped;
  for (char c : text) {
    switch (c) {
      case '&': escaped += "&amp;"; break;
      case '<': escaped += "&lt;"; break;
      case '>': escaped += "&gt;"; break;
      case '"': escaped += "&quot;"; break;
      default: escaped += c;
    }
  }
  return escaped;
}

// A script's text may not hold "</script": the page would end the script there.
std::string ScriptSafe(std::string script) {
  for (size_t at = script.find("</script"); at != std::string::npos; at = script.find("</script", at + 2))
    script.replace(at, 2, "<\\/");
  return script;
}

bool ReadWhole(const std::string& path, std::string& text) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream content;
  content << in.rdbuf();
  text = content.str();
  return true;
}

}  // namespace

std::string ViewerPage(const std::string& title, const std::string& viewerScript, const std::string& glb) {
  std::ostringstream page;
  page << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" << EscapeHtml(title)
       << "</title>\n<style>html,body{margin:0;height:100%;overflow:hidden;font-family:sans-serif}"
          "#status{position:absolute;top:8px;left:8px}</style>\n</head>\n<body>\n<div id=\"status\">Loading...</div>\n"
       << "<script id=\"model\" type=\"application/octet-stream\">" << Base64(glb) << "</script>\n"
       << "<script>\n" << ScriptSafe(viewerScript) << "\n</script>\n</body>\n</html>\n";
  return page.str();
}

ViewCommand::ViewCommand(CLI::App& app) {
  mCommand = app.add_subcommand("view", "Write an HTML page that shows the scene (converted to glTF)");
  mCommand->add_option("IN", mInput, "The .dae file")->required();
  mCommand->add_option("-o,--output", mOutput, "The page to write (default: IN's name with .html)");
  AddReadFlags(*mCommand, mSettings);
}

int ViewCommand::Run() const {
  std::string script;
  if (!ReadWhole(ZYL_VIEWER_BUNDLE, script)) {
    std::cerr << "zyldae: the viewer script " << ZYL_VIEWER_BUNDLE << " is missing (run scripts/install-deps.sh and build again)\n";
    return 1;
  }
  ReadResult read = ReadDocument(mInput.c_str(), mSettings);
  if (!read.opened) {
    std::cerr << "zyldae: cannot open " << mInput << '\n';
    return 2;
  }
  if (!read.ok) {
    std::cerr << "zyldae: " << mInput << " could not be read: " << read.errorText.Std() << '\n';
    return 1;
  }
  std::ostringstream glb;
  const zylgltf::GltfReport report = zylgltf::WriteGlb(*read.scene, glb);
  for (const std::string& loss : report.leftOut) std::cerr << "left out: " << loss << '\n';
  if (!report.ok) {
    std::cerr << "zyldae: " << report.error << '\n';
    return 1;
  }
  const std::filesystem::path input(mInput);
  const std::string output = mOutput.empty() ? input.stem().string() + ".html" : mOutput;
  std::ofstream out(output, std::ios::binary);
  out << ViewerPage(input.filename().string(), script, glb.str());
  if (!out) {
    std::cerr << "zyldae: cannot write " << output << '\n';
    return 1;
  }
  return 0;
}

}  // namespace zyldae

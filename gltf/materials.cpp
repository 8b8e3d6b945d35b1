// Materials to glTF's metallic-roughness model: diffuse colour to base colour, emissive colour
// to emission, transparency to alpha, shininess to roughness. Lambert, phong and materials of
// other shadings read the same property names; textures become images, referenced by a URI
// relative to the written file or embedded, when their file is a PNG or JPEG image found on
// disk.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "gltf/conversion_context.h"

namespace zylgltf {

using namespace zylsdk;
namespace fs = std::filesystem;

namespace {

double Unit(double value) { return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0; }

// A colour property times its factor property; `fallback` when the colour is missing.
KZylColor Scaled(const KZylSurfaceMaterial& material, const char* colour, const char* factor, const KZylColor& fallback) {
  const KZylProperty colourProperty = material.FindProperty(colour);
  if (!colourProperty.IsValid()) return fallback;
  KZylColor value = colourProperty.GetColor();
  const KZylProperty factorProperty = material.FindProperty(factor);
  const double scale = factorProperty.IsValid() ? factorProperty.GetDouble() : 1.0;
  return KZylColor(value.mRed * scale, value.mGreen * scale, value.mBlue * scale);
}

// The image type of a file from its first bytes: "image/png", "image/jpeg" or empty.
std::string MimeType(const std::vector<unsigned char>& bytes) {
  static const unsigned char png[] = {0x89, 'P', 'N', 'G', 0x0d, 0x0a, 0x1a, 0x0a};
  if (bytes.size() >= sizeof png && std::equal(std::begin(png), std::end(png), bytes.begin())) return "image/png";
  if (bytes.size() >= 3 && bytes[0] == 0xff && bytes[1] == 0xd8 && bytes[2] == 0xff) return "image/jpeg";
  return "";
}

// The texture's file: its file name when that exists, else its relative file name.
fs::path FindImageFile(const KZylTexture& texture) {
  std::error_code error;
  for (const KString* name : {&texture.GetFileName(), &texture.GetRelativeFileName()}) {
    if (name->IsEmpty()) continue;
    const fs::path path(name->Std());
    if (fs::is_regular_file(path, error)) return path;
  }
  return {};
}

// A URI reference for a relative path: characters outside the unreserved set and '/' are
// percent-encoded.
std::string UriOf(const fs::path& relative) {
  static const char hex[] = "0123456789ABCDEF";
  std::string uri;
  for (unsigned char c : relative.generic_string()) {
    if (std::isalnum(c) || c == '-' || c == '.' || c == '_' || c == '~' || c == '/') {
      uri += static_cast<char>(c);
    } else {
      uri += '%';
      uri += hex[c >> 4];
      uri += hex[c & 15];
    }
  }
  return uri;
}

int ConvertTexture(ConversionContext& context, const KZylTexture& texture) {
  auto known = context.textures.find(&texture);
  if (known != context.textures.end()) return known->second;
  int& index = context.textures[&texture];
  index = -1;

  const fs::path file = FindImageFile(texture);
  if (file.empty()) {
    context.LeaveOut("textures whose image file was not found");
    return index;
  }
  std::ifstream in(file, std::ios::binary);
  std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  tinygltf::Image image;
  image.name = texture.GetName().Std();
  image.mimeType = MimeType(bytes);
  if (image.mimeType.empty()) {
    context.LeaveOut("textures whose image is neither PNG nor JPEG");
    return index;
  }
  if (context.options.embedImages) {
    image.bufferView = context.buffer.AddBytes(bytes);
  } else {
    std::error_code error;
    const fs::path folder = fs::absolute(context.options.outputFolder, error);
    image.uri = UriOf(fs::relative(fs::absolute(file, error), folder, error));
    image.mimeType.clear();
  }
  context.model.images.push_back(image);

  tinygltf::Sampler sampler;
  auto wrap = [](KZylTexture::EWrapMode mode) {
    return mode == KZylTexture::eClamp ? TINYGLTF_TEXTURE_WRAP_CLAMP_TO_EDGE : TINYGLTF_TEXTURE_WRAP_REPEAT;
  };
  sampler.wrapS = wrap(texture.GetWrapModeU());
  sampler.wrapT = wrap(texture.GetWrapModeV());
  context.model.samplers.push_back(sampler);

  tinygltf::Texture target;
  target.name = texture.GetName().Std();
  target.source = static_cast<int>(context.model.images.size() - 1);
  target.sampler = static_cast<int>(context.model.samplers.size() - 1);
  context.model.textures.push_back(target);
  index = static_cast<int>(context.model.textures.size() - 1);
  return index;
}

void SetColours(tinygltf::Material& target, const KZylSurfaceMaterial& material) {
  const KZylColor diffuse = Scaled(material, "DiffuseColor", "DiffuseFactor", KZylColor(0.8, 0.8, 0.8));
  const KZylColor transparent = Scaled(material, "TransparentColor", "TransparencyFactor", KZylColor(0.0, 0.0, 0.0));
  // Transparency is how much light passes: its mean over the channels is alpha's complement.
  const double alpha = Unit(1.0 - (transparent.mRed + transparent.mGreen + transparent.mBlue) / 3.0);
  target.pbrMetallicRoughness.baseColorFactor = {Unit(diffuse.mRed), Unit(diffuse.mGreen), Unit(diffuse.mBlue), alpha};
  if (alpha < 1.0) target.alphaMode = "BLEND";

  const KZylColor emissive = Scaled(material, "EmissiveColor", "EmissiveFactor", KZylColor(0.0, 0.0, 0.0));
  target.emissiveFactor = {Unit(emissive.mRed), Unit(emissive.mGreen), Unit(emissive.mBlue)};

  target.pbrMetallicRoughness.metallicFactor = 0.0;
  // A higher phong exponent is a smoother surface; without one, the surface is fully rough.
  const KZylProperty shininess = material.FindProperty("Shininess");
  const double exponent = shininess.IsValid() ? shininess.GetDouble() : 0.0;
  target.pbrMetallicRoughness.roughnessFactor = exponent > 0.0 && std::isfinite(exponent) ? Unit(std::sqrt(2.0 / (exponent + 2.0))) : 1.0;
}

}  // namespace

int ConvertMaterial(ConversionContext& context, const KZylSurfaceMaterial* material, const KZylTexture* texture, int texCoord) {
  if (texCoord < 0) texture = nullptr;
  if (!material && !texture) return -1;
  const auto key = std::make_pair(material, texture);
  auto known = context.materials.find(key);
  if (known != context.materials.end()) return known->second;

  tinygltf::Material target;
  target.name = material ? material->GetName().Std() : texture->GetName().Std();
  target.pbrMetallicRoughness.metallicFactor = 0.0;
  if (material) SetColours(target, *material);
  if (texture) {
    const int textureIndex = ConvertTexture(context, *texture);
    if (textureIndex >= 0) {
      target.pbrMetallicRoughness.baseColorTexture.index = textureIndex;
      target.pbrMetallicRoughness.baseColorTexture.texCoord = texCoord;
      // The image gives the diffuse colour; the factor keeps only the alpha.
      std::vector<double>& base = target.pbrMetallicRoughness.baseColorFactor;
      std::fill(base.begin(), base.begin() + 3, 1.0);
    }
  }
  context.model.materials.push_back(target);
  const int index = static_cast<int>(context.model.materials.size() - 1);
  context.materials[key] = index;
  return index;
}

}  // namespace zylgltf

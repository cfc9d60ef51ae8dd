#include <filesystem>

#include "BrokenFiles.h"
#include "apps/import/BoxGltf.h"
#include "apps/import/TemporaryFolder.h"

namespace zrfigure::fixtures {
namespace {

std::string Bytes(std::uint32_t value) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

/// A binary glTF file, its lengths and padding as demanded.
std::string Binary(std::string json, std::string buffer) {
  json.resize((json.size() + 3) / 4 * 4, ' ');
  buffer.resize((buffer.size() + 3) / 4 * 4, '\0');
  return "glTF" + Bytes(2) + Bytes(static_cast<std::uint32_t>(28 + json.size() + buffer.size())) +
         Bytes(static_cast<std::uint32_t>(json.size())) + "JSON" + json +
         Bytes(static_cast<std::uint32_t>(buffer.size())) + std::string("BIN\0", 4) + buffer;
}

const std::string kFourGigabytes = "4294967295";

const Damage kDamages[] = {
    // Accessors, buffer views, buffers.
    {"count-huge", R"("count":36)", R"("count":4294967292)", 0},
    {"count-huge-points", R"("count":8)", R"("count":2147483647)", 0},
    {"count-negative", R"("count":36)", R"("count":-36)", 0},
    {"count-fraction", R"("count":36)", R"("count":3.5e300)", 0},
    {"count-nought", R"("count":36)", R"("count":0)", 0},
    {"count-not-triangles", R"("count":36)", R"("count":35)", 0},
    {"count-text", R"("count":36)", R"("count":"many")", 0},
    {"points-fewer-than-indices", R"("count":8)", R"("count":3)", 0},
    {"view-out-of-range", R"("bufferView":1)", R"("bufferView":7)", 0},
    {"view-negative", R"("bufferView":1)", R"("bufferView":-1)", 0},
    {"view-missing", R"("bufferView":1,)", "", 0},
    {"view-offset-huge", R"("byteOffset":96)", R"("byteOffset":)" + kFourGigabytes},
    {"view-offset-negative", R"("byteOffset":96)", R"("byteOffset":-96)"},
    {"view-length-huge", R"("byteLength":72)", R"("byteLength":)" + kFourGigabytes},
    {"view-stride-nought", R"("byteLength":96)", R"("byteLength":96,"byteStride":0)"},
    {"view-stride-huge", R"("byteLength":96)", R"("byteLength":96,"byteStride":2147483647)"},
    {"view-stride-negative", R"("byteLength":96)", R"("byteLength":96,"byteStride":-12)"},
    {"accessor-offset-huge", R"("count":8)", R"("count":8,"byteOffset":4294967290)", 0},
    {"buffer-out-of-range", R"("buffer":0)", R"("buffer":9)", 0},
    {"buffer-length-huge", R"("byteLength":168)", R"("byteLength":99999999999999)"},
    {"buffer-length-short", R"("byteLength":168)", R"("byteLength":10)"},
    {"type-unknown", "5123", "5199", 0},
    {"type-wide", "5123", "5125", 0},
    {"type-float-indices", "5123", "5126", 0},
    {"vector-for-scalar", "SCALAR", "MAT4", 0},
    {"scalar-for-vector", "VEC3", "SCALAR", 0},
    {"no-positions", "POSITION", "PLACES", 0},
    {"accessor-out-of-range", R"("POSITION":0)", R"("POSITION":99)"},
    {"indices-out-of-range", R"("indices":1)", R"("indices":99)"},
    {"indices-are-positions", R"("indices":1)", R"("indices":0)"},
    {"mode-unknown", R"("indices":1)", R"("indices":1,"mode":77)"},
    {"sparse", R"("count":8)",
     R"("count":8,"sparse":{"count":9999999,"indices":{"bufferView":1},"values":{"bufferView":1}})", 0},
    // Nodes and scenes.
    {"own-child", R"("mesh":0)", R"("mesh":0,"children":[0])"},
    {"own-grandchild", R"("mesh":0\})", R"("mesh":0,"children":[1]},{"children":[0],"mesh":1})"},
    {"child-out-of-range", R"("mesh":0)", R"("mesh":0,"children":[5])"},
    {"child-text", R"("mesh":0)", R"("mesh":0,"children":["0"])"},
    {"mesh-out-of-range", R"("mesh":0)", R"("mesh":99)"},
    {"scene-out-of-range", R"("scene":0)", R"("scene":9)"},
    {"no-scenes", R"("scenes")", R"("seens")"},
    {"root-out-of-range", R"(\{"nodes":\[0\]\})", R"({"nodes":[4]})"},
    {"scale-nought", R"("mesh":0)", R"("mesh":0,"scale":[0,0,0])"},
    {"scale-huge", R"("mesh":0)", R"("mesh":0,"scale":[1e308,1e308,1e308])"},
    {"scale-mirrored", R"("mesh":0)", R"("mesh":0,"scale":[-1,-1,-1])"},
    {"place-huge", R"("mesh":0)", R"("mesh":0,"translation":[1e308,0,0])"},
    {"place-endless", R"("mesh":0)", R"("mesh":0,"translation":[1e999,0,0])"},
    {"turn-nought", R"("mesh":0)", R"("mesh":0,"rotation":[0,0,0,0])"},
    {"matrix-short", R"("mesh":0)", R"("mesh":0,"matrix":[1,0,0])"},
    {"matrix-nought", R"("mesh":0)", R"("mesh":0,"matrix":[0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0])"},
    {"matrix-slanted", R"("mesh":0)", R"("mesh":0,"matrix":[1,9,0,0,0,1,0,0,0,7,1,0,0,0,0,5])"},
    // Document.
    {"version-unknown", R"("2\.0")", R"("9.0")"},
    {"no-asset", R"("asset")", R"("asses")"},
    {"extension-required", R"("scene":0)", R"("scene":0,"extensionsRequired":["KHR_draco_mesh_compression"])"},
    {"compressed", R"("indices":1)",
     R"("indices":1,"extensions":{"KHR_draco_mesh_compression":{"bufferView":1,"attributes":{"POSITION":0}}})"},
    {"nodes-no-list", R"("nodes":\[\{)", R"("nodes":{"a":[{)"},
    {"not-json", R"("scene":0)", R"("scene":0,,)"},
    {"broken-utf-8", "Box_1", "Box\xC3\xF0\x9F"},
    {"control-characters", "Box_1", R"(Box\u0000\u001b[2J\n)"},
    {"deep", R"("scene":0)", R"("scene":0,"extras":)" + std::string(100000, '[') + std::string(100000, ']')}};

/// Every number of the positions set to one value.
std::string WithPositions(float value) {
  std::string buffer = BoxBuffer();
  for (std::size_t at = 12; at < 96; at += sizeof value) {
    buffer.replace(at, sizeof value, reinterpret_cast<const char*>(&value), sizeof value);
  }
  return buffer;
}

void AddBadBuffers(const std::string& document, BrokenFiles& files) {
  files.push_back({"positions-nan.glb", Binary(document, WithPositions(std::numeric_limits<float>::quiet_NaN()))});
  files.push_back({"positions-infinite.glb", Binary(document, WithPositions(std::numeric_limits<float>::infinity()))});
  files.push_back({"positions-huge.glb", Binary(document, WithPositions(3e38F))});
  files.push_back({"positions-equal.glb", Binary(document, WithPositions(0.F))});
  files.push_back({"indices-huge.glb", Binary(document, BoxBuffer().substr(0, 96) + std::string(72, '\xff'))});
  files.push_back({"buffer-missing.glb", Binary(document, "")});
  for (const char* uri : {"no-such.bin", "../../../../../etc/passwd", ".", "https://example.invalid/box.bin",
                          "data:application/octet-stream;base64,????", "data:,x", "file:///dev/zero", ""}) {
    files.push_back({"uri-" + std::to_string(files.size()) + ".gltf",
                     BoxDocument(kOneBoxNode, R"("uri":")" + std::string(uri) + R"(",)")});
  }
}

}  // namespace

BrokenFiles BrokenGltfFiles() {
  BrokenFiles files;
  const std::string document = BoxDocument(kOneBoxNode, "");
  for (const Damage& damage : kDamages) {
    files.push_back({damage.name + ".glb", Binary(Damaged(document, damage), BoxBuffer())});
  }
  AddBadBuffers(document, files);
  const std::string whole = Binary(document, BoxBuffer());
  for (const std::size_t at : {std::size_t{8}, std::size_t{12}, whole.size() - 176}) {  // file, JSON, buffer
    for (const std::uint32_t length : {0U, 5U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
      files.push_back(
          {"length-" + std::to_string(files.size()) + ".glb", std::string(whole).replace(at, 4, Bytes(length))});
    }
  }
  AddCut("cut", ".glb", whole, "", 6, files);
  AddFlipped("flipped", ".glb", whole, 12, 16, files);
  const std::filesystem::path other = std::filesystem::path(ZR_MODELS_DIR) / "as1-oc-214.glb";
  if (std::filesystem::exists(other)) AddFlipped("other-flipped", ".glb", ReadWholeFile(other), 12, 8, files);
  return files;
}

}  // namespace zrfigure::fixtures

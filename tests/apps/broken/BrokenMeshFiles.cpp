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

/// Every number of the document that sizes, places or refers to something, wrong in every way.
std::vector<Damage> WrongNumbers() {
  const std::pair<std::string, const char*> numbers[] = {
      {"count", "36"},      {"count", "8"},        {"bufferView", "1"}, {"buffer", "0"},  {"byteOffset", "96"},
      {"byteLength", "72"}, {"byteLength", "168"}, {"POSITION", "0"},   {"indices", "1"}, {"componentType", "5123"},
      {"mesh", "0"},        {"scene", "0"}};
  std::vector<Damage> damages;
  for (const auto& [field, sound] : numbers) {
    Damage& damage = damages.emplace_back(Damage{"\"" + field + "\":" + sound + "(?![0-9])", {}, true});
    for (const char* wrong : {"-1", "5", "3.5e300", "4294967292", "\"many\""}) {
      damage.replacements.push_back("\"" + field + "\":" + wrong);
    }
  }
  return damages;
}

const std::vector<Damage> kDamages{
    {R"("count":36)", {R"("count":0)"}, true},
    {R"("count":8)",
     {R"($&,"byteOffset":4294967290)",
      R"($&,"sparse":{"count":9999999,"indices":{"bufferView":1},"values":{"bufferView":1}})"},
     true},
    {R"("bufferView":1,)", {""}, true},
    {R"("byteLength":96)", {R"($&,"byteStride":0)", R"($&,"byteStride":2147483647)", R"($&,"byteStride":-12)"}},
    {"5123", {"5125", "5126"}, true},
    {"SCALAR", {"MAT4"}, true},
    {"VEC3", {"SCALAR"}, true},
    {"POSITION", {"PLACES"}, true},
    {R"("indices":1)",
     {R"("indices":0)", R"($&,"mode":77)",
      R"($&,"extensions":{"KHR_draco_mesh_compression":{"bufferView":1,"attributes":{"POSITION":0}}})"}},
    {R"("mesh":0)",
     {R"($&,"children":[0])", R"($&,"children":[1]},{"children":[0],"mesh":1)", R"($&,"children":[5])",
      R"($&,"children":["0"])", R"($&,"scale":[0,0,0])", R"($&,"scale":[1e308,1e308,1e308])",
      R"($&,"scale":[-1,-1,-1])", R"($&,"translation":[1e308,0,0])", R"($&,"translation":[1e999,0,0])",
      R"($&,"rotation":[0,0,0,0])", R"($&,"matrix":[1,0,0])", R"($&,"matrix":[0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0])",
      R"($&,"matrix":[1,9,0,0,0,1,0,0,0,7,1,0,0,0,0,5])"}},
    {R"("scene":0)",
     {R"($&,,)", R"($&,"extensionsRequired":["KHR_draco_mesh_compression"])",
      R"($&,"extras":)" + std::string(100000, '[') + std::string(100000, ']')}},
    {R"("nodes":\[0\])", {R"("nodes":[4])"}},
    {R"("scenes")", {R"("seens")"}},
    {R"("asset")", {R"("asses")"}},
    {R"("2\.0")", {R"("9.0")"}},
    {R"("nodes":\[\{)", {R"("nodes":{"a":[{)"}},
    {"Box_1", {"Box\xC3\xF0\x9F", R"(Box\u0000\u001b[2J\n)"}}};

/// Every number of the positions set to one value.
std::string WithPositions(float value) {
  std::string buffer = BoxBuffer();
  for (std::size_t at = 12; at < 96; at += sizeof value) {
    buffer.replace(at, sizeof value, reinterpret_cast<const char*>(&value), sizeof value);
  }
  return buffer;
}

void AddBadBuffers(const std::string& document, BrokenFiles& files) {
  const auto add = [&](const std::string& bytes, const char* extension) {
    files.push_back({"buffer-" + std::to_string(files.size()) + extension, bytes});
  };
  using Limits = std::numeric_limits<float>;
  for (const float value : {Limits::quiet_NaN(), Limits::infinity(), 3e38F, 0.F}) {
    add(Binary(document, WithPositions(value)), ".glb");
  }
  add(Binary(document, BoxBuffer().substr(0, 96) + std::string(72, '\xff')), ".glb");
  add(Binary(document, ""), ".glb");
  for (const char* uri : {"no-such.bin", "../../../../../etc/passwd", ".", "https://example.invalid/box.bin",
                          "data:application/octet-stream;base64,????", "data:,x", "file:///dev/zero", ""}) {
    add(BoxDocument(kOneBoxNode, R"("uri":")" + std::string(uri) + R"(",)"), ".gltf");
  }
  const std::string whole = Binary(document, BoxBuffer());
  for (const std::size_t at : {std::size_t{8}, std::size_t{12}, whole.size() - 176}) {  // file, JSON, buffer
    for (const std::uint32_t length : {0U, 5U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
      add(std::string(whole).replace(at, 4, Bytes(length)), ".glb");
    }
  }
}

}  // namespace

BrokenFiles BrokenGltfFiles() {
  BrokenFiles files;
  const std::string document = BoxDocument(kOneBoxNode, "");
  const auto finish = [](const std::string& json) { return Binary(json, BoxBuffer()); };
  AddDamaged(WrongNumbers(), ".glb", document, files, finish);
  AddDamaged(kDamages, ".glb", document, files, finish);
  AddBadBuffers(document, files);
  AddCut(".glb", finish(document), "", 6, files);
  AddFlipped(".glb", finish(document), 12, 16, files);
  const std::filesystem::path other = std::filesystem::path(ZR_MODELS_DIR) / "as1-oc-214.glb";
  if (std::filesystem::exists(other)) AddFlipped(".glb", ReadWholeFile(other), 12, 8, files);
  return files;
}

BrokenFiles BrokenObjFiles() {
  const std::string wedges =
      "# two wedges\no left\nv 0 0 0\nv 10 0 0\nv 0 20 0\nv 0 0 8\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n"
      "o right\nv 30 0 0\nv 40 0 0\nv 30 20 0\nv 30 0 8\nf 5 7 6\nf 5 6 8\nf 6 7 8\nf 7 5 8\n";
  const std::vector<Damage> damages{
      {"f 1 3 2",
       {"f 1 3 99", "f 1 3 99999999999999999999", "f 0 0 0", "f -1 -2 -99", "f -2147483648 1 2", "f one three two",
        "f 1/99 3/98 2/97", "f 1//99 3//98 2//97", "f 1/// //3 /2/", "$&" + std::string(200000, ' ') + "4"}},
      {"f (\\d) (\\d) \\d", {"f 100 200 300", "f $1", "f $1 $2", "f $1 $1 $1"}, true},
      {"v 10 0 0", {"v 10", "v 1e308 0 0", std::string("v 10\0 0 0", 9)}},
      {"v (\\d+) \\d+", {"v nan 0", "v inf 0", "v 1e308 0", "v $011e30 0", "v 1e-40 0", "v $1x 0"}, true},
      {"[vf] [^\n]*\n", {""}, true},
      {"f [^\n]*\n", {""}, true},
      {"o left",
       {"o l\xC3!\xF0\x9F", "o \x1b[2J left\t", "o " + std::string(2 << 20, 'x'), "o " + std::string(1 << 20, 'x'),
        "o left \\\\", "mtllib no-such.mtl\nusemtl steel\no left", "mtllib /dev/zero\nusemtl steel\no left"}}};
  BrokenFiles files;
  AddDamaged(damages, ".obj", wedges, files);
  AddCut(".obj", wedges, "", 4, files);
  AddFlipped(".obj", wedges, 0, 12, files);
  return files;
}

}  // namespace zrfigure::fixtures

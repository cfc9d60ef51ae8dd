#pragma once
// glTF documents of boxes of 1 x 2 x 3 metres, one corner at the origin, with the given nodes.

#include <array>
#include <cstdint>
#include <string>

namespace zrfigure {

constexpr const char* kOneBoxNode = R"([{"name":"Box_1","mesh":0}])";

/// Corners and triangles of the box; the content of box.bin.
inline std::string BoxBuffer() {
  std::string buffer;
  for (int i = 0; i < 8; ++i) {
    const std::array<float, 3> corner{i & 1 ? 1.F : 0.F, i & 2 ? 2.F : 0.F, i & 4 ? 3.F : 0.F};
    buffer.append(reinterpret_cast<const char*>(corner.data()), sizeof corner);
  }
  const std::array<std::uint16_t, 36> indices{0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                                              2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5};
  buffer.append(reinterpret_cast<const char*>(indices.data()), sizeof indices);
  return buffer;
}

/// Meshes 0 to 3 are equal boxes; each has accessors of its own, as exporters write that lose sharing. `uri` is the
/// buffer's, with its comma; empty for a document inside a binary file.
inline std::string BoxDocument(const std::string& nodes, const std::string& uri = R"("uri":"box.bin",)") {
  std::string meshes, accessors, comma;
  int next = 0;
  for (const char* name : {"Box", "Box", "SOLID", "COMPOUND"}) {
    meshes += comma + R"({"name":")" + name + R"(","primitives":[{"attributes":{"POSITION":)" + std::to_string(next) +
              R"(},"indices":)" + std::to_string(next + 1) + "}]}";
    accessors += comma + R"({"bufferView":0,"componentType":5126,"count":8,"type":"VEC3","min":[0,0,0],"max":[1,2,3]},
                            {"bufferView":1,"componentType":5123,"count":36,"type":"SCALAR"})";
    comma = ",";
    next += 2;
  }
  return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":)" + nodes + R"(,"meshes":[)" +
         meshes + R"(],"accessors":[)" + accessors + R"(],"buffers":[{)" + uri +
         R"("byteLength":168}],"bufferViews":[{"buffer":0,"byteLength":96},
           {"buffer":0,"byteOffset":96,"byteLength":72}]})";
}

}  // namespace zrfigure

#include "visibility/VisibilityScene.h"

#include <map>
#include <new>

#include "visibility/EmbreeQueries.h"
#include "visibility/MeshBox.h"

namespace zrfigure {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct DeviceRelease {
  void operator()(RTCDevice device) const { rtcReleaseDevice(device); }
};
struct SceneRelease {
  void operator()(RTCScene scene) const { rtcReleaseScene(scene); }
};
using Device = std::unique_ptr<RTCDeviceTy, DeviceRelease>;
using Scene = std::unique_ptr<RTCSceneTy, SceneRelease>;

/// Embree does not throw: it answers with null and remembers why.
void ThrowIfOutOfMemory(RTCDevice device) {
  if (rtcGetDeviceError(device) == RTC_ERROR_OUT_OF_MEMORY) throw std::bad_alloc();
}

Scene NewScene(RTCDevice device) {
  Scene scene(rtcNewScene(device));
  rtcSetSceneFlags(scene.get(), RTC_SCENE_FLAG_ROBUST);
  return scene;
}

Scene SceneOfMesh(RTCDevice device, const Mesh& mesh) {
  const RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
  auto* positions = static_cast<float*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                                                3 * sizeof(float), mesh.positions.size()));
  auto* indices = static_cast<unsigned*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                                                 3 * sizeof(unsigned), mesh.triangles.size()));
  if (positions == nullptr || indices == nullptr) throw std::bad_alloc();
  for (const auto& position : mesh.positions) positions = std::copy(position.begin(), position.end(), positions);
  for (const auto& triangle : mesh.triangles) indices = std::copy(triangle.begin(), triangle.end(), indices);
  rtcCommitGeometry(geometry);
  Scene scene = NewScene(device);
  rtcAttachGeometry(scene.get(), geometry);
  rtcReleaseGeometry(geometry);
  rtcCommitScene(scene.get());
  ThrowIfOutOfMemory(device);
  return scene;
}

// Embree takes column-major 3x4 for column vectors; the rows of a row-vector placement are those columns.
std::array<float, 12> InstanceTransform(const Placement& placement) {
  std::array<float, 12> m{};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) m[row * 3 + column] = static_cast<float>(placement.linear[row][column]);
  }
  m[9] = static_cast<float>(placement.translation.x);
  m[10] = static_cast<float>(placement.translation.y);
  m[11] = static_cast<float>(placement.translation.z);
  return m;
}

RTCRay MakeRay(Vec3 origin, Vec3 direction, double near, double far) {
  RTCRay ray{};
  ray.org_x = static_cast<float>(origin.x), ray.org_y = static_cast<float>(origin.y);
  ray.org_z = static_cast<float>(origin.z);
  ray.dir_x = static_cast<float>(direction.x), ray.dir_y = static_cast<float>(direction.y);
  ray.dir_z = static_cast<float>(direction.z);
  ray.tnear = static_cast<float>(near);
  ray.tfar = static_cast<float>(far);
  ray.mask = ~0u;
  return ray;
}

RTCRayHit Intersect(RTCScene scene, const RTCRay& ray) {
  RTCRayHit query{};
  query.ray = ray;
  query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
  query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
  IntersectRay(scene, query);
  return query;
}

}  // namespace

struct VisibilityScene::Impl {
  Device device;
  struct Product {
    Scene scene;
    Box3 box;  // In the part's own space.
  };

  std::map<int, Product> products;
  Scene world;
  std::vector<int> leaves;  // Ascending; the geometry id of an instance is its occurrence's index.
  Box3 bounds;

  void AddInstance(const Model& model, int leaf) {
    const Occurrence& occurrence = model.occurrences[leaf];
    const Mesh& mesh = model.products[occurrence.product].mesh;
    Product& product = products[occurrence.product];
    if (!product.scene) product = {SceneOfMesh(device.get(), mesh), BoxOf(mesh)};
    const RTCGeometry instance = rtcNewGeometry(device.get(), RTC_GEOMETRY_TYPE_INSTANCE);
    rtcSetGeometryInstancedScene(instance, product.scene.get());
    const auto transform = InstanceTransform(occurrence.toWorld);
    rtcSetGeometryTransform(instance, 0, RTC_FORMAT_FLOAT3X4_COLUMN_MAJOR, transform.data());
    rtcCommitGeometry(instance);
    rtcAttachGeometryByID(world.get(), instance, static_cast<unsigned>(leaf));
    rtcReleaseGeometry(instance);
    const auto addsNothing = [&](Vec3 corner) {
      return LiesWellInside(TransformPoint(occurrence.toWorld, corner), bounds);
    };
    if (std::ranges::all_of(Corners(product.box), addsNothing)) return;
    for (const auto& position : mesh.positions) bounds.Add(TransformPoint(occurrence.toWorld, ToVec3(position)));
  }

  // Is there a surface of another occurrence between the two tolerances? Steps over the own surfaces one by one.
  [[nodiscard]] bool OccludedByOther(const OcclusionQuery& query) const {
    double near = query.tolerance;
    while (near < query.ownTolerance) {
      const RTCRayHit hit = Intersect(world.get(), MakeRay(query.point, query.toViewer, near, query.ownTolerance));
      if (hit.hit.geomID == RTC_INVALID_GEOMETRY_ID) return false;
      if (static_cast<int>(hit.hit.instID[0]) != query.ownOccurrence) return true;
      near = std::nextafter(std::max(hit.ray.tfar, static_cast<float>(near)), kInfinity);
    }
    return false;
  }
};

VisibilityScene::VisibilityScene(const Model& model, std::span<const int> leaves) : impl_(std::make_unique<Impl>()) {
  // One build thread: trees built by several differ from run to run where surfaces coincide, and so would figures.
  impl_->device.reset(rtcNewDevice("threads=1,set_affinity=0"));
  if (!impl_->device) throw std::bad_alloc();
  impl_->world = NewScene(impl_->device.get());
  impl_->leaves.assign(leaves.begin(), leaves.end());
  std::ranges::sort(impl_->leaves);
  impl_->leaves.erase(std::unique(impl_->leaves.begin(), impl_->leaves.end()), impl_->leaves.end());
  for (const int leaf : impl_->leaves) impl_->AddInstance(model, leaf);
  rtcCommitScene(impl_->world.get());
  ThrowIfOutOfMemory(impl_->device.get());
}

VisibilityScene::VisibilityScene(const Model& model) : VisibilityScene(model, LeafOccurrences(model)) {}
VisibilityScene::~VisibilityScene() = default;
VisibilityScene::VisibilityScene(VisibilityScene&&) noexcept = default;
VisibilityScene& VisibilityScene::operator=(VisibilityScene&&) noexcept = default;

void VisibilityScene::SetShown(std::span<const int> occurrences) {
  std::vector<int> shown(occurrences.begin(), occurrences.end());
  std::ranges::sort(shown);
  for (const int leaf : impl_->leaves) {
    const RTCGeometry instance = rtcGetGeometry(impl_->world.get(), static_cast<unsigned>(leaf));
    if (std::ranges::binary_search(shown, leaf)) {
      rtcEnableGeometry(instance);
    } else {
      rtcDisableGeometry(instance);
    }
  }
  rtcCommitScene(impl_->world.get());
}

bool VisibilityScene::Occluded(const OcclusionQuery& query) const {
  const double near = std::max(query.tolerance, query.ownTolerance);
  RTCRay ray = MakeRay(query.point, query.toViewer, near, kInfinity);
  OccludeRay(impl_->world.get(), ray);
  return ray.tfar < 0 || impl_->OccludedByOther(query);
}

std::optional<PickHit> VisibilityScene::Pick(const View& view, Point2 pixel) const {
  if (impl_->bounds.Empty()) return std::nullopt;
  // The ray starts one diagonal in front of the scene's middle: near enough that single precision loses nothing.
  const Vec3 middle = (impl_->bounds.min + impl_->bounds.max) * 0.5;
  const double start = view.ToPixel(middle).z - impl_->bounds.Diagonal() * view.scale;
  const Vec3 origin = view.ToWorld({pixel.x, pixel.y, start});
  const Vec3 direction = view.direction.toViewer * -1;
  const RTCRayHit hit = Intersect(impl_->world.get(), MakeRay(origin, direction, 0, kInfinity));
  if (hit.hit.geomID == RTC_INVALID_GEOMETRY_ID) return std::nullopt;
  return PickHit{static_cast<int>(hit.hit.instID[0]), origin + direction * hit.ray.tfar,
                 start + hit.ray.tfar * view.scale};
}

const Box3& VisibilityScene::Bounds() const {
  return impl_->bounds;
}

}  // namespace zrfigure

#include "visibility/View.h"

#include <charconv>
#include <map>
#include <numbers>

#include "visibility/MeshBox.h"

namespace zrfigure {
namespace {

struct NamedDirection {
  std::string_view name;
  double azimuth, elevation;
};

// The isometric elevation is atan(1/sqrt 2), which makes the three axes equally short.
constexpr double kIsoElevation = 35.264389682754654;
constexpr NamedDirection kNamedDirections[] = {{"iso", 45, kIsoElevation}, {"front", 0, 0},  {"top", 0, 90},
                                               {"right", 90, 0},           {"left", -90, 0}, {"back", 180, 0},
                                               {"bottom", 0, -90}};

// Exact at multiples of 90 degrees, so that the named views have no stray 6e-17 that would tilt edge-on faces.
double SinDegrees(double degrees) {
  const double turn = std::fmod(degrees, 360.0);
  if (std::fmod(turn, 180.0) == 0) return 0;
  if (turn == 90 || turn == -270) return 1;
  if (turn == -90 || turn == 270) return -1;
  return std::sin(turn * std::numbers::pi / 180);
}
double CosDegrees(double degrees) {
  return SinDegrees(degrees + 90);
}

ViewDirection FromAngles(double azimuth, double elevation) {
  const double sa = SinDegrees(azimuth), ca = CosDegrees(azimuth);
  const double se = SinDegrees(elevation), ce = CosDegrees(elevation);
  return {{sa * ce, -ca * ce, se}, {-sa * se, ca * se, ce}};
}

std::optional<double> ParseNumber(std::string_view text) {
  double value = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failure != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

}  // namespace

std::optional<ViewDirection> ParseViewDirection(std::string_view text, std::string& error) {
  for (const NamedDirection& named : kNamedDirections) {
    if (named.name == text) return FromAngles(named.azimuth, named.elevation);
  }
  const std::size_t comma = text.find(',');
  if (comma != std::string_view::npos) {
    const auto azimuth = ParseNumber(text.substr(0, comma));
    const auto elevation = ParseNumber(text.substr(comma + 1));
    if (azimuth && elevation && std::abs(*elevation) <= 90) return FromAngles(*azimuth, *elevation);
  }
  error = "view '" + std::string(text) +
          "' is not known: give iso, front, top, right, left, back, bottom or AZIMUTH,ELEVATION in degrees, "
          "elevation from -90 to 90";
  return std::nullopt;
}

Vec3 View::ToPixel(Vec3 world) const {
  const Vec3 d = (world - centre) * scale;
  return {centrePx.x + Dot(d, Right()), centrePx.y - Dot(d, direction.up), -Dot(d, direction.toViewer)};
}

Vec3 View::ToWorld(Vec3 pixel) const {
  const Vec3 offset =
      Right() * (pixel.x - centrePx.x) - direction.up * (pixel.y - centrePx.y) - direction.toViewer * pixel.z;
  return centre + offset * (1 / scale);
}

Matrix4 View::WorldToPixel() const {
  const Vec3 axes[3] = {Right() * scale, direction.up * -scale, direction.toViewer * -scale};
  const double shift[3] = {centrePx.x, centrePx.y, 0};
  Matrix4 result;
  for (int column = 0; column < 3; ++column) {
    const Vec3 axis = axes[column];
    result.m[0][column] = axis.x;
    result.m[1][column] = axis.y;
    result.m[2][column] = axis.z;
    result.m[3][column] = shift[column] - Dot(axis, centre);
  }
  return result;
}

Box2 ProjectedBox(const Model& model, std::span<const int> leaves, const View& view) {
  std::map<int, Box3> meshBoxes;
  Box2 box;
  for (const int leaf : leaves) {
    const Occurrence& occurrence = model.occurrences[leaf];
    const auto imageOf = [&](Vec3 p) {
      const Vec3 pixel = view.ToPixel(TransformPoint(occurrence.toWorld, p));
      return Point2{pixel.x, pixel.y};
    };
    const Mesh& mesh = model.products[occurrence.product].mesh;
    const auto [meshBox, isNew] = meshBoxes.try_emplace(occurrence.product);
    if (isNew) meshBox->second = BoxOf(mesh);
    const auto addsNothing = [&](Vec3 corner) { return LiesWellInside(imageOf(corner), box); };
    if (std::ranges::all_of(Corners(meshBox->second), addsNothing)) continue;
    for (const auto& position : mesh.positions) box.Add(imageOf(ToVec3(position)));
  }
  return box;
}

View FitView(const Model& model, std::span<const int> leaves, const ViewDirection& direction, const Box2& target,
             std::array<int, 2> imageSize) {
  View view;
  view.direction = direction;
  view.widthPx = imageSize[0];
  view.heightPx = imageSize[1];
  const Box2 box = ProjectedBox(model, leaves, view);
  if (!box.Empty()) {
    view.centre = view.ToWorld({box.Centre().x, box.Centre().y, 0});
    const double wide = box.Width() > 0 ? target.Width() / box.Width() : 0;
    const double high = box.Height() > 0 ? target.Height() / box.Height() : 0;
    const double fit = wide > 0 && high > 0 ? std::min(wide, high) : std::max(wide, high);
    if (fit > 0) view.scale = fit;
  }
  view.centrePx = target.Centre();
  return view;
}

}  // namespace zrfigure

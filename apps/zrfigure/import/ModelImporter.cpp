#include "import/ModelImporter.h"

#include <BRepBndLib.hxx>
#include <Bnd_Box.hxx>
#include <Standard_Failure.hxx>
#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <utility>

#include "import/AssemblyTree.h"
#include "import/BRepTessellation.h"
#include "import/DocumentReader.h"
#include "import/FileCheck.h"
#include "import/ImportError.h"
#include "import/NameText.h"
#include "import/ProductMerging.h"

namespace zrfigure {
namespace {

constexpr double kDeflectionOfDiagonal = 0.0005;
constexpr double kSmallestDeflection = 1e-6;

gp_Pnt ToWorld(const Placement& placement, const gp_Pnt& p) {
  const auto& m = placement.linear;
  const Vec3& t = placement.translation;
  return {p.X() * m[0][0] + p.Y() * m[1][0] + p.Z() * m[2][0] + t.x,
          p.X() * m[0][1] + p.Y() * m[1][1] + p.Z() * m[2][1] + t.y,
          p.X() * m[0][2] + p.Y() * m[1][2] + p.Z() * m[2][2] + t.z};
}

void AddTransformed(const Bnd_Box& box, const Placement& placement, Bnd_Box& target) {
  const gp_Pnt low = box.CornerMin();
  const gp_Pnt high = box.CornerMax();
  for (const double x : {low.X(), high.X()}) {
    for (const double y : {low.Y(), high.Y()}) {
      for (const double z : {low.Z(), high.Z()}) target.Add(ToWorld(placement, gp_Pnt(x, y, z)));
    }
  }
}

/// Diagonal of the box round the boxes of all occurrences: a few per cent too large for turned parts, but cheap.
double SceneDiagonal(const AssemblyTree& tree) {
  std::vector<Bnd_Box> boxes(tree.shapes.size());
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    if (!tree.shapes[i].IsNull()) BRepBndLib::Add(tree.shapes[i], boxes[i], false);
  }
  Bnd_Box scene;
  for (const Occurrence& occurrence : tree.model.occurrences) {
    const Bnd_Box& box = boxes[static_cast<std::size_t>(occurrence.product)];
    if (!box.IsVoid() && !box.IsOpen()) AddTransformed(box, occurrence.toWorld, scene);
  }
  return scene.IsVoid() ? 1.0 : std::sqrt(scene.SquareExtent());
}

/// A part that the mesher gives up on is left out like one without faces; the rest of the assembly is still worth a
/// figure.
void MeshParts(AssemblyTree& tree) {
  const double deflection = std::max(SceneDiagonal(tree) * kDeflectionOfDiagonal, kSmallestDeflection);
  for (std::size_t i = 0; i < tree.shapes.size(); ++i) {
    Product& product = tree.model.products[i];
    try {
      product.mesh = TessellatePart(tree.shapes[i], deflection);
    } catch (const Standard_Failure& failure) {
      tree.model.warnings.push_back("part '" + product.name +
                                    "' cannot be meshed: " + CleanText(failure.GetMessageString()));
    }
    tree.shapes[i].Nullify();
  }
}

/// Not less than twice the largest assembly anybody draws. Rays and areas are computed from products of up to four
/// lengths in single precision, which beyond this are no longer finite.
constexpr double kFarthestMillimetres = 1e9;

/// Largest distance of a position from the part's origin along any axis; infinite when one is not a number.
double ReachOf(const Mesh& mesh) {
  double reach = 0;
  for (const std::array<float, 3>& position : mesh.positions) {
    for (const float value : position)
      reach = std::isfinite(value) ? std::max(reach, std::abs(double{value})) : HUGE_VAL;
  }
  return reach;
}

bool IsNear(const Placement& toWorld, double reach) {
  const auto& [x, y, z] = toWorld.linear;
  const std::array<double, 3> origin{toWorld.translation.x, toWorld.translation.y, toWorld.translation.z};
  for (std::size_t i = 0; i < 3; ++i) {
    const double farthest = std::abs(origin[i]) + reach * (std::abs(x[i]) + std::abs(y[i]) + std::abs(z[i]));
    if (!(farthest <= kFarthestMillimetres)) return false;
  }
  return true;
}

void RefuseFarParts(const Model& model) {
  std::vector<double> reaches;
  for (const Product& product : model.products) reaches.push_back(ReachOf(product.mesh));
  for (const Occurrence& occurrence : model.occurrences) {
    if (IsNear(occurrence.toWorld, reaches[static_cast<std::size_t>(occurrence.product)])) continue;
    throw ImportError("part '" + occurrence.name + "' lies farther than 1000 km from the origin, or nowhere");
  }
}

}  // namespace

Model ModelImporter::Import() const {
  const FileFormat format = CheckFile(path_);
  const std::filesystem::path absolute = std::filesystem::absolute(path_);
  AssemblyTreeOptions options;
  options.fileName = CleanText(absolute.filename().string());
  options.namesAreInstances = format != FileFormat::Step;
  AssemblyTree tree = BuildAssemblyTree(ReadDocument(absolute.string(), format), options);
  MeshParts(tree);
  if (format != FileFormat::Step) MergeEqualProducts(tree.model);
  DropEmptyParts(tree.model);
  if (tree.model.occurrences.empty()) throw ImportError("no solid or surface in file");
  RefuseFarParts(tree.model);
  tree.model.sourceName = options.fileName;
  return std::move(tree.model);
}

}  // namespace zrfigure

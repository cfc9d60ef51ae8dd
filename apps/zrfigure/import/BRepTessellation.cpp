#include "import/BRepTessellation.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <algorithm>
#include <cmath>

#include "import/CreaseMesh.h"
#include "import/VectorMath.h"

// Idea: the mesher puts the same nodes on an edge for both of its faces, in the same order. So an edge tells which
// nodes of two faces coincide, without any search: across a smooth edge (or a seam) they are joined to one position
// with one normal, across a sharp one they stay apart and the edge becomes a drawn polyline. Cost: linear in nodes.

namespace zrfigure {
namespace {

constexpr double kAngularDeflection = 0.35;    // radians: a full circle gets 18 segments at least
constexpr double kTangentCosine = 0.99939083;  // 2 degrees
constexpr double kJoinCosine = 0.86602540;     // 30 degrees

Vec3 ToVec3(const gp_XYZ& v) {
  return {v.X(), v.Y(), v.Z()};
}

/// A face's triangulation in part coordinates; `firstNode` is the number of its first node among all nodes of the part.
struct MeshedFace {
  TopoDS_Face face;
  Handle(Poly_Triangulation) triangulation;
  TopLoc_Location location;
  std::uint32_t firstNode = 0;
  bool isReversed = false;
};

/// The nodes of an edge as one of its faces numbers them.
struct EdgeSide {
  std::vector<std::uint32_t> nodes;
};

std::vector<MeshedFace> MeshedFacesOf(const TopTools_IndexedMapOfShape& faces) {
  std::vector<MeshedFace> meshed;
  std::uint32_t firstNode = 0;
  for (int i = 1; i <= faces.Extent(); ++i) {
    MeshedFace entry;
    entry.face = TopoDS::Face(faces(i));
    entry.triangulation = BRep_Tool::Triangulation(entry.face, entry.location);
    entry.firstNode = firstNode;
    // A mirroring placement turns both the triangles and the surface's own normal round.
    entry.isReversed = (entry.face.Orientation() == TopAbs_REVERSED) != entry.location.Transformation().IsNegative();
    if (!entry.triangulation.IsNull()) firstNode += static_cast<std::uint32_t>(entry.triangulation->NbNodes());
    meshed.push_back(entry);
  }
  return meshed;
}

std::array<std::uint32_t, 3> NodesOf(const MeshedFace& face, int triangle) {
  std::array<int, 3> n{};
  face.triangulation->Triangle(triangle).Get(n[0], n[1], n[2]);
  if (face.isReversed) std::swap(n[1], n[2]);
  const auto number = [&face](int node) { return face.firstNode + static_cast<std::uint32_t>(node) - 1; };
  return {number(n[0]), number(n[1]), number(n[2])};
}

class SurfaceMeshBuilder {
public:
  SurfaceMeshBuilder(const TopoDS_Shape& shape, const TopTools_IndexedMapOfShape& faces)
      : shape_(shape), faceNumbers_(faces), faces_(MeshedFacesOf(faces)) {
    for (const MeshedFace& face : faces_) {
      if (!face.triangulation.IsNull()) AppendFace(face);
    }
  }

  Mesh Build() {
    DisjointSets sets(points_.size());
    TopTools_IndexedDataMapOfShapeListOfShape edges;
    TopExp::MapShapesAndAncestors(shape_, TopAbs_EDGE, TopAbs_FACE, edges);
    for (int i = 1; i <= edges.Extent(); ++i) HandleEdge(TopoDS::Edge(edges.FindKey(i)), edges(i), sets);
    EmitTriangles(sets);
    return std::move(mesh_);
  }

private:
  void AppendFace(const MeshedFace& face) {
    const Poly_Triangulation& triangulation = *face.triangulation;
    const gp_Trsf transform = face.location.Transformation();
    for (int i = 1; i <= triangulation.NbNodes(); ++i) {
      points_.push_back(ToVec3(triangulation.Node(i).Transformed(transform).XYZ()));
    }
    normals_.resize(points_.size());
    for (int i = 1; i <= triangulation.NbTriangles(); ++i) AddTriangleNormal(NodesOf(face, i));
    for (std::size_t i = face.firstNode; i < normals_.size(); ++i) normals_[i] = Normalized(normals_[i]);
    if (triangulation.HasUVNodes()) TakeSurfaceNormals(face);
  }

  void AddTriangleNormal(const std::array<std::uint32_t, 3>& t) {
    const Vec3 normal = Cross(points_[t[1]] - points_[t[0]], points_[t[2]] - points_[t[0]]);
    for (const std::uint32_t node : t) normals_[node] = normals_[node] + normal;
  }

  /// Poles and apexes have no surface normal; the mean of their triangles' normals, already there, stays.
  void TakeSurfaceNormals(const MeshedFace& face) {
    const BRepAdaptor_Surface surface(face.face, false);
    for (int i = 1; i <= face.triangulation->NbNodes(); ++i) {
      const gp_Pnt2d uv = face.triangulation->UVNode(i);
      gp_Pnt point;
      gp_Vec du, dv;
      surface.D1(uv.X(), uv.Y(), point, du, dv);
      const double scale = du.Magnitude() * dv.Magnitude();
      const gp_Vec normal = du.Crossed(dv);
      if (!(scale > 1e-20) || !(normal.Magnitude() > 1e-6 * scale)) continue;
      Vec3& target = normals_[face.firstNode + static_cast<std::uint32_t>(i) - 1];
      target = Normalized(ToVec3(normal.XYZ())) * (face.isReversed ? -1.0 : 1.0);
    }
  }

  void HandleEdge(const TopoDS_Edge& edge, const TopTools_ListOfShape& owners, DisjointSets& sets) {
    if (BRep_Tool::Degenerated(edge)) return;
    const std::vector<EdgeSide> sides = SidesOf(edge, owners);
    if (sides.empty()) return;
    if (sides.size() == 2 && IsTangent(edge, owners, sides)) {
      for (std::size_t i = 0; i < sides[0].nodes.size(); ++i) JoinNodes(sides[0].nodes[i], sides[1].nodes[i], sets);
      return;
    }
    Polyline line;
    for (const std::uint32_t node : sides[0].nodes) line.push_back(ToFloats(points_[node]));
    if (line.size() > 1) mesh_.sharpEdges.push_back(std::move(line));
  }

  /// One side a face, two for a seam, which one face meets from both sides.
  [[nodiscard]] std::vector<EdgeSide> SidesOf(const TopoDS_Edge& edge, const TopTools_ListOfShape& owners) const {
    std::vector<EdgeSide> sides;
    std::vector<int> seen;
    for (const TopoDS_Shape& owner : owners) {
      const int number = faceNumbers_.FindIndex(owner);
      if (number == 0 || std::find(seen.begin(), seen.end(), number) != seen.end()) continue;
      seen.push_back(number);
      const MeshedFace& face = faces_[static_cast<std::size_t>(number) - 1];
      if (face.triangulation.IsNull()) continue;
      AppendSide(edge.Oriented(TopAbs_FORWARD), face, sides);
      if (BRep_Tool::IsClosed(edge, face.face)) AppendSide(edge.Oriented(TopAbs_REVERSED), face, sides);
    }
    return sides;
  }

  static void AppendSide(const TopoDS_Shape& edge, const MeshedFace& face, std::vector<EdgeSide>& sides) {
    const Handle(Poly_PolygonOnTriangulation) polygon =
        BRep_Tool::PolygonOnTriangulation(TopoDS::Edge(edge), face.triangulation, face.location);
    if (polygon.IsNull()) return;
    EdgeSide side;
    for (int i = 1; i <= polygon->NbNodes(); ++i) {
      side.nodes.push_back(face.firstNode + static_cast<std::uint32_t>(polygon->Node(i)) - 1);
    }
    sides.push_back(std::move(side));
  }

  [[nodiscard]] bool IsTangent(const TopoDS_Edge& edge, const TopTools_ListOfShape& owners,
                               const std::vector<EdgeSide>& sides) const {
    const std::size_t count = sides[0].nodes.size();
    if (count != sides[1].nodes.size()) return false;
    const TopoDS_Face first = TopoDS::Face(owners.First());
    const TopoDS_Face last = TopoDS::Face(owners.Last());
    if (BRep_Tool::HasContinuity(edge, first, last) && BRep_Tool::Continuity(edge, first, last) >= GeomAbs_G1)
      return true;
    // Ends may lie in a pole or an apex, where normals mean little: where there are inner nodes, these decide.
    const std::size_t skip = count > 2 ? 1 : 0;
    for (std::size_t i = skip; i + skip < count; ++i) {
      if (Dot(normals_[sides[0].nodes[i]], normals_[sides[1].nodes[i]]) < kTangentCosine) return false;
    }
    return true;
  }

  void JoinNodes(std::uint32_t a, std::uint32_t b, DisjointSets& sets) const {
    if (Dot(normals_[a], normals_[b]) >= kJoinCosine) sets.Join(a, b);
  }

  void EmitTriangles(DisjointSets& sets) {
    std::vector<Vec3> sums(points_.size());
    for (std::uint32_t i = 0; i < points_.size(); ++i) {
      Vec3& sum = sums[sets.Find(i)];
      sum = sum + normals_[i];
    }
    constexpr std::uint32_t kNone = 0xFFFFFFFF;
    std::vector<std::uint32_t> positionOf(points_.size(), kNone);
    for (const MeshedFace& face : faces_) {
      if (face.triangulation.IsNull()) continue;
      for (int i = 1; i <= face.triangulation->NbTriangles(); ++i) {
        std::array<std::uint32_t, 3> triangle = NodesOf(face, i);
        if (!IsUsable(triangle)) continue;
        for (std::uint32_t& node : triangle) {
          const std::uint32_t root = sets.Find(node);
          if (positionOf[root] == kNone) {
            positionOf[root] = static_cast<std::uint32_t>(mesh_.positions.size());
            mesh_.positions.push_back(ToFloats(points_[root]));
            mesh_.normals.push_back(ToFloats(NormalizedOr(sums[root], {0, 0, 1})));
          }
          node = positionOf[root];
        }
        mesh_.triangles.push_back(triangle);
      }
    }
  }

  [[nodiscard]] bool IsUsable(const std::array<std::uint32_t, 3>& t) const {
    return std::all_of(t.begin(), t.end(), [this](std::uint32_t i) { return std::isfinite(Length(points_[i])); });
  }

  const TopoDS_Shape& shape_;
  const TopTools_IndexedMapOfShape& faceNumbers_;
  std::vector<MeshedFace> faces_;
  std::vector<Vec3> points_;
  std::vector<Vec3> normals_;
  Mesh mesh_;
};

TriangleSoup SoupOf(const TopTools_IndexedMapOfShape& faces) {
  TriangleSoup soup;
  for (const MeshedFace& face : MeshedFacesOf(faces)) {
    if (face.triangulation.IsNull()) continue;
    const gp_Trsf transform = face.location.Transformation();
    for (int i = 1; i <= face.triangulation->NbNodes(); ++i) {
      soup.positions.push_back(ToFloats(ToVec3(face.triangulation->Node(i).Transformed(transform).XYZ())));
    }
    for (int i = 1; i <= face.triangulation->NbTriangles(); ++i) soup.triangles.push_back(NodesOf(face, i));
  }
  return soup;
}

bool HasSurfaces(const TopTools_IndexedMapOfShape& faces) {
  for (int i = 1; i <= faces.Extent(); ++i) {
    TopLoc_Location location;
    if (BRep_Tool::Surface(TopoDS::Face(faces(i)), location).IsNull()) return false;
  }
  return true;
}

}  // namespace

Mesh TessellatePart(const TopoDS_Shape& shape, double deflection) {
  TopTools_IndexedMapOfShape faces;
  if (!shape.IsNull()) TopExp::MapShapes(shape, TopAbs_FACE, faces);
  if (faces.IsEmpty()) return {};
  if (!HasSurfaces(faces)) return BuildCreasedMesh(SoupOf(faces));
  BRepMesh_IncrementalMesh(shape, deflection, false, kAngularDeflection, false);
  Mesh mesh = SurfaceMeshBuilder(shape, faces).Build();
  BRepTools::Clean(shape);
  return mesh;
}

}  // namespace zrfigure

#include "import/AssemblyTree.h"

#include <BRep_Builder.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDF_Tool.hxx>
#include <TDataStd_Name.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <cmath>
#include <filesystem>
#include <map>
#include <set>
#include <utility>

#include "import/ImportError.h"
#include "import/NameText.h"

namespace zrfigure {
namespace {

constexpr std::size_t kMaxOccurrences = 2'000'000;

std::string EntryOf(const TDF_Label& label) {
  TCollection_AsciiString entry;
  TDF_Tool::Entry(label, entry);
  return entry.ToCString();
}

std::string NameOf(const TDF_Label& label) {
  Handle(TDataStd_Name) name;
  if (!label.FindAttribute(TDataStd_Name::GetID(), name)) return {};
  const TCollection_ExtendedString& text = name->Get();
  std::string utf8(static_cast<std::size_t>(text.LengthOfCString()) + 1, '\0');
  char* buffer = utf8.data();
  utf8.resize(static_cast<std::size_t>(std::max(text.ToUTF8CString(buffer), 0)));
  return CleanText(utf8.c_str());
}

TDF_Label DefinitionOf(const TDF_Label& component) {
  TDF_Label definition;
  return XCAFDoc_ShapeTool::GetReferredShape(component, definition) ? definition : component;
}

TDF_LabelSequence ComponentsOf(const TDF_Label& definition) {
  TDF_LabelSequence components;
  XCAFDoc_ShapeTool::GetComponents(definition, components);
  return components;
}

bool HasSub(const TopoDS_Shape& shape, TopAbs_ShapeEnum type) {
  return !shape.IsNull() && TopExp_Explorer(shape, type).More();
}

Placement ToPlacement(const gp_Trsf& transform) {
  Placement placement;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      placement.linear[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)] =
          transform.Value(row + 1, column + 1);
    }
  }
  placement.translation = {transform.Value(1, 4), transform.Value(2, 4), transform.Value(3, 4)};
  return placement;
}

bool IsFinite(const gp_Trsf& transform) {
  for (int row = 1; row <= 3; ++row) {
    for (int column = 1; column <= 4; ++column) {
      if (!std::isfinite(transform.Value(row, column))) return false;
    }
  }
  return true;
}

/// A component whose name and whose definition's name both were invented: a representation of the parent, no part of
/// it.
bool IsRepresentation(const TDF_Label& component) {
  const TDF_Label definition = DefinitionOf(component);
  return !XCAFDoc_ShapeTool::IsAssembly(definition) && IsInventedLink(NameOf(component)) &&
         IsInventedName(NameOf(definition));
}

/// One part's several representations as one shape. Construction geometry beside a solid would double its faces, so
/// solids win; without any solid everything with faces is taken.
TopoDS_Shape JoinRepresentations(const TDF_LabelSequence& components) {
  bool hasSolid = false;
  for (const TDF_Label& component : components)
    hasSolid |= HasSub(XCAFDoc_ShapeTool::GetShape(component), TopAbs_SOLID);
  TopoDS_Compound joined;
  BRep_Builder builder;
  builder.MakeCompound(joined);
  for (const TDF_Label& component : components) {
    const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(component);
    if (HasSub(shape, hasSolid ? TopAbs_SOLID : TopAbs_FACE)) builder.Add(joined, shape);
  }
  return joined;
}

class TreeBuilder {
public:
  TreeBuilder(const SourceDocument& source, const AssemblyTreeOptions& options)
      : facts_(source.facts),
        options_(options),
        fallbackName_(std::filesystem::path(options.fileName).stem().string()) {
    tree_.model.warnings = source.warnings;
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(source.document->Main())->GetFreeShapes(roots);
    if (roots.IsEmpty()) throw ImportError("no solid or surface in file");
    // A part needs an assembly to occur in, so everything but a single assembly gets a root of its own.
    const bool isSingleAssembly = roots.Length() == 1 && IsRealAssembly(DefinitionOf(roots.First()));
    const int parent = isSingleAssembly ? -1 : AddRoot(roots);
    for (const TDF_Label& root : roots) Visit(root, parent, gp_Trsf());
  }

  AssemblyTree Take() { return std::move(tree_); }

private:
  static bool IsRealAssembly(const TDF_Label& definition) {
    if (!XCAFDoc_ShapeTool::IsAssembly(definition)) return false;
    for (const TDF_Label& component : ComponentsOf(definition)) {
      if (!IsRepresentation(component)) return true;
    }
    return false;
  }

  int AddRoot(const TDF_LabelSequence& roots) {
    const std::string name = roots.Length() == 1 ? FileName(DefinitionOf(roots.First())) : std::string();
    Product root;
    root.name = IsInventedName(name) ? fallbackName_ : name;
    root.isAssembly = true;
    tree_.model.products.push_back(root);
    tree_.shapes.emplace_back();
    tree_.model.occurrences.push_back({-1, 0, root.name, {}});
    return 0;
  }

  void Visit(const TDF_Label& component, int parent, const gp_Trsf& parentToWorld) {
    const gp_Trsf toWorld = parentToWorld * XCAFDoc_ShapeTool::GetLocation(component).Transformation();
    const TDF_Label definition = DefinitionOf(component);
    const int product = ProductOf(definition, component, parent);
    const std::string& productName = tree_.model.products[static_cast<std::size_t>(product)].name;
    if (!IsFinite(toWorld)) {
      tree_.model.warnings.push_back("an occurrence of '" + productName + "' has no usable placement and is left out");
      return;
    }
    if (tree_.model.occurrences.size() >= kMaxOccurrences) {
      throw ImportError("more than " + std::to_string(kMaxOccurrences) + " occurrences");
    }
    // A free shape is its own definition: the name on its label is the product's.
    const bool hasInstanceName = component != definition && !IsInventedName(NameOf(component));
    const int index = static_cast<int>(tree_.model.occurrences.size());
    tree_.model.occurrences.push_back(
        {parent, product, hasInstanceName ? NameOf(component) : productName, ToPlacement(toWorld)});
    if (!tree_.model.products[static_cast<std::size_t>(product)].isAssembly) return;
    for (const TDF_Label& child : ComponentsOf(definition)) Visit(child, index, toWorld);
  }

  int ProductOf(const TDF_Label& definition, const TDF_Label& component, int parent) {
    const auto [found, isNew] =
        productOfEntry_.emplace(EntryOf(definition), static_cast<int>(tree_.model.products.size()));
    if (!isNew) return found->second;
    Product product;
    product.isAssembly = IsRealAssembly(definition);
    product.name = ProductName(definition, component, parent, product.isAssembly);
    const auto facts = facts_.find(found->first);
    if (facts != facts_.end()) product.properties = facts->second.properties;
    tree_.model.products.push_back(std::move(product));
    tree_.shapes.push_back(PartShape(definition));
    return found->second;
  }

  static TopoDS_Shape PartShape(const TDF_Label& definition) {
    if (IsRealAssembly(definition)) return {};
    if (!XCAFDoc_ShapeTool::IsAssembly(definition)) return XCAFDoc_ShapeTool::GetShape(definition);
    return JoinRepresentations(ComponentsOf(definition));
  }

  /// The name the file gives, without the version that some systems append to the identifier.
  std::string FileName(const TDF_Label& definition) const {
    const std::string name = NameOf(definition);
    if (name == options_.fileName) return fallbackName_;
    const auto facts = facts_.find(EntryOf(definition));
    const bool hasVersion = facts != facts_.end() && IsVersionOf(name, facts->second.id);
    return hasVersion ? facts->second.id : name;
  }

  std::string ProductName(const TDF_Label& definition, const TDF_Label& component, int parent, bool isAssembly) {
    const std::string name = FileName(definition);
    const std::string instanceName = NameOf(component);
    if (!IsInventedName(name)) {
      const bool isNodeName = options_.namesAreInstances && isAssembly && parent >= 0 && name == instanceName;
      return isNodeName ? WithoutInstanceSuffix(name) : name;
    }
    if (!IsInventedName(instanceName)) return instanceName;
    return OwnGeometryName(parent);
  }

  /// Geometry without any name belongs to the assembly it stands in and takes that one's name; a second one is
  /// numbered.
  std::string OwnGeometryName(int parent) {
    if (parent < 0) return fallbackName_;
    const int owner = tree_.model.occurrences[static_cast<std::size_t>(parent)].product;
    const std::string& base = tree_.model.products[static_cast<std::size_t>(owner)].name;
    const int count = ++ownGeometryCount_[owner];
    return count == 1 ? base : base + " (" + std::to_string(count) + ")";
  }

  const StepProductFactsByEntry& facts_;
  const AssemblyTreeOptions& options_;
  std::string fallbackName_;
  AssemblyTree tree_;
  std::map<std::string, int> productOfEntry_;
  std::map<int, int> ownGeometryCount_;
};

}  // namespace

AssemblyTree BuildAssemblyTree(const SourceDocument& source, const AssemblyTreeOptions& options) {
  return TreeBuilder(source, options).Take();
}

}  // namespace zrfigure

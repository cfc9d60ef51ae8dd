#include "import/StepProductFacts.h"

#include <Interface_InterfaceModel.hxx>
#include <StepBasic_MeasureValueMember.hxx>
#include <StepBasic_MeasureWithUnit.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepBasic_ProductDefinitionFormation.hxx>
#include <StepRepr_CharacterizedDefinition.hxx>
#include <StepRepr_DescriptiveRepresentationItem.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_IntegerRepresentationItem.hxx>
#include <StepRepr_MeasureRepresentationItem.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_PropertyDefinition.hxx>
#include <StepRepr_PropertyDefinitionRepresentation.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_RepresentedDefinition.hxx>
#include <StepRepr_ValueRepresentationItem.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_Tool.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>
#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <vector>

#include "import/NameText.h"

namespace zrfigure {
namespace {

std::string Text(const Handle(TCollection_HAsciiString) & text) {
  return text.IsNull() ? std::string() : CleanText(text->ToCString());
}

std::string Number(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.9g", value);
  return text.data();
}

/// A representation item as text; empty for geometry and other items that are no plain values.
std::string ItemValue(const Handle(StepRepr_RepresentationItem) & item) {
  if (const auto text = Handle(StepRepr_DescriptiveRepresentationItem)::DownCast(item); !text.IsNull()) {
    return Text(text->Description());
  }
  if (const auto count = Handle(StepRepr_IntegerRepresentationItem)::DownCast(item); !count.IsNull()) {
    return std::to_string(count->Value());
  }
  if (const auto measure = Handle(StepRepr_MeasureRepresentationItem)::DownCast(item); !measure.IsNull()) {
    return measure->Measure().IsNull() ? std::string() : Number(measure->Measure()->ValueComponent());
  }
  if (const auto value = Handle(StepRepr_ValueRepresentationItem)::DownCast(item); !value.IsNull()) {
    return value->ValueComponentMember().IsNull() ? std::string() : Number(value->ValueComponentMember()->Real());
  }
  return {};
}

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// Systems disagree on where a property's name stands: in the property when that has a name of its own, else in the
/// item.
std::string PropertyKey(const Handle(StepRepr_PropertyDefinition) & property, const std::string& itemName,
                        int itemCount) {
  const std::string name = Text(property->Name());
  if (name == "material property") {
    return Contains(Text(property->Description()), "density") || Contains(itemName, "density") ? "density" : "material";
  }
  const bool isGeneric =
      name.empty() || IsOneOf(name, {"user defined attribute", "general property", "attribute", "property"});
  return !itemName.empty() && (isGeneric || itemCount > 1) ? itemName : name;
}

Handle(StepBasic_ProductDefinition) OwnerOf(const Handle(StepRepr_PropertyDefinition) & property) {
  const StepRepr_CharacterizedDefinition definition = property->Definition();
  if (!definition.ProductDefinition().IsNull()) return definition.ProductDefinition();
  const Handle(StepRepr_ProductDefinitionShape) shape = definition.ProductDefinitionShape();
  return shape.IsNull() ? Handle(StepBasic_ProductDefinition)() : shape->Definition().ProductDefinition();
}

/// Joins the entities of one file with the labels their shapes were given.
class FactsCollector {
public:
  FactsCollector(const Handle(XSControl_WorkSession) & session, const XCAFDoc_DataMapOfShapeLabel& labels,
                 StepProductFactsByEntry& facts)
      : process_(session->TransferReader()->TransientProcess()), labels_(labels), facts_(facts) {
    const Handle(Interface_InterfaceModel) model = session->Model();
    if (model.IsNull() || process_.IsNull()) return;
    for (int i = 1; i <= model->NbEntities(); ++i) Visit(model->Value(i));
  }

private:
  void Visit(const Handle(Standard_Transient) & entity) {
    if (const auto product = Handle(StepBasic_ProductDefinition)::DownCast(entity); !product.IsNull()) FactsOf(product);
    const auto link = Handle(StepRepr_PropertyDefinitionRepresentation)::DownCast(entity);
    if (link.IsNull() || link->UsedRepresentation().IsNull()) return;
    const Handle(StepRepr_PropertyDefinition) property = link->Definition().PropertyDefinition();
    if (!property.IsNull()) AddProperty(property, link->UsedRepresentation()->Items());
  }

  void AddProperty(const Handle(StepRepr_PropertyDefinition) & property,
                   const Handle(StepRepr_HArray1OfRepresentationItem) & items) {
    if (items.IsNull() || Contains(Text(property->Name()), "validation property")) return;
    StepProductFacts* facts = FactsOf(OwnerOf(property));
    if (facts == nullptr) return;
    for (int i = items->Lower(); i <= items->Upper(); ++i) {
      const Handle(StepRepr_RepresentationItem) item = items->Value(i);
      if (item.IsNull()) continue;
      const std::string value = ItemValue(item);
      const std::string key = PropertyKey(property, Text(item->Name()), items->Length());
      if (!key.empty() && !value.empty()) facts->properties.emplace(key, value);
    }
  }

  /// Null when the product has no shape or its shape no label.
  StepProductFacts* FactsOf(const Handle(StepBasic_ProductDefinition) & definition) {
    if (definition.IsNull()) return nullptr;
    const TopoDS_Shape shape = TransferBRep::ShapeResult(process_, definition);
    if (shape.IsNull() || !labels_.IsBound(shape)) return nullptr;
    TCollection_AsciiString entry;
    TDF_Tool::Entry(labels_.Find(shape), entry);
    StepProductFacts& facts = facts_[entry.ToCString()];
    const Handle(StepBasic_ProductDefinitionFormation) formation = definition->Formation();
    if (!formation.IsNull() && !formation->OfProduct().IsNull()) {
      facts.id = Text(formation->OfProduct()->Id());
      facts.name = Text(formation->OfProduct()->Name());
    }
    return &facts;
  }

  Handle(Transfer_TransientProcess) process_;
  const XCAFDoc_DataMapOfShapeLabel& labels_;
  StepProductFactsByEntry& facts_;
};

}  // namespace

StepProductFactsByEntry CollectStepProductFacts(const STEPCAFControl_Reader& reader) {
  StepProductFactsByEntry facts;
  const XCAFDoc_DataMapOfShapeLabel& labels = reader.GetShapeLabelMap();
  FactsCollector(reader.Reader().WS(), labels, facts);
  // The container orders external files by hash, but every file describes its own products: order does not matter.
  for (NCollection_DataMap<TCollection_AsciiString, Handle(STEPCAFControl_ExternFile)>::Iterator file(
           reader.ExternFiles());
       file.More(); file.Next()) {
    if (!file.Value().IsNull() && !file.Value()->GetWS().IsNull()) FactsCollector(file.Value()->GetWS(), labels, facts);
  }
  return facts;
}

}  // namespace zrfigure

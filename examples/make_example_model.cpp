// Makes drive-unit.step: a motor that drives a belt pulley over a coupling and two pillow block bearings on a welded
// frame, drawn apart so that nearly every part can be seen from +X, -Y, +Z. Same program, same bytes.
//
//   make_example_model OUTPUT.step

#include <APIHeaderSection_MakeHeader.hxx>
#include <IFSelect_ReturnStatus.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepBasic_ProductDefinitionFormation.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_CharacterizedDefinition.hxx>
#include <StepRepr_DescriptiveRepresentationItem.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_PropertyDefinition.hxx>
#include <StepRepr_PropertyDefinitionRepresentation.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepRepr_RepresentedDefinition.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_WorkSession.hxx>
#include <cstdio>
#include <map>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "DriveUnitParts.h"

namespace {

using namespace drive_unit;

/// Product name to its user-defined properties.
using Properties = std::map<std::string, std::vector<std::pair<std::string, std::string>>>;

constexpr Screw kM12{12, 90, 18, 7.5};
constexpr Screw kM8{8, 30, 13, 5.3};

constexpr double kLift = 62;        // of everything on the plate above the plate
constexpr double kWasherLift = 22;  // of washers above what they lie on
constexpr double kNutLift = 26;     // of nuts and bolts above their washers

gp_Trsf At(double x, double y, double z) {
  gp_Trsf move;
  move.SetTranslation(gp_Vec(x, y, z));
  return move;
}

gp_Trsf Turned(const gp_Dir& axis, double degrees) {
  gp_Trsf turn;
  turn.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), axis), degrees * std::numbers::pi / 180);
  return turn;
}

class DriveUnit {
public:
  DriveUnit() : document_(new TDocStd_Document("BinXCAF")) {
    XCAFDoc_DocumentTool::Set(document_->Main(), false);
    tool_ = XCAFDoc_DocumentTool::ShapeTool(document_->Main());
    const TDF_Label root = Assembly("Drive unit");
    Place(root, Frame(), At(0, 0, 0), "Base frame");
    AddBearings(root);
    AddShaft(root);
    AddCoupling(root);
    AddMotor(root);
    tool_->UpdateAssemblies();
  }

  [[nodiscard]] const Handle(TDocStd_Document) & Document() const { return document_; }
  [[nodiscard]] const Properties& UserProperties() const { return properties_; }

private:
  TDF_Label Assembly(const std::string& name) {
    const TDF_Label label = tool_->NewShape();
    TDataStd_Name::Set(label, name.c_str());
    return label;
  }

  TDF_Label Part(const std::string& name, const TopoDS_Shape& shape, const std::string& material) {
    const TDF_Label label = tool_->AddShape(shape, false);
    TDataStd_Name::Set(label, name.c_str());
    properties_[name].emplace_back("material", material);
    return label;
  }

  void Place(const TDF_Label& assembly, const TDF_Label& product, const gp_Trsf& placement, const std::string& name) {
    TDataStd_Name::Set(tool_->AddComponent(assembly, product, TopLoc_Location(placement)), name.c_str());
  }

  /// Names instances "Bolt 1", "Bolt 2" and so on.
  void PlaceAll(const TDF_Label& assembly, const TDF_Label& product, const std::string& name,
                const std::vector<gp_Trsf>& placements) {
    int count = 0;
    for (const gp_Trsf& placement : placements)
      Place(assembly, product, placement, name + " " + std::to_string(++count));
  }

  TDF_Label Frame() {
    const TDF_Label frame = Assembly("Frame weldment");
    properties_["Frame weldment"].emplace_back("weldment", "true");
    const gp_Trsf half = Turned(gp_Dir(0, 0, 1), 180);
    const double top = -kPlateThickness;
    const double bottom = top - kRailHeight;
    Place(frame, Part("Mounting plate", MountingPlate(), "S235JR"), At(0, 0, 0), "Mounting plate 1");
    PlaceAll(frame, Part("Side rail", SideRail(), "S235JR"), "Side rail", {At(0, -60, top), At(-170, 60, top) * half});
    PlaceAll(frame, Part("Cross member", CrossMember(), "S235JR"), "Cross member",
             {At(165, 0, top), At(-85, 0, top), At(-335, 0, top)});
    const std::vector<gp_Trsf> corners{At(140, -100, bottom), At(-310, -100, bottom), At(140, 100, bottom) * half,
                                       At(-310, 100, bottom) * half};
    PlaceAll(frame, Part("Foot plate", FootPlate(), "S235JR"), "Foot plate", corners);
    std::vector<gp_Trsf> gussets;
    for (const gp_Trsf& corner : corners) gussets.push_back(corner * At(0, 33, 8));
    PlaceAll(frame, Part("Gusset", Gusset(), "S235JR"), "Gusset", gussets);
    return frame;
  }

  void AddBearings(const TDF_Label& root) {
    const TDF_Label block = Assembly("Pillow block bearing");
    Place(block, Part("Bearing housing", BearingHousing(), "EN-GJL-200"), At(0, 0, 0), "Bearing housing 1");
    Place(block, Part("Bearing insert", BearingInsert(), "100Cr6"), At(0, 0, kAxisHeight), "Bearing insert 1");
    Place(block, Part("Grease nipple", GreaseNipple(), "Brass"), At(0, 0, kAxisHeight + 44), "Grease nipple 1");
    PlaceAll(root, block, "Pillow block", {At(130, 0, kLift), At(-40, 0, kLift)});
    const TDF_Label stud = Part("Stud bolt M12x90", StudBolt(kM12), "Steel 8.8");
    const TDF_Label washer = Part("Washer 12", Washer(kM12), "Steel 200 HV");
    const TDF_Label nut = Part("Hex nut M12", HexNut(kM12), "Steel 8");
    std::vector<gp_Trsf> studs, washers, nuts;
    const double seat = kLift + kBearingFootHeight + kWasherLift;
    for (const double x : {130.0, -40.0}) {
      for (const double y : {-kBearingBoltY, kBearingBoltY}) {
        studs.push_back(At(x, y, 0));
        washers.push_back(At(x, y, seat));
        nuts.push_back(At(x, y, seat + kNutLift));
      }
    }
    PlaceAll(root, stud, "Stud bolt", studs);
    PlaceAll(root, washer, "Washer", washers);
    PlaceAll(root, nut, "Hex nut", nuts);
  }

  void AddShaft(const TDF_Label& root) {
    const double axis = kLift + kAxisHeight;
    Place(root, Part("Drive shaft", DriveShaft(), "C45"), At(-125, 0, axis), "Drive shaft 1");
    Place(root, Part("Parallel key 8x7x36", ParallelKey(), "C45"), At(211, 0, axis + 34), "Parallel key 1");
    Place(root, Part("V-belt pulley", BeltPulley(), "EN-GJL-200"), At(320, 0, axis), "V-belt pulley 1");
    Place(root, Part("Retaining ring 25", RetainingRing(), "Spring steel"), At(435, 0, axis), "Retaining ring 1");
  }

  void AddCoupling(const TDF_Label& root) {
    const double axis = kLift + kAxisHeight;
    const TDF_Label coupling = Assembly("Jaw coupling");
    PlaceAll(coupling, Part("Coupling hub", CouplingHub(), "AlSi10Mg"), "Coupling hub",
             {At(30, 0, 0), At(-30, 0, 0) * Turned(gp_Dir(1, 0, 0), 60) * Turned(gp_Dir(0, 0, 1), 180)});
    Place(coupling, Part("Coupling spider", CouplingSpider(), "PUR 92 Shore A"), Turned(gp_Dir(1, 0, 0), 30),
          "Coupling spider 1");
    Place(root, coupling, At(-140, 0, axis), "Jaw coupling 1");
  }

  void AddMotor(const TDF_Label& root) {
    const TDF_Label motor = Assembly("Electric motor");
    Place(motor, Part("Motor housing", MotorHousing(), "AlSi12"), At(0, 0, 0), "Motor housing 1");
    Place(motor, Part("Fan cover", FanCover(), "DC01"), At(-130, 0, kAxisHeight), "Fan cover 1");
    Place(motor, Part("Terminal box", TerminalBox(), "PA6-GF30"), At(0, 0, kAxisHeight + 100), "Terminal box 1");
    Place(root, motor, At(-275, 0, kLift), "Electric motor 1");
    const double seat = kLift + kMotorFootHeight + kWasherLift;
    std::vector<gp_Trsf> washers, bolts;
    for (const double x : {kMotorBoltX, -kMotorBoltX}) {
      for (const double y : {-kMotorBoltY, kMotorBoltY}) {
        washers.push_back(At(-275 + x, y, seat));
        bolts.push_back(At(-275 + x, y, seat + kNutLift + 20));
      }
    }
    PlaceAll(root, Part("Washer 8", Washer(kM8), "Steel 200 HV"), "Washer", washers);
    PlaceAll(root, Part("Hex bolt M8x30", HexBolt(kM8), "Steel 8.8"), "Hex bolt", bolts);
  }

  Handle(TDocStd_Document) document_;
  Handle(XCAFDoc_ShapeTool) tool_;
  Properties properties_;
};

Handle(TCollection_HAsciiString) Text(const std::string& text) {
  return new TCollection_HAsciiString(text.c_str());
}

void AddProperty(StepData_StepModel& model, const Handle(StepBasic_ProductDefinition) & product, const std::string& key,
                 const std::string& value) {
  const Handle(StepRepr_DescriptiveRepresentationItem) item = new StepRepr_DescriptiveRepresentationItem();
  item->Init(Text(key), Text(value));
  const Handle(StepRepr_HArray1OfRepresentationItem) items = new StepRepr_HArray1OfRepresentationItem(1, 1);
  items->SetValue(1, item);
  const Handle(StepRepr_RepresentationContext) context = new StepRepr_RepresentationContext();
  context->Init(Text("property"), Text("text"));
  const Handle(StepRepr_Representation) representation = new StepRepr_Representation();
  representation->Init(Text(key), items, context);
  StepRepr_CharacterizedDefinition owner;
  owner.SetValue(product);
  const Handle(StepRepr_PropertyDefinition) property = new StepRepr_PropertyDefinition();
  property->Init(Text("user defined attribute"), true, Text(key), owner);
  StepRepr_RepresentedDefinition definition;
  definition.SetValue(property);
  const Handle(StepRepr_PropertyDefinitionRepresentation) link = new StepRepr_PropertyDefinitionRepresentation();
  link->Init(definition, representation);
  model.AddWithRefs(link);
}

/// The document model has no user-defined properties, so they are added to what is about to be written.
void AddProperties(StepData_StepModel& model, const Properties& properties) {
  const int count = model.NbEntities();
  for (int i = 1; i <= count; ++i) {
    const auto product = Handle(StepBasic_ProductDefinition)::DownCast(model.Value(i));
    if (product.IsNull()) continue;
    const auto found = properties.find(product->Formation()->OfProduct()->Name()->ToCString());
    if (found == properties.end()) continue;
    for (const auto& [key, value] : found->second) AddProperty(model, product, key, value);
  }
}

/// Fixed, so that the file changes only when the model does.
void SetHeader(const Handle(StepData_StepModel) & model) {
  APIHeaderSection_MakeHeader header(model);
  header.SetName(Text("drive-unit"));
  header.SetTimeStamp(Text("2024-01-01T00:00:00"));
  header.SetAuthorValue(1, Text("zrcallouts"));
  header.SetOrganizationValue(1, Text("zrcallouts"));
  header.SetOriginatingSystem(Text("make_example_model"));
}

bool Write(const DriveUnit& unit, const char* path) {
  STEPCAFControl_Writer writer;
  writer.SetColorMode(false);
  writer.SetLayerMode(false);
  Interface_Static::SetIVal("write.surfacecurve.mode", 0);
  if (!writer.Transfer(unit.Document(), STEPControl_AsIs)) return false;
  const Handle(StepData_StepModel) model = writer.ChangeWriter().Model();
  AddProperties(*model, unit.UserProperties());
  SetHeader(model);
  return writer.Write(path) == IFSelect_RetDone;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_example_model OUTPUT.step\n");
    return 2;
  }
  Message::DefaultMessenger()->ChangePrinters().Clear();
  if (!Write(DriveUnit(), argv[1])) {
    std::fprintf(stderr, "make_example_model: cannot write '%s'\n", argv[1]);
    return 2;
  }
  return 0;
}

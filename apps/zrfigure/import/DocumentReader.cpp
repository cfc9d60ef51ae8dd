#include "import/DocumentReader.h"

#include <Interface_InterfaceModel.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_ProgressRange.hxx>
#include <RWGltf_CafReader.hxx>
#include <RWObj_CafReader.hxx>
#include <STEPCAFControl_ExternFile.hxx>
#include <StepGeom_CartesianPoint.hxx>
#include <StepGeom_Direction.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XSControl_WorkSession.hxx>
#include <algorithm>
#include <cmath>
#include <string_view>

#include "import/ImportError.h"
#include "import/NameText.h"

namespace zrfigure {
namespace {

constexpr double kMillimetreInMetres = 0.001;

/// Only names are wanted: colours, layers and annotations would double the time.
void WantNamesOnly(STEPCAFControl_Reader& reader) {
  reader.SetNameMode(true);
  reader.SetColorMode(false);
  reader.SetLayerMode(false);
  reader.SetPropsMode(false);
  reader.SetSHUOMode(false);
  reader.SetGDTMode(false);
  reader.SetMatMode(false);
  reader.SetViewMode(false);
}

void WarnOfUnreadReferences(const STEPCAFControl_Reader& reader, std::vector<std::string>& warnings) {
  std::vector<std::string> unread;
  for (NCollection_DataMap<TCollection_AsciiString, Handle(STEPCAFControl_ExternFile)>::Iterator file(
           reader.ExternFiles());
       file.More(); file.Next()) {
    const bool isRead = !file.Value().IsNull() && file.Value()->GetLoadStatus() == IFSelect_RetDone;
    if (!isRead) unread.push_back("referenced file '" + CleanText(file.Key().ToCString()) + "' cannot be read");
  }
  std::sort(unread.begin(), unread.end());
  warnings.insert(warnings.end(), unread.begin(), unread.end());
}

/// Well-meant files hold many harmless errors, such as unset names; only these kinds of record carry parts and
/// surfaces.
bool CarriesGeometry(const Handle(Standard_Transient) & record) {
  const std::string_view type = record->DynamicType()->Name();
  return type.substr(0, 9) == "StepGeom_" || type.substr(0, 10) == "StepShape_" ||
         type == "StepRepr_NextAssemblyUsageOccurrence";
}

/// The CAD library goes on without records that it read with errors: what they described may be missing.
void WarnOfDamagedRecords(const STEPCAFControl_Reader& reader, std::vector<std::string>& warnings) {
  const Handle(Interface_InterfaceModel) model = reader.Reader().WS()->Model();
  int count = 0;
  for (int i = 1; i <= model->NbEntities(); ++i) {
    if (model->IsErrorEntity(i) && CarriesGeometry(model->Value(i))) ++count;
  }
  if (count == 0) return;
  const std::string records = count == 1 ? " damaged record" : " damaged records";
  warnings.push_back(std::to_string(count) + records + " in the file; parts or faces may be missing");
}

bool IsFinite(const Handle(Standard_Transient) & record) {
  if (const Handle(StepGeom_CartesianPoint) point = Handle(StepGeom_CartesianPoint)::DownCast(record)) {
    for (int i = 1; i <= point->NbCoordinates(); ++i) {
      if (!std::isfinite(point->CoordinatesValue(i))) return false;
    }
  }
  if (const Handle(StepGeom_Direction) direction = Handle(StepGeom_Direction)::DownCast(record)) {
    for (int i = 1; i <= direction->NbDirectionRatios(); ++i) {
      if (!std::isfinite(direction->DirectionRatiosValue(i))) return false;
    }
  }
  return true;
}

/// One such point sends the CAD library's healing of shapes round for ever.
void RefuseEndlessGeometry(const STEPCAFControl_Reader& reader) {
  const Handle(Interface_InterfaceModel) model = reader.Reader().WS()->Model();
  for (int i = 1; i <= model->NbEntities(); ++i) {
    if (!IsFinite(model->Value(i))) throw ImportError("the STEP file is damaged: a point or direction is not finite");
  }
}

void ReadStep(const std::string& path, SourceDocument& source) {
  STEPCAFControl_Reader reader;
  WantNamesOnly(reader);
  // CP1252 would break raw UTF-8, and UTF-8 would cut names at the first raw Latin-1 letter: decided per file.
  Interface_Static::SetCVal("read.step.codepage", IsUtf8File(path) ? "UTF8" : "CP1252");
  if (reader.ReadFile(path.c_str()) != IFSelect_RetDone) throw ImportError("the STEP file is damaged");
  RefuseEndlessGeometry(reader);
  WarnOfDamagedRecords(reader, source.warnings);
  if (!reader.Transfer(source.document)) throw ImportError("no product structure or shape in the STEP file");
  source.facts = CollectStepProductFacts(reader);
  WarnOfUnreadReferences(reader, source.warnings);
}

void ReadMeshFile(const std::string& path, RWMesh_CafReader& reader, SourceDocument& source) {
  reader.SetDocument(source.document);
  reader.SetSystemLengthUnit(kMillimetreInMetres);
  reader.SetSystemCoordinateSystem(RWMesh_CoordinateSystem_Zup);
  reader.SetFillIncompleteDocument(false);
  if (!reader.Perform(path.c_str(), Message_ProgressRange())) throw ImportError("the mesh file is damaged");
}

void ReadObj(const std::string& path, SourceDocument& source) {
  const Handle(RWObj_CafReader) reader = new RWObj_CafReader();
  // The format has no unit; engineering exporters write millimetres, and Y stands up as in every viewer of it.
  reader->SetFileLengthUnit(kMillimetreInMetres);
  reader->SetFileCoordinateSystem(RWMesh_CoordinateSystem_Yup);
  ReadMeshFile(path, *reader, source);
}

}  // namespace

SourceDocument ReadDocument(const std::string& path, FileFormat format) {
  Message::DefaultMessenger()->ChangePrinters().Clear();
  SourceDocument source;
  source.document = new TDocStd_Document("BinXCAF");
  XCAFDoc_DocumentTool::Set(source.document->Main(), false);
  switch (format) {
    case FileFormat::Step:
      ReadStep(path, source);
      break;
    case FileFormat::Gltf: {
      const Handle(RWGltf_CafReader) reader = new RWGltf_CafReader();
      ReadMeshFile(path, *reader, source);
      break;
    }
    case FileFormat::Obj:
      ReadObj(path, source);
      break;
  }
  return source;
}

}  // namespace zrfigure

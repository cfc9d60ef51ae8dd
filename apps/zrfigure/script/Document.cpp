#include "script/Document.h"

#include <algorithm>
#include <utility>

#include <dg/Location.h>
#include <du/TaskPool.h>
#include <zrannotations/Callout.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/Operation.h>
#include <zrk/ShapeInstance.h>
#include <zrk/UndoHistory.h>
#include <zrk/World.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/Illustration3dView.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/SceneEdit.h>

#include "commands/FigureComposer.h"
#include "commands/FigureFiles.h"
#include "commands/FigurePages.h"
#include "commands/FigurePlan.h"
#include "commands/HostTemplate.h"
#include "commands/OutputFiles.h"
#include "commands/Selection.h"
#include "drawing/BalloonSize.h"
#include "drawing/LineArt.h"
#include "script/ChangeReport.h"
#include "script/Command.h"
#include "zrcallouts/Callouts.h"
#include "zrcallouts/Functions.h"

namespace zrfigure {
namespace {

using zrk::illustration::SceneEdit;
using zrk::illustration::TAnnotation;

du::SmartPtr<zrcallouts::Callouts> EngineOf(const du::SmartPtr<zrk::Scene>& scene) {
  return zrcallouts::GetCalloutsEngineForScene(du::DynamicCast<zrk::ShapeScene>(scene));
}

/// What the host asks the application for when rows of the item list go: the engine takes their callouts.
void ConnectItemList() {
  zritemlist::ItemList::SetListClearedHook([](const auto& scene, const auto& operation) {
    if (const auto engine = EngineOf(scene)) engine->OnListCleared(operation);
  });
  zritemlist::ItemList::SetItemRemovalHook([](const auto& scene, unsigned item, const auto& operation) {
    if (const auto engine = EngineOf(scene)) engine->OnItemRemoved(item, operation);
  });
}

bool SameContents(const TAnnotation::Contents& a, const TAnnotation::Contents& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i]->type != b[i]->type || a[i]->text != b[i]->text || a[i]->name != b[i]->name) return false;
  }
  return true;
}

TAnnotation::Contents ContentsOf(const du::SmartPtr<TAnnotation>& callouttemplate) {
  TAnnotation::Contents contents;
  callouttemplate->GetTextContent(contents);
  return contents;
}

/// Whether the contents are those of the definition, as it is or in a language it is translated to.
bool SaysIt(const TAnnotation::Contents& contents, const TemplateDefinition& definition,
            const zrcallouts::Callouts& engine) {
  const auto isIn = [&](const std::string& language) {
    return SameContents(contents, ContentsOf(BuildTemplate(definition, language, engine)));
  };
  return isIn({}) || std::any_of(definition.translations.begin(), definition.translations.end(),
                                 [&](const auto& translation) { return isIn(translation.first); });
}

/// The templates in use, each once, in the order of the callouts; the engine's comes first.
std::vector<du::SmartPtr<TAnnotation>> TemplatesOf(const HostSession& session) {
  std::vector<du::SmartPtr<TAnnotation>> templates{session.GetEngine()->GetTemplate()};
  std::set<const TAnnotation*> known{templates.front().Get()};
  for (const auto& annotation : session.GetScene()->GetAnnoSet()->GetAnnotations()) {
    const auto callout = du::DynamicCast<zrannotations::Callout>(annotation);
    const auto definition = callout ? callout->GetDefinition() : nullptr;
    if (definition && known.insert(definition.Get()).second) templates.push_back(definition);
  }
  return templates;
}

}  // namespace

/// The model as the host has it now, rendered without callouts.
struct Document::Picture {
  std::unique_ptr<Model> model;
  std::unique_ptr<OccurrenceTree> tree;
  std::vector<int> leaves;  ///< Those in the scene and shown.
  std::unique_ptr<VisibilityScene> scene;
  IdBuffer ids;
};

Document::Document(Model model, const ViewDirection& direction, const std::string& language)
    : model_(std::move(model)),
      tree_(model_, {}),
      text_(kLetteringHeightMm * kPxPerMm),
      language_(language),
      selected_(SelectOccurrences(tree_, std::nullopt, {})) {
  ConnectItemList();
  session_ = std::make_unique<HostSession>(tree_, direction, text_);
  if (!session_->HasEngine()) throw CommandError{"the callouts component made no engine"};
  sheet_ = std::make_unique<Sheet>(session_->GetScene(), page_);
  session_->SetMode(CalloutMode::OnePerItem);
  UseTemplate(*BuiltInTemplate("number"));
  LookFrom(direction);
}

Document::~Document() {
  zritemlist::ItemList::SetListClearedHook({});
  zritemlist::ItemList::SetItemRemovalHook({});
  if (session_) zrk::UndoHistory::Clear(session_->GetScene());
}

void Document::LookFrom(const ViewDirection& direction) {
  const std::vector<PlannedRow> rows = PlanFlatRows(tree_, selected_);
  const PagePlan plan = PlanPageWithList(page_, ComposePartsList(tree_, PlannedItems(rows)), language_, text_);
  const LabelStock labels = EstimateLabels(model_, rows, Template(), CalloutMode::OnePerItem, text_);
  view_ = PlanView(tree_, direction, page_, plan.drawingArea, labels);
  session_->SetView(view_, plan.drawingArea);
}

void Document::UseTemplate(const TemplateDefinition& definition) {
  Remember(definition);
  session_->SetTemplate(definition, language_);
}

const TemplateDefinition& Document::Template() const {
  const std::string name = session_->GetEngine()->GetTemplate()->GetName();
  for (const TemplateDefinition& known : definitions_) {
    if (known.name == name) return known;
  }
  return definitions_.front();
}

void Document::ReplaceTemplate(const TemplateDefinition& definition, const du::SmartPtr<zrk::Operation>& operation) {
  Remember(definition);
  const auto& engine = session_->GetEngine();
  engine->GetTemplate()->ReplaceBy(*BuildTemplate(definition, language_, *engine), operation);
}

void Document::Remember(const TemplateDefinition& definition) {
  for (TemplateDefinition& known : definitions_) {
    if (known.name == definition.name) {
      known = definition;
      return;
    }
  }
  definitions_.push_back(definition);
}

// A template that somebody edited says what its definition says in no language, and keeps its text.
void Document::TranslateTemplates() {
  const auto& engine = *session_->GetEngine();
  for (const auto& callouttemplate : TemplatesOf(*session_)) {
    for (const TemplateDefinition& definition : definitions_) {
      if (definition.translations.empty() || definition.name != callouttemplate->GetName()) continue;
      const auto wanted = ContentsOf(BuildTemplate(definition, language_, engine));
      const auto present = ContentsOf(callouttemplate);
      if (SameContents(present, wanted) || !SaysIt(present, definition, engine)) continue;
      callouttemplate->SetTextContent(wanted, true);
    }
  }
}

// Steps of the history restore templates and texts of the time they were made.
void Document::ShowInLanguage() {
  TranslateTemplates();
  for (const auto& annotation : session_->GetScene()->GetAnnoSet()->GetAnnotations()) {
    const auto callout = du::DynamicCast<zrannotations::Callout>(annotation);
    if (callout && callout->UsesTemplate()) session_->GetEngine()->SetCalloutText(callout);
  }
}

void Document::ChangeLanguage(const std::string& language) {
  language_ = language;
  languageChanged_ = true;
  TranslateTemplates();
  zrk::World::GetWorld()->ChangeLanguage(language);
}

bool Document::Undo() {
  if (!session_->Undo()) return false;
  if (languageChanged_) ShowInLanguage();
  return true;
}

bool Document::Redo() {
  if (!session_->Redo()) return false;
  if (languageChanged_) ShowInLanguage();
  return true;
}

Document::Picture Document::TakePicture() const {
  Picture picture;
  picture.model = std::make_unique<Model>(model_);
  const HostStructure& structure = session_->GetStructure();
  for (int leaf : tree_.Leaves()) {
    for (const auto& shape : SceneEdit::GetShapeInstances(session_->GetScene(), structure.GetSbomInstance(leaf))) {
      if (structure.FindOccurrence(shape) != leaf) continue;
      const dg::DPoint3D at = shape->GetLocation().GetPos();
      picture.model->occurrences[leaf].toWorld.translation = {at.x, at.y, at.z};
      if (shape->IsVisible()) picture.leaves.push_back(leaf);
    }
  }
  picture.tree = std::make_unique<OccurrenceTree>(*picture.model, std::vector<std::string>{});
  picture.scene = std::make_unique<VisibilityScene>(*picture.model, picture.leaves);
  picture.ids = RenderIdBuffer(*picture.scene, view_);
  return picture;
}

void Document::Generate() {
  session_->SetPicture(view_, TakePicture().ids);
  if (hierarchical_) {
    session_->PrepareRows(PlanHierarchicalRows(tree_, selected_), true);
  } else if (ShowsTag(Template())) {
    session_->PrepareRows(PlanFlatRows(tree_, selected_), false);
  }
  session_->Generate(selected_, false);
}

bool Document::Arrange(const std::vector<du::SmartPtr<zrannotations::Callout>>& callouts,
                       const du::SmartPtr<zrk::Operation>& operation) {
  session_->SetPicture(view_, TakePicture().ids);
  return zrcallouts::ArrangeLabels(session_->GetEngine(), session_->GetView(), callouts, operation);
}

std::vector<Figure> Document::DrawPages(const PartsList& list) {
  const Picture picture = TakePicture();
  const std::vector<ArtLine> lines = DrawLineArt({*picture.model, *picture.scene, view_, picture.ids, picture.leaves});
  session_->SetPicture(view_, picture.ids);
  std::vector<CalloutState> callouts = session_->GetCallouts();
  for (CalloutState& callout : callouts) {
    for (LeaderState& leader : callout.leaders) leader.hidden = !IsShown(leader);
  }
  Figure figure = ComposeFigure({*picture.tree, view_, picture.ids, lines, callouts, session_->GetItems(), text_});
  for (Balloon& note : sheet_->Balloons(text_)) figure.balloons.push_back(std::move(note));
  return DividePages(std::move(figure), list, {model_.sourceName, page_, language_, LeaderWeightMm(Template())}, text_);
}

std::vector<std::string> Document::Write(const std::filesystem::path& path) {
  std::string error;
  if (!CheckOutputPath(path, error)) throw CommandError{error};
  const PartsList list = ComposePartsList(tree_, session_->GetItems());
  OutputFiles files;
  if (NamesPartsList(path)) {
    AddPartsListFile(path, list, language_, files);
  } else if (!AddFigureFiles(path, DrawPages(list), files, error)) {
    throw CommandError{error};
  }
  if (!files.Commit(error)) throw CommandError{error};
  return files.Paths();
}

}  // namespace zrfigure

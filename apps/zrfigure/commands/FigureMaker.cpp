#include "commands/FigureMaker.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "commands/AnchorChoice.h"
#include "commands/CommandFailure.h"
#include "commands/FigureComposer.h"
#include "commands/FigurePages.h"
#include "commands/FigurePlan.h"
#include "commands/HostProcess.h"
#include "commands/HostTemplate.h"
#include "commands/PictureRun.h"
#include "commands/Selection.h"
#include "commands/SheetCallouts.h"
#include "import/ImportProcess.h"

namespace zrfigure {
namespace {

/// Seconds since the last call, or since construction.
class StopWatch {
public:
  double Lap() {
    const auto now = std::chrono::steady_clock::now();
    return std::chrono::duration<double>(now - std::exchange(last_, now)).count();
  }

private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

TemplateDefinition LoadTemplateOrFail(const Options& options) {
  std::string error;
  auto definition = LoadTemplate(options.templateName, error);
  if (!definition) throw CommandFailure{error};
  const bool sheet = options.kind == CalloutKind::Sheet;
  const std::string reason = sheet ? ReasonAgainstSheet(*definition) : std::string();
  if (!reason.empty()) throw CommandFailure{"--callouts: " + reason};
  return std::move(*definition);
}

Model ImportOrFail(const std::string& path) {
  ImportRequest request;
  request.path = path;
  ImportResult result = ImportModel(request);
  if (!result.model) throw CommandFailure{result.error};
  return std::move(*result.model);
}

std::vector<int> SelectOrFail(const OccurrenceTree& tree, const Options& options) {
  for (const auto& [option, globs] : {std::pair{"--select", &options.select}, std::pair{"--weld", &options.weld}}) {
    const auto idle = FindIdleGlob(tree, *globs);
    if (idle) throw CommandFailure{std::string(option) + ": '" + *idle + "' matches nothing in " + options.model};
  }
  std::vector<int> selected = SelectOccurrences(tree, options.level, options.select);
  if (selected.empty()) throw CommandFailure{"--select: nothing at this level of " + options.model + " matches"};
  return selected;
}

std::vector<int> OccurrencesOf(const std::vector<PinnedLabel>& pins) {
  std::vector<int> occurrences;
  for (const PinnedLabel& pin : pins) occurrences.push_back(pin.occurrence);
  return occurrences;
}

/// The line group that suits the size of what is drawn: half of the parts are smaller on the page than its limit.
LineWidths WidthsFor(const std::vector<Picture>& pictures) {
  constexpr double kSmallPx = 30, kTinyPx = 14;
  std::vector<double> sizes;
  for (const Picture& picture : pictures) {
    for (const VisibleRegion& region : picture.regions) {
      sizes.push_back(std::sqrt(static_cast<double>(region.pixelCount)));
    }
  }
  if (sizes.empty()) return {};
  const auto middle = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
  std::nth_element(sizes.begin(), middle, sizes.end());
  if (*middle < kTinyPx) return {0.25, 0.13, 0.13};
  return *middle < kSmallPx ? LineWidths{0.35, 0.18, 0.18} : LineWidths();
}

/// What is untidy about the placement, in one finding; none when all is well.
void AddLayoutFinding(const LayoutFaults& faults, std::vector<Finding>& findings) {
  std::string text;
  const auto add = [&](int count, const std::string& what) {
    if (count > 0) text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + what;
  };
  add(faults.leaderCrossings, "pairs of callouts with leaders that cross");
  add(faults.labelOverlaps, "overlaps of labels with labels or leaders");
  add(faults.labelsOverModel, "labels over the drawing");
  if (text.empty()) return;
  findings.push_back({"layout", 0, text + ": a larger page, --select or --level makes room"});
}

/// Everything one figure is made from, in the order in which it comes into being.
class FigureMaker {
public:
  explicit FigureMaker(const Options& options)
      : options_(options),
        definition_(LoadTemplateOrFail(options)),
        earlier_(options.pin.empty() ? Figure() : ReadEarlierFigure(options.pin)),
        model_(ImportOrFail(options.model)),
        importSeconds_(watch_.Lap()),
        tree_(model_, options.weld),
        selected_(SelectOrFail(tree_, options)),
        rows_(options.hierarchical ? PlanHierarchicalRows(tree_, selected_) : PlanFlatRows(tree_, selected_)),
        pins_(FindPinnedLabels(earlier_, tree_)),
        text_(kLetteringHeightMm * kPxPerMm),
        scene_(model_, tree_.Leaves()) {}

  FigureDocument Make();

private:
  [[nodiscard]] std::vector<Picture> TakePictures() const;
  [[nodiscard]] std::vector<PictureResult> CreateCallouts(const std::vector<Picture>& pictures) const;
  [[nodiscard]] Report MakeReport(const std::vector<PictureResult>& results, const Figure& figure) const;

  const Options& options_;
  StopWatch watch_;
  const TemplateDefinition definition_;
  const Figure earlier_;
  const Model model_;
  const double importSeconds_;
  const OccurrenceTree tree_;
  const std::vector<int> selected_;
  const std::vector<PlannedRow> rows_;
  const std::vector<PinnedLabel> pins_;
  const TextMeasure text_;
  const VisibilityScene scene_;
};

std::vector<Picture> FigureMaker::TakePictures() const {
  const PagePlan plan = PlanPageWithList(options_.page, ComposePartsList(tree_, PlannedItems(rows_)), options_.language,
                                         text_, options_.listPlace);
  const LabelStock labels = EstimateLabels(model_, rows_, definition_, options_.mode, text_);
  const PlannedViews planned = PlanViews(tree_, options_.directions, options_.page, plan.drawingArea, labels);
  std::vector<Picture> pictures;
  for (std::size_t i = 0; i < planned.views.size(); ++i) {
    pictures.push_back(TakePicture(tree_, scene_, planned.views[i], planned.rooms[i]));
  }
  return pictures;
}

std::vector<PictureResult> FigureMaker::CreateCallouts(const std::vector<Picture>& pictures) const {
  HostProcess process(options_.language);
  std::string error;
  if (!process.LoadComponent(error)) throw CommandFailure{error};
  const std::vector<int> pinned = OccurrencesOf(pins_);
  const auto choices = ChooseAnchors({tree_, rows_, selected_, options_.mode, pinned, options_.skipHidden}, pictures);
  const auto hasCallouts = [](const PictureCallouts& choice) { return !choice.selected.empty(); };
  if (std::ranges::none_of(choices, hasCallouts)) throw CommandFailure{"--skip-hidden: nothing selected can be seen"};
  std::vector<unsigned> order;
  std::vector<PictureResult> results;
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    results.push_back(RunPicture({tree_, options_, definition_, rows_, text_, pictures[i], choices[i], pins_}, order));
  }
  return results;
}

Report FigureMaker::MakeReport(const std::vector<PictureResult>& results, const Figure& figure) const {
  Report report;
  report.model = options_.model;
  report.occurrences = static_cast<int>(tree_.Leaves().size());
  std::vector<bool> used(model_.products.size(), false);
  for (int leaf : tree_.Leaves()) used[model_.occurrences[leaf].product] = true;
  report.parts = static_cast<int>(std::count(used.begin(), used.end(), true));
  report.items = static_cast<int>(results.back().items.size());
  report.layout = CountLayoutFaults(figure.balloons, figure.drawings);
  AddLayoutFinding(report.layout, report.findings);
  for (const std::string& warning : model_.warnings) report.findings.push_back({"import", 0, warning});
  int movedPins = 0;
  for (const PictureResult& result : results) {
    report.callouts += static_cast<int>(result.callouts.size());
    for (const CalloutState& callout : result.callouts) {
      report.leaders += static_cast<int>(callout.leaders.size());
      for (const LeaderState& leader : callout.leaders) report.visibleLeaders += leader.hidden ? 0 : 1;
    }
    report.seconds.generate += result.seconds.generate;
    report.seconds.layout += result.seconds.layout;
    movedPins += result.movedPins;
  }
  if (movedPins > 0) {
    report.findings.push_back(
        {"label-moved", 0,
         std::to_string(movedPins) + " pinned label" + (movedPins == 1 ? "" : "s") + " could not stay in place"});
  }
  report.seconds.import = importSeconds_;
  return report;
}

FigureDocument FigureMaker::Make() {
  (void)watch_.Lap();
  const std::vector<Picture> pictures = TakePictures();
  double drawSeconds = watch_.Lap();
  const std::vector<PictureResult> results = CreateCallouts(pictures);
  (void)watch_.Lap();
  std::vector<std::vector<ArtLine>> lines;
  for (const Picture& picture : pictures) {
    lines.push_back(DrawLineArt({model_, scene_, picture.view, picture.ids, tree_.Leaves()}));
  }
  std::vector<FigureInput> inputs;
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    inputs.push_back(
        {tree_, pictures[i].view, pictures[i].ids, lines[i], results[i].callouts, results.back().items, text_});
  }
  Figure figure = ComposeFigure(inputs);
  figure.lineWidths = WidthsFor(pictures);
  FigureDocument document;
  document.report = MakeReport(results, figure);
  document.list = ComposePartsList(tree_, results.back().items);
  for (HiddenItem& hidden : FindHiddenItems(inputs)) {
    const std::string id = std::to_string(hidden.finding.item);
    std::ranges::find(document.list.items, id, &PartsListItem::itemId)->shown = false;
    if (hidden.isCalledOut) document.report.findings.push_back(std::move(hidden.finding));
  }
  const PageSetup setup{model_.sourceName, options_.page, options_.language, LeaderWeightMm(definition_),
                        options_.listPlace};
  document.pages = DividePages(std::move(figure), document.list, setup, text_);
  document.report.seconds.draw = drawSeconds + watch_.Lap();
  return document;
}

}  // namespace

FigureDocument MakeFigure(const Options& options) {
  return FigureMaker(options).Make();
}

}  // namespace zrfigure

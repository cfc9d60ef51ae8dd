#include "commands/FigureCommand.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <unistd.h>

#include "commands/FigureComposer.h"
#include "commands/FigurePages.h"
#include "commands/FigurePlan.h"
#include "commands/HostProcess.h"
#include "commands/HostSession.h"
#include "commands/HostTemplate.h"
#include "commands/OutputFiles.h"
#include "commands/Report.h"
#include "commands/Selection.h"
#include "drawing/FigureExport.h"
#include "import/ImportProcess.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;

/// Ends the command with one line for the user.
struct CommandFailure {
  std::string message;
};

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

void CheckOutputs(const Options& options) {
  std::string error;
  for (const std::string& path : {options.figure, options.parts}) {
    if (!path.empty() && !CheckOutputPath(path, error)) throw CommandFailure{error};
    std::error_code code;
    if (!path.empty() && fs::equivalent(path, options.model, code)) {
      throw CommandFailure{path + ": is the model itself"};
    }
  }
}

TemplateDefinition LoadTemplateOrFail(const std::string& name) {
  std::string error;
  auto definition = LoadTemplate(name, error);
  if (!definition) throw CommandFailure{error};
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

/// What a run left in the host, as plain values.
struct RunResult {
  std::vector<CalloutState> callouts;
  std::vector<ItemState> items;
  RunSeconds seconds;
};

/// A picture of the model without callouts.
struct Picture {
  View view;
  Box2 room;
  VisibilityScene scene;
  IdBuffer ids;
  Box2 modelBox;
};

Picture TakePicture(const OccurrenceTree& tree, const View& view, const Box2& room) {
  VisibilityScene scene(tree.GetModel(), tree.Leaves());
  IdBuffer ids = RenderIdBuffer(scene, view);
  return {view, room, std::move(scene), std::move(ids), ProjectedBox(tree.GetModel(), tree.Leaves(), view)};
}

/// Everything one command works on, in the order in which it comes into being.
class FigureRun {
public:
  explicit FigureRun(const Options& options)
      : options_(options),
        definition_(LoadTemplateOrFail(options.templateName)),
        model_(ImportOrFail(options.model)),
        importSeconds_(watch_.Lap()),
        tree_(model_, options.weld),
        selected_(SelectOrFail(tree_, options)),
        rows_(options.hierarchical ? PlanHierarchicalRows(tree_, selected_) : PlanFlatRows(tree_, selected_)),
        text_(kLetteringHeightMm * kPxPerMm) {}

  Report Run();

private:
  [[nodiscard]] Picture PlanPicture() const;
  [[nodiscard]] RunResult CreateCallouts(const Picture& picture);
  void AddOutputs(const std::vector<std::string>& pages, const PartsList& list);
  [[nodiscard]] Report MakeReport(const RunResult& result, const FigureInput& input, const Figure& figure,
                                  const Box2& modelBox) const;

  const Options& options_;
  StopWatch watch_;
  const TemplateDefinition definition_;
  const Model model_;
  const double importSeconds_;
  const OccurrenceTree tree_;
  const std::vector<int> selected_;
  const std::vector<PlannedRow> rows_;
  const TextMeasure text_;
  OutputFiles outputs_;
};

Picture FigureRun::PlanPicture() const {
  const PagePlan plan =
      PlanPageWithList(options_.page, ComposePartsList(tree_, PlannedItems(rows_)), options_.language, text_);
  const LabelStock labels = EstimateLabels(model_, rows_, definition_, options_.mode, text_);
  return TakePicture(tree_, PlanView(tree_, options_.direction, options_.page, plan.drawingArea, labels),
                     plan.drawingArea);
}

RunResult FigureRun::CreateCallouts(const Picture& picture) {
  HostProcess process(options_.language);
  std::string error;
  if (!process.LoadComponent(error)) throw CommandFailure{error};
  HostSession session(tree_, options_.direction, text_);
  if (!session.HasEngine()) throw CommandFailure{"the callouts component made no engine"};
  session.SetTemplate(definition_, options_.language);
  session.SetMode(options_.mode);
  session.SetView(picture.view, picture.room);
  session.SetVisibleRegions(FindVisibleRegions(picture.ids, picture.view));
  if (options_.hierarchical || ShowsTag(definition_)) session.PrepareRows(rows_, options_.hierarchical);
  RunResult result;
  result.seconds = session.Generate(selected_, !options_.quiet && isatty(STDERR_FILENO) == 1);
  result.callouts = session.GetCallouts();
  result.items = session.GetItems();
  return result;
}

void FigureRun::AddOutputs(const std::vector<std::string>& pages, const PartsList& list) {
  FigureFormat format = FigureFormat::Svg;
  std::string error;
  if (!FormatOfPath(options_.figure, format, error)) throw CommandFailure{error};
  const bool onePerFile = format != FigureFormat::Pdf;
  for (std::size_t i = 0; i < (onePerFile ? pages.size() : 1); ++i) {
    const std::vector<std::string> content = onePerFile ? std::vector<std::string>{pages[i]} : pages;
    std::string bytes;
    if (!RenderFigure(content, format, {}, bytes, error)) throw CommandFailure{options_.figure + ": " + error};
    fs::path path = options_.figure;
    if (i > 0) path.replace_filename(path.stem().string() + "-" + std::to_string(i + 1) + path.extension().string());
    outputs_.Add(path, std::move(bytes));
  }
  if (options_.parts.empty()) return;
  const bool json = LowerExtension(options_.parts) == ".json";
  outputs_.Add(options_.parts, json ? PartsListToJson(list) : PartsListToCsv(list));
}

Report FigureRun::MakeReport(const RunResult& result, const FigureInput& input, const Figure& figure,
                             const Box2& modelBox) const {
  Report report;
  report.model = options_.model;
  report.occurrences = static_cast<int>(tree_.Leaves().size());
  std::vector<bool> used(model_.products.size(), false);
  for (int leaf : tree_.Leaves()) used[model_.occurrences[leaf].product] = true;
  report.parts = static_cast<int>(std::count(used.begin(), used.end(), true));
  report.items = static_cast<int>(result.items.size());
  report.callouts = static_cast<int>(result.callouts.size());
  for (const CalloutState& callout : result.callouts) {
    report.leaders += static_cast<int>(callout.leaders.size());
    for (const LeaderState& leader : callout.leaders) report.visibleLeaders += leader.hidden ? 0 : 1;
  }
  report.layout = CountLayoutFaults(figure.balloons, modelBox);
  for (const std::string& warning : model_.warnings) report.findings.push_back({"import", 0, warning});
  for (Finding& finding : FindHiddenItems(input)) report.findings.push_back(std::move(finding));
  return report;
}

Report FigureRun::Run() {
  (void)watch_.Lap();
  Picture picture = PlanPicture();
  double drawSeconds = watch_.Lap();
  const RunResult result = CreateCallouts(picture);
  (void)watch_.Lap();
  const std::vector<ArtLine> lines = DrawLineArt({model_, picture.scene, picture.view, picture.ids, tree_.Leaves()});
  const FigureInput input{tree_, picture.view, picture.ids, lines, result.callouts, result.items, text_};
  const Figure figure = ComposeFigure(input);
  const PartsList list = ComposePartsList(tree_, result.items);
  const PageSetup setup{model_.sourceName, options_.page, options_.language, LeaderWeightMm(definition_)};
  AddOutputs(WritePages(figure, list, setup, text_), list);
  Report report = MakeReport(result, input, figure, picture.modelBox);
  std::string error;
  if (!outputs_.Commit(error)) throw CommandFailure{error};
  drawSeconds += watch_.Lap();
  report.outputs = outputs_.Paths();
  report.seconds = {importSeconds_, result.seconds.generate, result.seconds.layout, drawSeconds};
  return report;
}

}  // namespace

int RunFigureCommand(const Options& options) {
  try {
    CheckOutputs(options);
    const Report report = FigureRun(options).Run();
    if (options.json) {
      std::fputs(ReportToJson(report).c_str(), stdout);
    } else if (!options.quiet) {
      std::fputs(ReportToText(report).c_str(), stdout);
    }
    return options.strict && !report.findings.empty() ? kExitFindings : kExitDone;
  } catch (const CommandFailure& failure) {
    std::fprintf(stderr, "zrfigure: %s\n", failure.message.c_str());
    return kExitBadInput;
  }
}

}  // namespace zrfigure

#include "commands/PictureRun.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include <unistd.h>

#include "commands/BalloonComposer.h"
#include "commands/CommandFailure.h"
#include "commands/ItemNumbering.h"
#include "commands/LayoutCheck.h"
#include "commands/SheetCallouts.h"

namespace zrfigure {
namespace {

constexpr int kMostPinRounds = 4;

/// Pinned places by what has a callout of its own: the item's first part, or with PerInstance the part.
using Pins = std::map<int, Point2>;

/// Tells which callout an occurrence belongs to.
class CalloutKeys {
public:
  explicit CalloutKeys(const PictureRequest& request) : tree_(request.tree) {
    for (const PlannedRow& row : request.rows) {
      for (int occurrence : row.occurrences) {
        keys_[occurrence] = request.options.mode == CalloutMode::PerInstance ? occurrence : row.occurrences.front();
      }
    }
  }

  /// -1 for what no row holds.
  [[nodiscard]] int Of(int occurrence) const {
    for (; occurrence >= 0; occurrence = tree_.GetModel().occurrences[occurrence].parent) {
      const auto found = keys_.find(occurrence);
      if (found != keys_.end()) return found->second;
    }
    return -1;
  }

private:
  const OccurrenceTree& tree_;
  std::map<int, int> keys_;
};

int KeyOf(const CalloutKeys& keys, const CalloutState& callout) {
  const auto shown = std::ranges::find(callout.leaders, false, &LeaderState::hidden);
  return shown == callout.leaders.end() ? -1 : keys.Of(shown->occurrence);
}

Pins PinsHere(const PictureRequest& request, const CalloutKeys& keys) {
  std::set<int> here;
  for (int occurrence : request.callouts.selected) here.insert(keys.Of(occurrence));
  Pins pins;
  for (const PinnedLabel& label : request.pins) {
    const int key = keys.Of(label.occurrence);
    if (here.count(key) > 0) pins.emplace(key, label.at);
  }
  return pins;
}

std::unique_ptr<HostSession> OpenSession(const PictureRequest& request) {
  auto session = std::make_unique<HostSession>(request.tree, request.picture.view.direction, request.text);
  if (!session->HasEngine()) throw CommandFailure{"the callouts component made no engine"};
  session->SetTemplate(request.definition, request.options.language);
  session->SetMode(request.options.mode);
  session->SetView(request.picture.view, request.picture.room);
  session->SetVisibleRegions(request.callouts.regions);
  session->PrepareRows(request.rows, request.options.hierarchical);
  return session;
}

void AddSeconds(const RunSeconds& more, RunSeconds& sum) {
  sum.generate += more.generate;
  sum.layout += more.layout;
}

/// The pinned callouts first: their labels are in the way of the others' when those are placed.
RunSeconds Generate(const PictureRequest& request, const CalloutKeys& keys, const Pins& pins, HostSession& session) {
  std::vector<int> pinned, free;
  for (int occurrence : request.callouts.selected) {
    (pins.count(keys.Of(occurrence)) > 0 ? pinned : free).push_back(occurrence);
  }
  const bool showProgress = !request.options.quiet && isatty(STDERR_FILENO) == 1;
  RunSeconds seconds;
  if (!pinned.empty()) {
    AddSeconds(session.Generate(pinned, showProgress), seconds);
    const View& view = request.picture.view;
    std::vector<HostSession::LabelMove> moves;
    for (const CalloutState& callout : session.GetCallouts()) {
      const auto pin = pins.find(KeyOf(keys, callout));
      if (pin == pins.end()) continue;
      moves.emplace_back(callout.id, view.ToWorld({pin->second.x, pin->second.y, view.ToPixel(callout.label).z}));
    }
    session.MoveLabels(moves);
  }
  if (!free.empty()) AddSeconds(session.Generate(free, showProgress), seconds);
  return seconds;
}

/// Keys of pinned labels that are not good any more where they stand.
std::set<int> FindBadPins(const PictureRequest& request, const CalloutKeys& keys, const Pins& pins,
                          const std::vector<CalloutState>& callouts) {
  const std::vector<ArtLine> noLines;
  const std::vector<ItemState> noItems;
  const FigureInput input{request.tree, request.picture.view, request.picture.ids, noLines, callouts,
                          noItems,      request.text};
  const std::vector<std::string> noIds(request.tree.GetModel().occurrences.size());
  const std::vector<Balloon> balloons = ComposeBalloons(input, noIds);
  std::set<int> bad;
  for (std::size_t i : FindMisplacedBalloons(balloons, request.picture.modelBox, request.picture.room)) {
    const int key = KeyOf(keys, callouts[i]);
    if (pins.count(key) > 0) bad.insert(key);
  }
  return bad;
}

/// Brings labels into line, on the sheet when there is one.
void AlignLabels(const Options& options, HostSession& session, SheetCallouts* sheet) {
  if (!options.align) return;
  std::string error;
  const bool aligned = sheet != nullptr ? sheet->Align(*options.align, options.distribute, error)
                                        : session.AlignLabels(*options.align, options.distribute, error);
  if (!aligned) throw CommandFailure{"--align: " + error};
}

void RenumberClockwise(const PictureRequest& request, const std::vector<CalloutState>& callouts, HostSession& session,
                       std::vector<unsigned>& order) {
  std::vector<LabelPlace> places;
  for (const CalloutState& callout : callouts) {
    const Vec3 pixel = request.picture.view.ToPixel(callout.label);
    places.push_back({callout.item, {pixel.x, pixel.y}});
  }
  for (unsigned item : OrderClockwise(places)) {
    if (std::ranges::find(order, item) == order.end()) order.push_back(item);
  }
  session.RenumberItems(order);
}

/// Alignment, numbers and, where they are wanted, 2D callouts.
PictureResult Finish(const PictureRequest& request, HostSession& session, std::vector<unsigned>& order) {
  const Options& options = request.options;
  std::optional<SheetCallouts> sheet;
  if (options.kind == CalloutKind::Sheet) sheet.emplace(session, request.picture, options.page, request.text);
  AlignLabels(options, session, sheet ? &*sheet : nullptr);
  const auto callouts = [&] { return sheet ? sheet->GetCallouts() : session.GetCallouts(); };
  if (options.order == ItemOrder::Clockwise) RenumberClockwise(request, callouts(), session, order);
  if (sheet) sheet->UpdateContents();
  PictureResult result;
  result.callouts = callouts();
  result.items = session.GetItems();
  return result;
}

}  // namespace

PictureResult RunPicture(const PictureRequest& request, std::vector<unsigned>& order) {
  const CalloutKeys keys(request);
  Pins pins = PinsHere(request, keys);
  const std::size_t wanted = pins.size();
  RunSeconds seconds;
  for (int round = 1;; ++round) {
    // A session of its own for each try: item ids must not depend on how many it took.
    const auto session = OpenSession(request);
    AddSeconds(Generate(request, keys, pins, *session), seconds);
    const std::set<int> bad = pins.empty() ? std::set<int>() : FindBadPins(request, keys, pins, session->GetCallouts());
    if (!bad.empty()) {
      for (int key : bad) pins.erase(key);
      if (round == kMostPinRounds) pins.clear();
      continue;
    }
    PictureResult result = Finish(request, *session, order);
    result.seconds = seconds;
    result.movedPins = static_cast<int>(wanted - pins.size());
    return result;
  }
}

}  // namespace zrfigure

#include "HostCalls.h"

#include <ostream>
#include <vector>

#include <zrcallouts/CalloutGenerator.h>
#include <zrcallouts/Functions.h>
#include <zrk/MakeObject.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/PenHolder.h>
#include <zrk/illustration/PenPool.h>

#include "HistoryOracle.h"
#include "HostCall.h"

namespace zrfuzz {

using zrk::illustration::PenPool;
using Effect = HostCall::Effect;

namespace {

/// Which call each operation byte means.
std::vector<const HostCall*> MakeCallTable() {
  std::vector<const HostCall*> table;
  for (const auto& calls : {ItemCalls(), SceneCalls(), GeneratorCalls(), AnnotationCalls(), TemplateCalls(),
                            ViewCalls(), SheetCalls(), EngineCalls()}) {
    for (const HostCall& call : calls) table.insert(table.end(), call.weight, &call);
  }
  return table;
}

const HostCall& CallOf(std::uint8_t operation) {
  static const std::vector<const HostCall*> table = MakeCallTable();
  return *table[operation % table.size()];
}

/// Those that live as long as the process, so that they do not count as left over.
void MakeLastingObjects() {
  static_cast<void>(zrk::MakeObject<zrcallouts::CalloutGenerator>(zrtest::EnginePtr()));
  static_cast<void>(PenPool::GetPenPool()->UsePen(PenPool::PEN_THIN_STR));
}

class ProgramRun {
public:
  explicit ProgramRun(const std::function<void(const std::string&)>& log) : log_(log), history_(live_) {}

  [[nodiscard]] std::optional<Finding> Run(std::span<const std::uint8_t> program) {
    for (; program.size() >= kBytesPerCall; program = program.subspan(kBytesPerCall)) {
      const HostCall& call = CallOf(program[0]);
      if (!Step(call.make(live_, program[1], program[2]), call.effect)) return finding_;
    }
    Travel();
    return finding_;
  }

private:
  bool Step(std::string line, Effect effect) {
    ++finding_.emplace(Finding{calls_++, {}, {}}).call;
    finding_->line = std::move(line);
    if (log_) log_(finding_->line);
    Check(effect);
    if (!finding_->broken.empty()) return false;
    finding_.reset();
    return true;
  }
  void Check(Effect effect) {
    live_.CollectPicks();
    if (finding_->line.rfind("BROKEN", 0) == 0) Break(finding_->line);
    Break(history_.Compare(effect));
    zrtest::RegistryInvariants::Expected expected{live_.unsureMarks, live_.picks.size(), live_.templates};
    for (const auto& line : zrtest::RegistryInvariants(live_.Watched()).Broken(expected)) Break(line);
    for (const auto& line : zrtest::RegistryInvariants(live_.WatchedElsewhere()).Broken({}))
      Break("elsewhere: " + line);
  }
  void Break(const std::string& line) {
    if (!line.empty()) finding_->broken += "  " + line + "\n";
  }
  /// Back to the beginning, to the end, and back again.
  void Travel() {
    bool holds = true;
    while (holds && zrk::UndoHistory::Undo(live_.scene)) holds = Step("undo on the way back", Effect::Undo);
    while (holds && zrk::UndoHistory::Redo(live_.scene)) holds = Step("redo on the way forth", Effect::Redo);
    while (holds && zrk::UndoHistory::Undo(live_.scene)) holds = Step("undo on the second way back", Effect::Undo);
  }

  const std::function<void(const std::string&)>& log_;
  LiveScene live_;
  HistoryOracle history_;
  std::size_t calls_ = 0;
  std::optional<Finding> finding_;
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const Finding& finding) {
  return out << "call " << finding.call << ": " << finding.line << "\n" << finding.broken;
}

std::optional<Finding> RunHostCalls(std::span<const std::uint8_t> program,
                                    const std::function<void(const std::string&)>& log) {
  MakeLastingObjects();
  const long liveBefore = du::RefCounted::GetLiveObjectCount();
  auto finding = ProgramRun(log).Run(program);
  const long left = du::RefCounted::GetLiveObjectCount() - liveBefore;
  if (!finding && left != 0) {
    finding = Finding{program.size() / kBytesPerCall, "the end", "  " + std::to_string(left) + " objects are left\n"};
  }
  return finding;
}

}  // namespace zrfuzz

#include <zrannotations/LabelMeasure.h>

#include <algorithm>
#include <memory>
#include <utility>

#include <dp/Mutex.h>
#include <zrannotations/Callout.h>

namespace zrannotations {

namespace {

constexpr double kCharacterWidth = 8.0;
constexpr double kPadding = 16.0;
constexpr double kLineHeight = 24.0;

struct Slot {
  dp::Mutex mutex;
  std::shared_ptr<const LabelMeasure::Function> function ZR_GUARDED_BY(mutex);
};

Slot& GetSlot() {
  static Slot slot;
  return slot;
}

dg::DVec2 Estimate(const std::string& text) {
  int lines = 1;
  int length = 0;
  int longest = 0;
  for (const char character : text) {
    const bool continuesCharacter = (static_cast<unsigned char>(character) & 0xC0) == 0x80;
    if (character == '\n') {
      ++lines;
      length = 0;
    } else if (!continuesCharacter) {
      longest = std::max(longest, ++length);
    }
  }
  return {kCharacterWidth * longest + kPadding, kLineHeight * lines};
}

}  // namespace

void LabelMeasure::Set(Function function) {
  auto shared = function ? std::make_shared<const Function>(std::move(function)) : nullptr;
  Slot& slot = GetSlot();
  const dp::MutexGuard guard(slot.mutex);
  slot.function.swap(shared);
}

dg::DVec2 LabelMeasure::Measure(const Callout& callout) {
  std::shared_ptr<const Function> function;
  {
    Slot& slot = GetSlot();
    const dp::MutexGuard guard(slot.mutex);
    function = slot.function;
  }
  return function ? (*function)(callout) : Estimate(callout.GetText(true).GetString());
}

}  // namespace zrannotations

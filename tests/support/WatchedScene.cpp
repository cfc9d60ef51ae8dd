#include "support/WatchedScene.h"

#include <array>
#include <charconv>
#include <set>
#include <type_traits>

#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrk/AnnoSet.h>
#include <zrk/illustration/SceneEdit.h>

namespace zrtest {

using zrk::illustration::SceneEdit;

namespace {

/// Numbers exactly, and much faster than a stream: the state is taken hundreds of thousands of times.
class StateText {
public:
  template <class Value>
  StateText& operator<<(const Value& value) {
    if constexpr (std::is_same_v<Value, dg::DPoint3D>) {
      return *this << value.x << value.y << value.z;
    } else if constexpr (std::is_same_v<Value, double>) {
      std::array<char, 64> digits{};
      text_.append(digits.data(), std::to_chars(digits.begin(), digits.end(), value, std::chars_format::hex).ptr);
    } else if constexpr (std::is_arithmetic_v<Value>) {
      text_ += std::to_string(value);
    } else {
      text_ += value;
    }
    text_ += ' ';
    return *this;
  }
  void EndLine() { text_.back() = '\n'; }
  [[nodiscard]] std::string Take() { return std::move(text_); }

private:
  std::string text_;
};

void Write(StateText& out, const WatchedScene& watched, const Part& part) {
  unsigned item = 0;
  static_cast<void>(watched.items->GetItemIdForInstance(part.sbom, item));
  out << part.Id() << (watched.tree->FindInstance(part.Id()) == part.sbom) << SceneEdit::GetDisplayName(part.sbom)
      << item;
  if (part.shape) {
    out << static_cast<bool>(part.shape->GetShapeScene()) << part.shape->IsVisible()
        << part.shape->GetLocation().GetPos();
  }
  out.EndLine();
}

void Write(StateText& out, const zrk::illustration::ItemsList& items, unsigned item) {
  std::set<du::SmartPtr<zrk::illustration::SbomInstance>> group;
  items.GetInstances(item, group);
  out << "item" << item << items.GetItemLabel(item) << items.GetItemTag(item) << items.GetQuantity(item)
      << items.IsIndicated(item) << items.GetIndex(item);
  for (const auto& instance : group) out << instance->GetId().GetString();
  out.EndLine();
}

/// The leaders of members are not drawn, so nobody shows or hides them.
void Write(StateText& out, const zrannotations::Callout& callout, bool drawn) {
  const auto label = callout.GetPosition();
  out << NameOf(callout) << label.x << label.y;
  for (const auto& leader : callout.GetLeaders()) {
    const auto instance = leader->GetSbomInstance();
    out << "|" << (instance ? instance->GetId().GetString() : leader->GetShapeInstanceId())
        << (drawn && leader->IsVisible()) << leader->IsHidden() << leader->GetAnchor();
  }
  out.EndLine();
}

}  // namespace

std::vector<CalloutPtr> WatchedScene::Callouts() const {
  std::vector<CalloutPtr> callouts;
  for (const auto& annotation : scene->GetAnnoSet()->GetAnnotations()) {
    if (auto callout = du::DynamicCast<zrannotations::Callout>(annotation)) callouts.push_back(std::move(callout));
  }
  return callouts;
}

std::string WatchedScene::State(const std::vector<Part>& parts) const {
  StateText out;
  for (const Part& part : parts) Write(out, *this, part);
  for (const unsigned item : items->GetItemIds()) Write(out, *items, item);
  for (const auto& annotation : scene->GetAnnoSet()->GetAnnotations()) {
    if (const auto callout = du::DynamicCast<zrannotations::Callout>(annotation)) {
      Write(out, *callout, true);
      for (const auto& single : SinglesOf(callout)) Write(out, *single, false);
      continue;
    }
    const auto inset = du::DynamicCast<zrannotations::Inset>(annotation);
    out << "annotation" << annotation->Id() << (inset ? inset->GetCaptionText().GetString() : std::string());
    out.EndLine();
  }
  return out.Take();
}

std::vector<CalloutPtr> SinglesOf(const CalloutPtr& callout) {
  const auto combined = du::DynamicCast<zrannotations::CombinedCallout>(callout);
  return combined ? combined->GetCalloutVec() : std::vector<CalloutPtr>{callout};
}

std::string NameOf(const zrannotations::Callout& callout) {
  unsigned item = 0;
  static_cast<void>(callout.GetItemId(item));
  return "callout " + std::to_string(callout.Id()) + " of item " + std::to_string(item) + " '" +
         callout.GetText(false).GetString() + "'";
}

}  // namespace zrtest

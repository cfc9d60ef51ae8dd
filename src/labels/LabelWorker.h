#pragma once
// Resolves a template's content pieces into the text of one label. Lives for one label; keeps no state between labels.

#include <cstdint>
#include <string>
#include <vector>

#include <du/SmartPtr.h>

namespace zrk {
class Scene;
namespace illustration {
class LabelContent;
}
}  // namespace zrk
namespace zrannotations {
class Callout;
}
namespace zritemlist {
class ItemList;
}

namespace zrcallouts {

/// What a label is made from. References stay the caller's and must outlive the worker.
struct LabelSource {
  const du::SmartPtr<zrannotations::Callout>& callout;  ///< May be empty.
  const du::SmartPtr<zrk::Scene>& scene;                ///< For file properties and the missing-attribute text.
  const du::SmartPtr<zritemlist::ItemList>& itemList;   ///< May be empty.
  bool hasItem;                                         ///< Whether `itemId` means anything.
  std::uint32_t itemId;
  bool withCallout;      ///< 3D: part properties resolve, markdown as the callout says. 2D: neither.
  bool markdownContent;  ///< The literal pieces are markdown already.
};

/// Builds the label. Takes no lock; called on the thread that owns the scene.
class LabelWorker final {
public:
  explicit LabelWorker(const LabelSource& source);

  void Build(const std::vector<du::SmartPtr<zrk::illustration::LabelContent>>& contents, std::string& label);

private:
  void Append(const zrk::illustration::LabelContent& content);
  bool AppendItemToken(const zrk::illustration::LabelContent& content);
  void AppendFileProperty(const zrk::illustration::LabelContent& content);
  void AppendPartProperty(const zrk::illustration::LabelContent& content);
  void Insert(const std::string& value);

  LabelSource source_;
  bool markdown_;
  std::string text_;
};

}  // namespace zrcallouts

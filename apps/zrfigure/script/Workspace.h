#pragma once
// What the commands of a script share: the open document, and ways to name what is in it.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <du/SmartPtr.h>

#include "script/Document.h"

namespace zrannotations {
class Callout;
}
namespace zrk {
class Operation;
namespace illustration {
class SbomInstance;
}
}  // namespace zrk

namespace zrfigure {

/// Holds one document at most. Every lookup throws a CommandError that names what it did not find. [host-thread]
class Workspace {
public:
  [[nodiscard]] bool IsOpen() const { return static_cast<bool>(document_); }
  void Open(std::unique_ptr<Document> document) { document_ = std::move(document); }
  [[nodiscard]] Document& Current() const;
  [[nodiscard]] HostSession& Session() const { return Current().Session(); }

  /// The occurrence of that path, or the only one of that instance or display name, that is still in the structure.
  [[nodiscard]] int FindOccurrence(const std::string& name) const;
  [[nodiscard]] const du::SmartPtr<zrk::illustration::SbomInstance>& FindPart(const std::string& name) const;
  /// Id of the item with that number.
  [[nodiscard]] unsigned FindItem(const std::string& number) const;
  [[nodiscard]] du::SmartPtr<zrannotations::Callout> FindCallout(const std::string& id) const;
  /// The callouts of those ids from word `first` on; all of them for the single word "all".
  [[nodiscard]] std::vector<du::SmartPtr<zrannotations::Callout>> FindCallouts(const std::vector<std::string>& words,
                                                                               std::size_t first) const;

  /// Makes an edit as one operation and records it. \throws CommandError with `refusal` when `edit` returns false,
  /// which then must not have changed anything.
  void Edit(const std::string& name, const std::string& refusal,
            const std::function<bool(const du::SmartPtr<zrk::Operation>& operation)>& edit) const;

private:
  std::unique_ptr<Document> document_;
};

}  // namespace zrfigure

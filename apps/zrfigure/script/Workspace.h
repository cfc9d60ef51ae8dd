#pragma once
// What the commands of a script share: the open document, and ways to name what is in it.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <du/SmartPtr.h>

#include "commands/HostProcess.h"
#include "script/Document.h"
#include "script/ImportServer.h"

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

/// Holds one document at most, and what outlives it. Make it before the program has other threads. Every lookup throws
/// a CommandError that names what it did not find. [host-thread]
class Workspace {
public:
  [[nodiscard]] bool IsOpen() const { return static_cast<bool>(document_); }
  /// Opens a model in place of the present one, in the present language. \throws CommandError, and the present one
  /// stays, when the file cannot be imported.
  void Open(const std::string& path, const ViewDirection& direction);
  /// The same with a model that is there already. \throws CommandError when the host cannot be started.
  void Open(Model model, const ViewDirection& direction);
  [[nodiscard]] Document& Current() const;
  [[nodiscard]] HostSession& Session() const { return Current().Session(); }

  /// The occurrence of that path, or the only one of that instance or display name, that is still in the structure.
  [[nodiscard]] int FindOccurrence(const std::string& name) const;
  [[nodiscard]] const du::SmartPtr<zrk::illustration::SbomInstance>& FindPart(const std::string& name) const;
  /// Those that a pattern with `*`, `?` or `[` matches; the one of that name otherwise.
  [[nodiscard]] std::vector<int> FindOccurrences(const std::string& pattern) const;
  /// A name a part that is still in the structure: the display name where only one part has it, else the path.
  [[nodiscard]] std::vector<std::string> PartNames() const;
  /// Id of the item with that number.
  [[nodiscard]] unsigned FindItem(const std::string& number) const;
  [[nodiscard]] du::SmartPtr<zrannotations::Callout> FindCallout(const std::string& id) const;
  /// The callouts of those ids from word `first` on; all of them for the single word "all".
  [[nodiscard]] std::vector<du::SmartPtr<zrannotations::Callout>> FindCallouts(const std::vector<std::string>& words,
                                                                               std::size_t first) const;

  /// Makes an edit as one operation and records it. When `edit` returns false or throws, the steps it made are taken
  /// back and nothing is recorded. \throws CommandError with `refusal` when it returns false.
  void Edit(const std::string& name, const std::string& refusal,
            const std::function<bool(const du::SmartPtr<zrk::Operation>& operation)>& edit) const;

  /// Asks for no further command.
  void Quit() { quits_ = true; }
  [[nodiscard]] bool Quits() const { return quits_; }

private:
  [[nodiscard]] bool IsPresent(int occurrence) const;
  [[nodiscard]] std::string DisplayName(int occurrence) const;

  ImportServer imports_;  // starts a process, so it comes before whatever starts threads
  std::unique_ptr<HostProcess> host_;
  std::unique_ptr<Document> document_;
  bool quits_ = false;
};

}  // namespace zrfigure

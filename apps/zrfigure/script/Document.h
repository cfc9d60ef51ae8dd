#pragma once
// A model that a script works on: in the host, and drawn as the host has it.

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "commands/HostSession.h"
#include "drawing/Figure.h"
#include "drawing/PartsList.h"
#include "script/Sheet.h"

namespace zrfigure {

/// An open model with everything the host holds for it. One at a time in a process, while a HostProcess with the
/// component loaded is there. [host-thread]
class Document {
public:
  /// Looks from the direction and selects every part. \throws CommandError when the component makes no engine.
  Document(Model model, const ViewDirection& direction, const std::string& language);
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  [[nodiscard]] HostSession& Session() { return *session_; }
  [[nodiscard]] const HostSession& Session() const { return *session_; }
  [[nodiscard]] const OccurrenceTree& Tree() const { return tree_; }
  [[nodiscard]] const std::vector<int>& Selected() const { return selected_; }
  void Select(std::vector<int> selected) { selected_ = std::move(selected); }
  [[nodiscard]] const std::string& Language() const { return language_; }

  /// Template of the next run.
  void UseTemplate(const TemplateDefinition& definition);
  [[nodiscard]] const TemplateDefinition& Template() const;
  /// Turns the present template into another one, for its callouts too.
  void ReplaceTemplate(const TemplateDefinition& definition, const du::SmartPtr<zrk::Operation>& operation);
  /// Brings every template that says what its definition says into the language, then changes it for the whole host.
  /// The language is no step of the history: what undo brings back is shown in the present one.
  void ChangeLanguage(const std::string& language);
  /// Shows the whole model from there, with room for labels round it.
  void LookFrom(const ViewDirection& direction);
  [[nodiscard]] const View& GetView() const { return view_; }
  void SetHierarchical(bool hierarchical) { hierarchical_ = hierarchical; }

  /// Takes the last operation back, or makes it again. False when there is none.
  bool Undo();
  bool Redo();
  [[nodiscard]] const Page& GetPage() const { return page_; }
  [[nodiscard]] Sheet& GetSheet() { return *sheet_; }

  /// Creates callouts for the selected parts as they are placed and shown now.
  void Generate();
  /// Looks where the leaders of all callouts can be seen now, and places the labels anew for that. False when there is
  /// none to place.
  bool Arrange(const std::vector<du::SmartPtr<zrannotations::Callout>>& callouts,
               const du::SmartPtr<zrk::Operation>& operation);
  /// Writes the figure or the parts list, by the extension of the path. \return the files. \throws CommandError.
  [[nodiscard]] std::vector<std::string> Write(const std::filesystem::path& path);
  /// Everything that undo restores, as text: parts, items, callouts with their leaders.
  [[nodiscard]] std::string Dump() const;

private:
  struct Picture;

  [[nodiscard]] Picture TakePicture() const;
  [[nodiscard]] std::vector<Figure> DrawPages(const PartsList& list);
  /// Keeps the definition, so that templates made from it follow the language.
  void Remember(const TemplateDefinition& definition);
  void TranslateTemplates();
  void ShowInLanguage();

  const Model model_;
  const OccurrenceTree tree_;
  const TextMeasure text_;
  const Page page_;
  std::string language_;
  std::vector<int> selected_;
  std::vector<TemplateDefinition> definitions_;
  bool hierarchical_ = false;
  bool languageChanged_ = false;
  std::unique_ptr<HostSession> session_;
  std::unique_ptr<Sheet> sheet_;
  View view_;
};

}  // namespace zrfigure

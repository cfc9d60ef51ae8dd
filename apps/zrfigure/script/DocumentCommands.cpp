// Commands about the model as a whole: opening it, what callouts look like, and making them.

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

#include <zrannotations/SymbolAnnotation.h>
#include <zrk/AnnoSet.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/TAnnotation.h>

#include "commands/Selection.h"
#include "script/CommandTable.h"
#include "script/CommandWords.h"
#include "script/Workspace.h"
#include "zrcallouts/CalloutGenerator.h"
#include "zrcallouts/Callouts.h"

namespace zrfigure {
namespace {

TemplateDefinition TemplateNamed(const std::string& name) {
  if (!IsBuiltInTemplate(name) && std::filesystem::path(name).extension() != ".json") {
    throw CommandError{"template '" + name +
                       "' is neither built in (number, number-quantity, number-tag, number-name) nor a .json file"};
  }
  std::string error;
  auto definition = LoadTemplate(name, error);
  if (!definition) throw CommandError{error};
  return std::move(*definition);
}

Answer OpenModel(Workspace& workspace, const Words& words) {
  std::string error;
  const auto direction = ParseViewDirection(words.size() > 2 ? words[2] : "iso", error);
  if (!direction) throw CommandError{error};
  workspace.Open(words[1], *direction);
  const OccurrenceTree& tree = workspace.Current().Tree();
  const std::size_t leaves = tree.Leaves().size();
  return {std::to_string(leaves) + (leaves == 1 ? " part in " : " parts in ") + tree.GetModel().sourceName + "\n",
          {{"parts", leaves}, {"model", tree.GetModel().sourceName}}};
}

Answer UseTemplate(Workspace& workspace, const Words& words) {
  workspace.Current().UseTemplate(TemplateNamed(words[1]));
  return {};
}

Answer ReplaceTemplate(Workspace& workspace, const Words& words) {
  Document& document = workspace.Current();
  const TemplateDefinition definition = TemplateNamed(words[1]);
  workspace.Edit(words[0], "", [&](const auto& operation) {
    document.ReplaceTemplate(definition, operation);
    return true;
  });
  return {};
}

Answer EditTemplate(Workspace& workspace, const Words& words) {
  const auto& engine = workspace.Session().GetEngine();
  const auto present = engine->GetTemplate();
  zrk::illustration::TAnnotation::Contents contents;
  zrk::illustration::TAnnotation::Contents edited;
  present->GetTextContent(contents);
  engine->LocalizeTemplateText(du::Symbol(words[1]), contents, edited);
  if (edited.empty()) throw CommandError{"the pattern leaves nothing of the template"};
  workspace.Edit(words[0], "", [&](const auto& operation) {
    present->SetTextContent(edited, true, operation);
    return true;
  });
  return {};
}

Answer ChangeSettings(Workspace& workspace, const Words& words) {
  Document& document = workspace.Current();
  for (bool dry : {true, false}) {
    for (std::size_t i = 1; i < words.size(); ++i) {
      const std::string& word = words[i];
      const bool numbering = word == "flat" || word == "hierarchical";
      if (!numbering && word != "one-per-item" && word != "combine" && word != "per-instance") {
        throw CommandError{"setting '" + word +
                           "' is unknown: use one-per-item, combine, per-instance, flat or hierarchical"};
      }
      if (dry) continue;
      if (numbering) document.SetHierarchical(word == "hierarchical");
      if (word == "one-per-item") document.Session().SetMode(CalloutMode::OnePerItem);
      if (word == "combine") document.Session().SetMode(CalloutMode::Combine);
      if (word == "per-instance") document.Session().SetMode(CalloutMode::PerInstance);
    }
  }
  return {};
}

Answer SelectParts(Workspace& workspace, const Words& words) {
  Document& document = workspace.Current();
  std::optional<unsigned> level;
  std::vector<std::string> globs(words.begin() + 1, words.end());
  if (!globs.empty() && globs.front() == "--level") {
    if (globs.size() < 2) throw CommandError{"--level needs a number"};
    level = CountOf(globs[1], "level");
    globs.erase(globs.begin(), globs.begin() + 2);
  }
  if (globs.size() == 1 && globs.front() == "all") globs.clear();
  if (const auto idle = FindIdleGlob(document.Tree(), globs)) throw CommandError{"'" + *idle + "' matches nothing"};
  std::vector<int> selected = SelectOccurrences(document.Tree(), level, globs);
  if (selected.empty()) throw CommandError{"nothing at this level matches"};
  const std::size_t count = selected.size();
  document.Select(std::move(selected));
  return {std::to_string(count) + (count == 1 ? " part selected\n" : " parts selected\n"), {{"selected", count}}};
}

Answer Generate(Workspace& workspace, const Words& words) {
  if (words.size() == 1) {
    workspace.Current().Generate();
    return {};
  }
  if (words[1] != "symbols") throw CommandError{"'" + words[1] + "' is not understood: use symbols or nothing"};
  const HostSession& session = workspace.Session();
  std::vector<du::SmartPtr<zrk::Instance>> instances;
  for (const auto& annotation : session.GetScene()->GetAnnoSet()->GetAnnotations()) {
    const auto symbol = du::DynamicCast<zrannotations::SymbolAnnotation>(annotation);
    if (symbol) instances.push_back(symbol->GetInstance());
  }
  if (instances.empty()) throw CommandError{"there is no 3D symbol"};
  zrk::MakeObject<zrcallouts::CalloutGenerator>(session.GetEngine())->AddOnSymbols(instances);
  return {};
}

Answer ChangeLanguage(Workspace& workspace, const Words& words) {
  constexpr std::array<std::string_view, 4> kKnown{"en", "de", "fr", "ja"};
  if (std::find(kKnown.begin(), kKnown.end(), words[1]) == kKnown.end()) {
    throw CommandError{"language '" + words[1] + "' is unknown: use en, de, fr or ja"};
  }
  workspace.Current().ChangeLanguage(words[1]);
  return {};
}

}  // namespace

std::vector<Command> DocumentCommands() {
  return {
      {"open", "FILE [VIEW]", "Open a model in place of the present one, seen from iso or another direction", 1, 2,
       OpenModel},
      {"template", "TEMPLATE", "Template of the callouts to come: a built-in name or a .json file", 1, 1, UseTemplate},
      {"settings", "SETTING...", "one-per-item, combine or per-instance; flat or hierarchical", 1, 2, ChangeSettings},
      {"select", "[--level N] all|GLOB...", "Choose the parts that get callouts", 1, kAnyNumber, SelectParts},
      {"generate", "[symbols]", "Make callouts for the selected parts, or for the 3D symbols", 0, 1, Generate},
      {"language", "LANG", "Language of translated templates: en, de, fr or ja", 1, 1, ChangeLanguage},
      {"replace-template", "TEMPLATE", "Make the present template another one, in its callouts too", 1, 1,
       ReplaceTemplate},
      {"edit-template", "PATTERN", "Change the present template's text; {0} is its first property", 1, 1, EditTemplate},
  };
}

}  // namespace zrfigure

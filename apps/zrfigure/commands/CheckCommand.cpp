#include "commands/CheckCommand.h"

#include <cstdio>
#include <filesystem>

#include "commands/CommandFailure.h"
#include "commands/FigureCommand.h"
#include "commands/FigureMaker.h"
#include "commands/FindingsText.h"
#include "commands/OutputFiles.h"
#include "commands/PinnedLabels.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;

std::vector<Figure> PagesOf(const Options& options) {
  const fs::path path = options.model;
  const std::string extension = LowerExtension(path);
  if (extension == ".json") return {ReadEarlierFigure(path.string())};
  if (extension != ".svg") return MakeFigure(options).pages;
  std::vector<Figure> pages{ReadEarlierFigure(path.string())};
  for (int number = 2;; ++number) {
    fs::path further = path;
    further.replace_filename(path.stem().string() + "-" + std::to_string(number) + path.extension().string());
    if (!fs::exists(further)) return pages;
    pages.push_back(ReadEarlierFigure(further.string()));
  }
}

}  // namespace

int RunCheckCommand(const Options& options) {
  try {
    const std::vector<FigureFinding> findings = CheckFigure(PagesOf(options));
    std::fputs(FindingsText(options.model, findings, *options.check).c_str(), stdout);
    return findings.empty() ? kExitDone : kExitFindings;
  } catch (const CommandFailure& failure) {
    std::fprintf(stderr, "zrfigure: %s\n", failure.message.c_str());
    return kExitBadInput;
  }
}

}  // namespace zrfigure

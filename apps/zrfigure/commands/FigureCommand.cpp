#include "commands/FigureCommand.h"

#include <chrono>
#include <cstdio>
#include <filesystem>

#include "commands/CommandFailure.h"
#include "commands/FigureFiles.h"
#include "commands/FigureMaker.h"
#include "commands/OutputFiles.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;

void CheckOutputs(const Options& options) {
  std::string error;
  for (const std::string& path : {options.figure, options.parts}) {
    if (!path.empty() && !CheckOutputPath(path, error)) throw CommandFailure{error};
    std::error_code code;
    if (!path.empty() && fs::equivalent(path, options.model, code)) {
      throw CommandFailure{path + ": is the model itself"};
    }
  }
  if (!options.parts.empty() && fs::weakly_canonical(options.parts) == fs::weakly_canonical(options.figure)) {
    throw CommandFailure{options.parts + ": is the figure itself"};
  }
}

void WriteOutputs(const Options& options, FigureDocument& document) {
  const auto begin = std::chrono::steady_clock::now();
  OutputFiles outputs;
  std::string error;
  if (!AddFigureFiles(options.figure, document.pages, outputs, error)) throw CommandFailure{error};
  if (!options.parts.empty()) AddPartsListFile(options.parts, document.list, options.language, outputs);
  if (!outputs.Commit(error)) throw CommandFailure{error};
  document.report.outputs = outputs.Paths();
  document.report.seconds.draw += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

int RunFigureCommand(const Options& options) {
  try {
    CheckOutputs(options);
    FigureDocument document = MakeFigure(options);
    WriteOutputs(options, document);
    const Report& report = document.report;
    if (options.json) {
      std::fputs(ReportToJson(report, document.pages).c_str(), stdout);
    } else if (!options.quiet) {
      std::fputs(ReportToText(report).c_str(), stdout);
    }
    return options.strict && !report.findings.empty() ? kExitFindings : kExitDone;
  } catch (const CommandFailure& failure) {
    std::fprintf(stderr, "zrfigure: %s\n", failure.message.c_str());
    return kExitBadInput;
  }
}

}  // namespace zrfigure

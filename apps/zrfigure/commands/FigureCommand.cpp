#include "commands/FigureCommand.h"

#include <chrono>
#include <cstdio>
#include <filesystem>

#include "commands/CommandFailure.h"
#include "commands/FigureMaker.h"
#include "commands/OutputFiles.h"
#include "drawing/FigureExport.h"
#include "drawing/HtmlWriter.h"
#include "drawing/SvgWriter.h"

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
}

void AddFigure(const std::string& figure, const std::vector<Figure>& figurePages, OutputFiles& outputs) {
  if (LowerExtension(figure) == ".html") {
    outputs.Add(figure, WriteHtml(figurePages));
    return;
  }
  std::vector<std::string> pages;
  for (const Figure& page : figurePages) pages.push_back(WriteSvg(page));
  FigureFormat format = FigureFormat::Svg;
  std::string error;
  if (!FormatOfPath(figure, format, error)) throw CommandFailure{error};
  const bool onePerFile = format != FigureFormat::Pdf;
  for (std::size_t i = 0; i < (onePerFile ? pages.size() : 1); ++i) {
    const std::vector<std::string> content = onePerFile ? std::vector<std::string>{pages[i]} : pages;
    std::string bytes;
    if (!RenderFigure(content, format, {}, bytes, error)) throw CommandFailure{figure + ": " + error};
    fs::path path = figure;
    if (i > 0) path.replace_filename(path.stem().string() + "-" + std::to_string(i + 1) + path.extension().string());
    outputs.Add(path, std::move(bytes));
  }
}

void WriteOutputs(const Options& options, FigureDocument& document) {
  const auto begin = std::chrono::steady_clock::now();
  OutputFiles outputs;
  AddFigure(options.figure, document.pages, outputs);
  if (!options.parts.empty()) {
    const bool json = LowerExtension(options.parts) == ".json";
    outputs.Add(options.parts, json ? PartsListToJson(document.list) : PartsListToCsv(document.list));
  }
  std::string error;
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

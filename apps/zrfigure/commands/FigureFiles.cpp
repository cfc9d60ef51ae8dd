#include "commands/FigureFiles.h"

#include <algorithm>
#include <utility>

#include "commands/FigureComposer.h"
#include "drawing/FigureExport.h"
#include "drawing/HtmlWriter.h"
#include "drawing/SvgWriter.h"

namespace zrfigure {
namespace {

std::filesystem::path PagePath(const std::filesystem::path& path, std::size_t page) {
  if (page == 1) return path;
  return path.parent_path() / (path.stem().string() + '-' + std::to_string(page) + path.extension().string());
}

}  // namespace

bool AddFigureFiles(const std::filesystem::path& path, const std::vector<Figure>& pages, OutputFiles& outputs,
                    std::string& error) {
  if (LowerExtension(path) == ".html") {
    outputs.Add(path, WriteHtml(pages));
    return true;
  }
  FigureFormat format = FigureFormat::Svg;
  if (!FormatOfPath(path, format, error)) return false;
  std::vector<std::vector<std::string>> files(format == FigureFormat::Pdf ? 1 : pages.size());
  for (std::size_t i = 0; i < pages.size(); ++i) files[std::min(i, files.size() - 1)].push_back(WriteSvg(pages[i]));
  for (std::size_t i = 0; i < files.size(); ++i) {
    std::string bytes;
    if (!RenderFigure(files[i], format, {}, bytes, error)) {
      error = path.string() + ": " + error;
      return false;
    }
    outputs.Add(PagePath(path, i + 1), std::move(bytes));
  }
  return true;
}

bool NamesPartsList(const std::filesystem::path& path) {
  const std::string extension = LowerExtension(path);
  return extension == ".csv" || extension == ".json";
}

void AddPartsListFile(const std::filesystem::path& path, const PartsList& list, const std::string& language,
                      OutputFiles& outputs) {
  const std::string extension = LowerExtension(path);
  if (extension == ".json") return outputs.Add(path, PartsListToJson(list));
  if (extension == ".html") {
    return outputs.Add(path, WriteHtmlList(list.source, language, ComposeFullTable(list, language)));
  }
  outputs.Add(path, PartsListToCsv(list));
}

}  // namespace zrfigure

#pragma once
// Figures and parts lists as the files that a user asked for by name.

#include <filesystem>
#include <string>
#include <vector>

#include "commands/OutputFiles.h"
#include "drawing/Figure.h"
#include "drawing/PartsList.h"

namespace zrfigure {

/// Adds a figure by the path's extension: .pdf and .html hold all pages; of .svg and .png, page n > 1 goes to
/// `<stem>-<n><extension>`. \return false with one line in `error` when the extension is another one or a page cannot
/// be rendered; some pages may have been added by then.
[[nodiscard]] bool AddFigureFiles(const std::filesystem::path& path, const std::vector<Figure>& pages,
                                  OutputFiles& outputs, std::string& error);

/// Whether the extension is that of a parts list and of no figure: .csv or .json.
[[nodiscard]] bool NamesPartsList(const std::filesystem::path& path);

/// Adds a parts list as .json, .html with headings in `language`, or else as CSV.
void AddPartsListFile(const std::filesystem::path& path, const PartsList& list, const std::string& language,
                      OutputFiles& outputs);

}  // namespace zrfigure

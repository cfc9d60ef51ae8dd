#include "commands/Options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "commands/AlignModes.h"
#include "commands/OutputFiles.h"
#include "commands/PageFormat.h"
#include "commands/TemplateFile.h"

#ifndef ZRFIGURE_VERSION
#define ZRFIGURE_VERSION "unknown"
#endif

namespace zrfigure {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  zrfigure pump.step\n"
    "  zrfigure pump.step -o pump.pdf --parts pump.csv --page A3\n"
    "  zrfigure pump.glb --view front --template number-name --per-instance\n"
    "  zrfigure pump.step --select 'bolt*' --select 'housing/**' --combine\n"
    "  zrfigure pump.step --level 1 --numbering hierarchical --lang de\n"
    "  zrfigure pump.step --view iso --view back --order clockwise --pin last.svg\n"
    "  zrfigure check pump.svg --format sarif    (zrfigure check --help lists its options)\n"
    "  zrfigure run steps.zrf      (commands step by step; zrfigure run --help lists them)\n";

/// A figure smaller than this has no room for a model and its labels.
constexpr double kMinInsideMm = 40;
/// Pages with a side longer than that have the wide margin by default.
constexpr double kLargePageMm = 600;
constexpr double kWideMarginMm = 20;
constexpr std::size_t kMostViews = 9;

/// What the command line library fills in; checked and converted afterwards, so that all messages read alike.
struct RawOptions {
  std::string model, figure, parts, pin;
  std::string page = "A4", margin, list = "auto", format = "text";
  std::string templateName = "number", numbering = "flat", language = "en", level;
  std::string order = "item", callouts = "3d", align;
  std::vector<std::string> views, select, weld;
  bool portrait = false, landscape = false, frame = false, distribute = false, skipHidden = false;
  bool perInstance = false, combine = false;
  bool quiet = false, json = false, strict = false;
};

void DefineFiles(CLI::App& app, RawOptions& raw) {
  app.add_option("MODEL", raw.model, "Assembly to draw: .step .stp .glb .gltf .obj")
      ->type_name(" ")
      ->group("Input and output");
  app.add_option("-o,--output", raw.figure,
                 "Figure to write: .svg .pdf .png .html (default: the model's name with .svg)")
      ->type_name("FILE")
      ->group("Input and output");
  app.add_option("--parts", raw.parts, "Parts list to write: .csv .json .html")
      ->type_name("FILE")
      ->group("Input and output");
}

void DefineCheckedFile(CLI::App& app, RawOptions& raw) {
  app.add_option("FILE", raw.model,
                 "A figure (.svg), a report of one (.json), or a model to draw with the options below")
      ->type_name(" ")
      ->group("Input and output");
  app.add_option("--format", raw.format, "text, json or sarif")->type_name("FORMAT")->group("Input and output");
}

void DefinePage(CLI::App& app, RawOptions& raw) {
  const char* group = "View and page";
  app.add_option("--view", raw.views,
                 "iso, front, top, right, left, back, bottom or AZIMUTH,ELEVATION in degrees; repeated: several "
                 "pictures on the page, each item called out where it is seen best")
      ->type_name("VIEW")
      ->allow_extra_args(false)
      ->group(group);
  app.add_option("--page", raw.page, "A4, A3, A2 or WIDTHxHEIGHT in mm")->type_name("SIZE")->group(group);
  app.add_flag("--portrait", raw.portrait, "Page standing")->group(group);
  app.add_flag("--landscape", raw.landscape, "Page lying (default)")->group(group);
  app.add_option("--margin", raw.margin, "Margin of the page in mm (default 10, or 20 above A2)")
      ->type_name("MM")
      ->group(group);
  app.add_flag("--frame", raw.frame, "Draw a frame along the margin")->group(group);
  app.add_option(
         "--list", raw.list,
         "Parts list beside or under the drawing, on it in the corner, on a page of its own (own), none, or auto")
      ->type_name("PLACE")
      ->group(group);
}

void DefineCallouts(CLI::App& app, RawOptions& raw) {
  const char* group = "Callouts";
  app.add_option("--template", raw.templateName, "number, number-quantity, number-tag, number-name or a .json file")
      ->type_name("TEMPLATE")
      ->group(group);
  app.add_flag("--combine", raw.combine, "One callout an item with a leader to each part")->group(group);
  app.add_flag("--per-instance", raw.perInstance, "A callout for each part; not with --combine")->group(group);
  app.add_option("--select", raw.select, "Only instances whose name, product name or path matches; may be repeated")
      ->type_name("GLOB")
      ->allow_extra_args(false)
      ->group(group);
  app.add_option("--level", raw.level, "Instances at this depth (the root is 0) instead of leaf parts")
      ->type_name("N")
      ->group(group);
  app.add_flag("--skip-hidden", raw.skipHidden, "No callouts for items of which nothing can be seen")->group(group);
  app.add_option("--numbering", raw.numbering, "flat or hierarchical")->type_name("KIND")->group(group);
  app.add_option("--order", raw.order, "Numbers run by item, or clockwise round the figure")
      ->type_name("ORDER")
      ->group(group);
  app.add_option("--align", raw.align, "Line the labels up: " + AlignModeNames())->type_name("MODE")->group(group);
  app.add_flag("--distribute", raw.distribute, "With --align: space the labels evenly")->group(group);
  app.add_option("--pin", raw.pin, "Earlier figure (.svg) or report (.json): its labels stay where that is still good")
      ->type_name("FILE")
      ->group(group);
  app.add_option("--callouts", raw.callouts, "3d, or 2d: balloons are callouts of a 2D page; not with --combine")
      ->type_name("KIND")
      ->group(group);
  app.add_option("--weld", raw.weld, "Products or instances that are weldments; may be repeated")
      ->type_name("GLOB")
      ->allow_extra_args(false)
      ->group(group);
  app.add_option("--lang", raw.language, "Language of texts: en, de, fr or ja")->type_name("LANG")->group(group);
}

void DefineReporting(CLI::App& app, RawOptions& raw) {
  const char* group = "Reporting";
  app.add_flag("--quiet", raw.quiet, "No progress, no summary")->group(group);
  app.add_flag("--json", raw.json, "Print what was done as JSON")->group(group);
  app.add_flag("--strict", raw.strict, "Exit with 1 when there are findings")->group(group);
  app.set_help_flag("-h,--help", "Print this help")->group(group);
  app.set_version_flag("--version", "zrfigure " ZRFIGURE_VERSION)->group(group);
}

/// Fails the conversion with "OPTION: MESSAGE".
struct OptionError {
  std::string text;
};

[[noreturn]] void Fail(const std::string& option, const std::string& message) {
  throw OptionError{option + ": " + message};
}

void RequireOneOf(const std::string& option, const std::string& value, const std::vector<std::string>& allowed) {
  if (std::find(allowed.begin(), allowed.end(), value) != allowed.end()) return;
  std::string list;
  for (std::size_t i = 0; i < allowed.size(); ++i) {
    if (i > 0) list += i + 1 == allowed.size() ? " or " : ", ";
    list += allowed[i];
  }
  Fail(option, "'" + value + "' is unknown: use " + list);
}

void RequireExtension(const std::string& option, const std::string& path, const std::vector<std::string>& allowed) {
  const std::string extension = LowerExtension(path);
  if (extension.empty()) Fail(option, "'" + path + "' has no extension that tells the format");
  RequireOneOf(option, extension, allowed);
}

std::vector<std::string> RequirePatterns(const std::string& option, const std::vector<std::string>& globs) {
  for (const std::string& glob : globs) {
    if (glob.empty()) Fail(option, "the pattern is empty");
  }
  return globs;
}

Page ConvertPage(const RawOptions& raw) {
  if (raw.portrait && raw.landscape) Fail("--landscape", "cannot be used with --portrait");
  std::optional<Orientation> orientation;
  if (raw.portrait) orientation = Orientation::Portrait;
  if (raw.landscape) orientation = Orientation::Landscape;
  std::string error;
  const auto format = ParsePageFormat(raw.page, orientation, error);
  if (!format) Fail("--page", error);
  Page page;
  page.widthMm = format->widthMm;
  page.heightMm = format->heightMm;
  page.frame = raw.frame;
  page.marginMm = std::max(page.widthMm, page.heightMm) > kLargePageMm ? kWideMarginMm : Page().marginMm;
  if (!raw.margin.empty()) {
    const auto margin = ParseNumber(raw.margin);
    if (!margin || *margin < 0) Fail("--margin", "'" + raw.margin + "' is not a number of millimetres");
    page.marginMm = *margin;
  }
  if (std::min(page.widthMm, page.heightMm) - 2 * page.marginMm < kMinInsideMm) {
    Fail("--margin", (raw.margin.empty() ? "its default of 10" : raw.margin) + " mm leave less than 40 mm of the page");
  }
  return page;
}

TablePlace ConvertListPlace(const std::string& text, const Page& page) {
  RequireOneOf("--list", text, {"auto", "beside", "under", "on", "own", "none"});
  if (text == "beside") return TablePlace::Beside;
  if (text == "under") return TablePlace::Under;
  if (text == "on") return TablePlace::OnDrawing;
  if (text == "own") return TablePlace::OwnPage;
  if (text == "none") return TablePlace::None;
  return page.widthMm >= page.heightMm ? TablePlace::Beside : TablePlace::Under;
}

std::optional<unsigned> ConvertLevel(const std::string& text) {
  if (text.empty()) return std::nullopt;
  unsigned level = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), level);
  if (code != std::errc() || end != text.data() + text.size()) {
    Fail("--level", "'" + text + "' is not a whole number of 0 or more");
  }
  return level;
}

std::vector<ViewDirection> ConvertViews(std::vector<std::string> texts) {
  if (texts.empty()) texts.push_back("iso");
  if (texts.size() > kMostViews) Fail("--view", "a page has room for 9 views at most");
  std::vector<ViewDirection> directions;
  for (const std::string& text : texts) {
    std::string error;
    const auto direction = ParseViewDirection(text, error);
    if (!direction) Fail("--view", error);
    directions.push_back(*direction);
  }
  return directions;
}

void ConvertTemplate(const std::string& name) {
  if (IsBuiltInTemplate(name) || std::filesystem::path(name).extension() == ".json") return;
  Fail("--template",
       "'" + name + "' is neither built in (number, number-quantity, number-tag, number-name) nor a .json file");
}

/// Order, kind, alignment and pins: what happens to callouts after they were created.
void ConvertArrangement(const RawOptions& raw, Options& options) {
  RequireOneOf("--order", raw.order, {"item", "clockwise"});
  if (raw.order == "clockwise") options.order = ItemOrder::Clockwise;
  RequireOneOf("--callouts", raw.callouts, {"3d", "2d"});
  if (raw.callouts == "2d") options.kind = CalloutKind::Sheet;
  if (raw.callouts == "2d" && raw.combine) Fail("--callouts", "a 2d callout has one leader: not with --combine");
  if (!raw.align.empty()) {
    options.align = FindAlignMode(raw.align);
    if (!options.align) Fail("--align", "'" + raw.align + "' is unknown: use " + AlignModeNames());
  }
  if (raw.distribute && raw.align.empty()) Fail("--distribute", "needs --align, which says along what");
  options.distribute = raw.distribute;
  if (!raw.pin.empty()) RequireExtension("--pin", raw.pin, {".svg", ".json"});
  options.pin = raw.pin;
}

void ConvertCallouts(const RawOptions& raw, Options& options) {
  ConvertTemplate(raw.templateName);
  options.templateName = raw.templateName;
  if (raw.combine && raw.perInstance) Fail("--per-instance", "cannot be used with --combine");
  if (raw.combine) options.mode = CalloutMode::Combine;
  if (raw.perInstance) options.mode = CalloutMode::PerInstance;
  options.select = RequirePatterns("--select", raw.select);
  options.weld = RequirePatterns("--weld", raw.weld);
  options.level = ConvertLevel(raw.level);
  options.skipHidden = raw.skipHidden;
  RequireOneOf("--numbering", raw.numbering, {"flat", "hierarchical"});
  options.hierarchical = raw.numbering == "hierarchical";
  ConvertArrangement(raw, options);
  RequireOneOf("--lang", raw.language, {"en", "de", "fr", "ja"});
  options.language = raw.language;
}

FindingFormat ConvertFormat(const std::string& text) {
  RequireOneOf("--format", text, {"text", "json", "sarif"});
  if (text == "json") return FindingFormat::Json;
  return text == "sarif" ? FindingFormat::Sarif : FindingFormat::Text;
}

Options Convert(const RawOptions& raw, bool check) {
  if (raw.model.empty()) {
    throw OptionError{check ? "check: no file given: zrfigure check FILE [options]; --help lists them"
                            : "no model given: zrfigure MODEL [options]; --help lists them"};
  }
  Options options;
  options.model = raw.model;
  options.figure = raw.figure;
  if (raw.figure.empty()) options.figure = std::filesystem::path(raw.model).filename().stem().string() + ".svg";
  RequireExtension("--output", options.figure, {".svg", ".pdf", ".png", ".html"});
  if (!raw.parts.empty()) RequireExtension("--parts", raw.parts, {".csv", ".json", ".html"});
  options.parts = raw.parts;
  options.directions = ConvertViews(raw.views);
  options.page = ConvertPage(raw);
  options.listPlace = ConvertListPlace(raw.list, options.page);
  ConvertCallouts(raw, options);
  options.quiet = raw.quiet;
  options.json = raw.json;
  options.strict = raw.strict;
  if (check) options.check = ConvertFormat(raw.format);
  return options;
}

std::string OneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace

ParsedOptions ParseOptions(const std::vector<std::string>& arguments) {
  const bool check = !arguments.empty() && arguments.front() == "check";
  CLI::App app(check ? "Looks a figure over: every item shown, leaders and labels apart, list and figure agreed."
                     : "Draws a CAD assembly as a figure with numbered callouts and a parts list.",
               check ? "zrfigure check" : "zrfigure");
  if (!check) app.footer(kExamples);
  RawOptions raw;
  check ? DefineCheckedFile(app, raw) : DefineFiles(app, raw);
  DefinePage(app, raw);
  DefineCallouts(app, raw);
  if (!check) DefineReporting(app, raw);
  if (check) app.set_help_flag("-h,--help", "Print this help")->group("Input and output");
  ParsedOptions result;
  try {
    // The library takes its arguments from the back.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend() - (check ? 1 : 0)));
    result.options = Convert(raw, check);
  } catch (const CLI::CallForHelp&) {
    result.output = app.help();
  } catch (const CLI::CallForVersion& version) {
    result.output = std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    result.error = OneLine(error.what());
  } catch (const OptionError& error) {
    result.error = error.text;
  }
  return result;
}

}  // namespace zrfigure

#include <array>
#include <filesystem>
#include <map>
#include <regex>
#include <set>

#include "BrokenFiles.h"
#include "apps/import/TemporaryFolder.h"

namespace zrfigure::fixtures {
namespace {

using Ids = std::set<int>;

struct Record {
  std::string text;
  Ids references;
};
using Records = std::map<int, Record>;

constexpr const char* kEnd = "\nENDSEC;\nEND-ISO-10303-21;\n";

Records RecordsOf(const std::string& text) {
  Records records;
  const std::regex record("#([0-9]+) = ([^;]*);\n");
  const std::regex reference("#([0-9]+)");
  for (std::sregex_iterator i(text.begin(), text.end(), record), end; i != end; ++i) {
    Record& made = records[std::stoi((*i)[1])];
    made.text = (*i)[2];
    for (std::sregex_iterator r(made.text.begin(), made.text.end(), reference); r != end; ++r) {
      made.references.insert(std::stoi((*r)[1]));
    }
  }
  return records;
}

bool IsUnwantedProduct(const std::string& text) {
  static const std::regex wanted("PRODUCT\\('(Drive unit|Frame weldment|Foot plate|Gusset|Hex nut M12|Washer 12)'[^]*");
  return text.rfind("PRODUCT('", 0) == 0 && !std::regex_match(text, wanted);
}

/// References point to smaller and larger numbers alike: repeated until nothing is added.
template <class Rule>
Ids Closure(const Records& records, const Rule& joins) {
  Ids ids;
  for (std::size_t before = 1; before != ids.size();) {
    before = ids.size();
    for (const auto& [id, record] : records) joins(id, record, ids);
    if (ids.empty()) break;
  }
  return ids;
}

}  // namespace

std::string SmallStepAssembly() {
  const std::string whole = ReadWholeFile(ExampleModel());
  const std::size_t data = whole.find("DATA;\n") + 6;
  const Records records = RecordsOf(whole.substr(data));
  const Ids dropped = Closure(records, [](int id, const Record& record, Ids& ids) {
    bool drops = IsUnwantedProduct(record.text);
    for (const int reference : record.references) drops = drops || ids.count(reference) != 0;
    if (drops) ids.insert(id);
  });
  const Ids kept = Closure(records, [&](int id, const Record& record, Ids& ids) {
    static const std::regex root("(CONTEXT_DEPENDENT|SHAPE_DEFINITION|PROPERTY_DEFINITION|APPLICATION_PROTOCOL)[^]*");
    if (dropped.count(id) == 0 && std::regex_match(record.text, root)) ids.insert(id);
    if (ids.count(id) != 0) ids.insert(record.references.begin(), record.references.end());
  });
  std::string text = whole.substr(0, data);
  for (const int id : kept) text += "#" + std::to_string(id) + " = " + records.at(id).text + ";\n";
  return text + kEnd;
}

namespace {

const Damage kDamages[] = {
    // Assemblies and shapes that hold themselves.
    {"part-of-itself", R"((OCCURRENCE\('15','Base frame','',)#5,#139)", "$1#139,#139"},
    {"parts-of-each-other", R"((OCCURRENCE\('15','Base frame','',)#5,#139)", "$1#139,#5"},
    {"root-in-weldment", R"((OCCURRENCE\('7',[^#]*)#139,#1316)", "$1#139,#5"},
    {"shape-placed-in-itself", R"(RELATIONSHIP\('','',#144,#10\))", "RELATIONSHIP('','',#144,#144)"},
    {"shapes-turned-round", R"(RELATIONSHIP\('','',#144,#10\))", "RELATIONSHIP('','',#10,#144)"},
    {"representation-of-itself", R"(#10 = SHAPE_REPRESENTATION\('',\(#11)", "#10 = SHAPE_REPRESENTATION('',(#10"},
    {"placement-of-itself", R"(#11 = AXIS2_PLACEMENT_3D\('',#12)", "#11 = AXIS2_PLACEMENT_3D('',#11"},
    {"product-of-itself", R"(#7 = PRODUCT\('Drive unit','Drive unit','',\(#8)", "#7 = PRODUCT('Drive unit','','',(#7"},
    {"formation-of-itself", R"(#6 = PRODUCT_DEFINITION_FORMATION\('','',#7)",
     "#6 = PRODUCT_DEFINITION_FORMATION('','',#6"},
    {"definition-of-itself", R"(#5 = PRODUCT_DEFINITION\('design','',#6)", "#5 = PRODUCT_DEFINITION('design','',#5"},
    {"shell-of-itself", R"(#(\d+) = CLOSED_SHELL\('',\(#\d+)", "#$1 = CLOSED_SHELL('',(#$1"},
    {"solid-of-itself", R"(#(\d+) = MANIFOLD_SOLID_BREP\('',#\d+)", "#$1 = MANIFOLD_SOLID_BREP('',#$1"},
    {"edge-of-itself", R"(#(\d+) = ORIENTED_EDGE\('',\*,\*,#\d+)", "#$1 = ORIENTED_EDGE('',*,*,#$1"},
    // Numbers.
    {"missing-number", "#12 = CARTESIAN", "#999999 = CARTESIAN"},
    {"endless-number", "#12 = CARTESIAN", "#99999999999999999999999999 = CARTESIAN"},
    {"every-number-the-same", R"(#\d+ = CARTESIAN)", "#12 = CARTESIAN", 0},
    {"point-for-direction", R"(AXIS2_PLACEMENT_3D\('',#12,#13)", "AXIS2_PLACEMENT_3D('',#13,#12"},
    {"not-a-number", R"(CARTESIAN_POINT\('',\([^,]*)", "CARTESIAN_POINT('',(NaN", 0},
    {"infinite", R"(CARTESIAN_POINT\('',\([^,]*)", "CARTESIAN_POINT('',(1.E999", 0},
    {"one-far-point", R"(CARTESIAN_POINT\('',\(40\.,40)", "CARTESIAN_POINT('',(1.E308,40"},
    {"far-points", R"((CARTESIAN_POINT\('',\([^,)]*))", "$01E300", 0},
    {"far-assembly", R"(#20 = CARTESIAN_POINT\('',\(130.)", "#20 = CARTESIAN_POINT('',(1.E308"},
    {"far-placements", R"(CARTESIAN_POINT\('',\((-40|130)\.)", "CARTESIAN_POINT('',(1.7E308", 0},
    {"tiny-points", R"((CARTESIAN_POINT\('',\([^,)]*))", "$01E-310", 0},
    {"points-in-a-line", R"(CARTESIAN_POINT\('',\(([^,)]*),[^,)]*,[^,)]*\))", "CARTESIAN_POINT('',($1,0.,0.)", 0},
    {"flat-points", R"(CARTESIAN_POINT\('',\(([^,)]*))", "CARTESIAN_POINT('',($1,0.,0.,0.,0.", 0},
    {"no-direction", R"(DIRECTION\('',\([^)]*\))", "DIRECTION('',(0.,0.,0.))", 0},
    {"endless-direction", R"(DIRECTION\('',\([^)]*\))", "DIRECTION('',(1.E308,1.E308,1.E308))", 0},
    {"radius-nought", R"((CIRCLE|CYLINDRICAL_SURFACE)\('',(#\d+),[^)]*)", "$1('',$2,0.", 0},
    {"radius-negative", R"((CIRCLE|CYLINDRICAL_SURFACE)\('',(#\d+),[^)]*)", "$1('',$2,-6.", 0},
    {"radius-endless", R"((CIRCLE|CYLINDRICAL_SURFACE)\('',(#\d+),[^)]*)", "$1('',$2,1.E308", 0},
    {"unit-endless", R"(SI_UNIT\(\.MILLI\.,\.METRE)", "SI_UNIT(.EXA.,.METRE", 0},
    {"tolerance-endless", R"(LENGTH_MEASURE\([^)]*)", "LENGTH_MEASURE(1.E300", 0},
    {"tolerance-nought", R"(LENGTH_MEASURE\([^)]*)", "LENGTH_MEASURE(0.", 0},
    // Text.
    {"no-data", "DATA;", "DATE;"},
    {"no-header", "HEADER;[^]*?ENDSEC;", ""},
    {"open-string", R"('Gusset')", "'Gusset"},
    {"open-comment", "DATA;", "DATA; /*"},
    {"zero-byte", "Gusset", std::string("Gus\0set", 7), 0},
    {"broken-utf-8", "Gusset", "Gus\xC3set\xF0\x9F", 0},
    {"broken-escapes", "Gusset", "\\\\X2\\\\00\\\\X4\\\\FFFFFFFF\\\\S\\\\", 0},
    {"control-characters", "Gusset", "Gus\x1b[2J\r\nset", 0},
    {"long-name", "Gusset", std::string(1 << 20, 'x'), 0},
    {"no-names", R"(PRODUCT\('[^']*','[^']*')", "PRODUCT('',''", 0},
    {"deep-brackets", R"(DIRECTION\('',\()", "DIRECTION('',(" + std::string(100000, '(')},
    {"many-brackets", R"(DIRECTION\('',\()", "DIRECTION('',(" + std::string(3000, '(') + std::string(3000, ')')},
    {"many-operands", R"(DIRECTION\('',\()",
     "DIRECTION('',(" + std::regex_replace(std::string(50000, '1'), std::regex("1"), "1.,")},
    {"no-operands", R"((EDGE_LOOP|CLOSED_SHELL|DIRECTION)\('',\([^)]*\))", "$1('',())", 0},
    {"unknown-records", R"(ADVANCED_FACE)", "ADVANCED_FACADE", 0},
    {"no-assembly", "= NEXT_ASSEMBLY_USAGE", "= LAST_ASSEMBLY_USAGE", 0},
    {"no-shapes", "SHAPE_DEFINITION_REPRESENTATION", "SHAPE_DEFINITION_REMOVED", 0}};

/// Each assembly holds the next two below it: 2 to the power of the depth occurrences of one part.
std::string DoublingAssembly(const std::string& small) {
  std::string records;
  constexpr int kDepth = 40;
  for (int i = 0; i < kDepth; ++i) {
    const std::string id = std::to_string(800000 + 10 * i);
    const std::string definition = "#" + std::to_string(800002 + 10 * i);
    const std::string next = i + 1 < kDepth ? "#" + std::to_string(800012 + 10 * i) : "#1539";
    records += "#" + id + " = PRODUCT('Level " + id + "','','',(#8));\n#" + std::to_string(800001 + 10 * i) +
               " = PRODUCT_DEFINITION_FORMATION('','',#" + id + ");\n" + definition + " = PRODUCT_DEFINITION('','',#" +
               std::to_string(800001 + 10 * i) + ",#9);\n";
    for (const int copy : {3, 4}) {
      records += "#" + std::to_string(800000 + 10 * i + copy) + " = NEXT_ASSEMBLY_USAGE_OCCURRENCE('" + id +
                 std::to_string(copy) + "','','," + definition + "," + next + ",$);\n";
    }
  }
  return Damaged(small, {"doubling", "\nENDSEC;\nEND-ISO", "\n" + records + "ENDSEC;\nEND-ISO"});
}

}  // namespace

BrokenFiles BrokenStepFiles() {
  const std::string small = SmallStepAssembly();
  BrokenFiles files;
  for (const Damage& damage : kDamages) files.push_back({damage.name + ".step", Damaged(small, damage)});
  files.push_back({"doubling.step", DoublingAssembly(small)});
  AddCut("cut", ".stp", small, "", 6, files);
  AddCut("cut-and-closed", ".p21", small, kEnd, 14, files);
  AddFlipped("flipped", ".step", small, small.find("DATA;"), 24, files);
  const std::filesystem::path other = std::filesystem::path(ZR_MODELS_DIR) / "as1-oc-214.stp";
  if (std::filesystem::exists(other)) {
    const std::string whole = ReadWholeFile(other);
    AddCut("other-cut", ".stp", whole, kEnd, 4, files);
    AddFlipped("other-flipped", ".stp", whole, whole.find("DATA;"), 4, files);
  }
  return files;
}

}  // namespace zrfigure::fixtures

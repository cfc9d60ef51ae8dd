#include <filesystem>

#include "BrokenFiles.h"
#include "apps/import/TemporaryFolder.h"

namespace zrfigure::fixtures {

std::string SmallStepAssembly() {
  return ReadWholeFile(std::filesystem::path(ZR_SOURCE_DIR) / "tests/apps/broken/frame.step");
}

namespace {

constexpr const char* kEnd = "\nENDSEC;\nEND-ISO-10303-21;\n";

/// Records whose first reference is to themselves.
std::vector<Damage> SelfReferences() {
  std::vector<Damage> damages;
  for (const std::string type :
       {"SHAPE_REPRESENTATION", "AXIS2_PLACEMENT_3D", "PRODUCT", "PRODUCT_DEFINITION_FORMATION", "PRODUCT_DEFINITION",
        "CLOSED_SHELL", "MANIFOLD_SOLID_BREP", "ADVANCED_FACE", "EDGE_LOOP", "ORIENTED_EDGE"}) {
    damages.push_back({"#(\\d+) = " + type + "\\(([^#]*)#\\d+", {"#$1 = " + type + "($2#$1"}});
  }
  return damages;
}

/// Numbers of one kind: the same everywhere, or all far too large or small.
std::vector<Damage> WrongNumbers() {
  std::vector<Damage> damages;
  for (const char* pattern : {R"((CARTESIAN_POINT\('',\()([^,)]*))", R"((DIRECTION\('',\()([^,)]*))",
                              R"(((?:CIRCLE|CYLINDRICAL_SURFACE)\('',#\d+,)([^)]*))", R"((LENGTH_MEASURE\()([^)]*))"}) {
    damages.push_back(
        {pattern, {"$01NaN", "$010.", "$01-6.", "$011.E999", "$011.E308", "$1$2E300", "$1$2E-310"}, true});
  }
  return damages;
}

const std::vector<Damage> kDamages{
    {R"((OCCURRENCE\('15','Base frame','',)#5,#139)", {"$1#139,#139", "$1#139,#5"}},
    {R"((OCCURRENCE\('7',[^#]*)#139,#1316)", {"$1#139,#5"}},
    {R"(RELATIONSHIP\('','',#144,#10\))", {"RELATIONSHIP('','',#144,#144)", "RELATIONSHIP('','',#10,#144)"}},
    {"#12 = CARTESIAN", {"#999999 = CARTESIAN", "#99999999999999999999999999 = CARTESIAN"}},
    {R"(#\d+ = CARTESIAN)", {"#12 = CARTESIAN"}, true},
    {R"(AXIS2_PLACEMENT_3D\('',#12,#13)", {"AXIS2_PLACEMENT_3D('',#13,#12"}},
    {R"(CARTESIAN_POINT\('',\(40\.)", {"CARTESIAN_POINT('',(1.E308"}},
    {R"(#20 = CARTESIAN_POINT\('',\(130.)", {"#20 = CARTESIAN_POINT('',(1.E308"}},
    {R"(CARTESIAN_POINT\('',\((-40|130)\.)", {"CARTESIAN_POINT('',(1.7E308"}, true},
    {R"(CARTESIAN_POINT\('',\(([^,)]*),[^,)]*,[^,)]*)",
     {"CARTESIAN_POINT('',($1,0.,0.", "CARTESIAN_POINT('',($1,0.,0.,0.,0."},
     true},
    {R"(DIRECTION\('',\([^)]*\))", {"DIRECTION('',(0.,0.,0.))", "DIRECTION('',(1.E308,1.E308,1.E308))"}, true},
    {R"(SI_UNIT\(\.MILLI\.,\.METRE)", {"SI_UNIT(.EXA.,.METRE"}, true},
    {"DATA;", {"DATE;", "DATA; /*"}},
    {"HEADER;[^]*?ENDSEC;", {""}},
    {"'Gusset'", {"'Gusset"}},
    {"Gusset",
     {std::string("Gus\0set", 7), "Gus\xC3set\xF0\x9F", "\\\\X2\\\\00\\\\X4\\\\FFFFFFFF\\\\S\\\\", "Gus\x1b[2J\r\nset",
      std::string(1 << 20, 'x')},
     true},
    {R"(PRODUCT\('[^']*','[^']*')", {"PRODUCT('',''"}, true},
    {R"(DIRECTION\('',\()",
     {"$&" + std::string(100000, '('), "$&" + std::string(3000, '(') + std::string(3000, ')'),
      "$&" + std::string(50000, ',')}},
    {R"((EDGE_LOOP|CLOSED_SHELL|DIRECTION)\('',\([^)]*\))", {"$1('',())"}, true},
    {"ADVANCED_FACE|NEXT_ASSEMBLY_USAGE|SHAPE_DEFINITION_REPRESENTATION", {"UNKNOWN"}, true},
    {"NEXT_ASSEMBLY_USAGE", {"LAST_ASSEMBLY_USAGE"}, true},
    {"SHAPE_DEFINITION_REPRESENTATION", {"SHAPE_DEFINITION_REMOVED"}, true}};

/// Each assembly holds the next two below it: 2 to the power of the depth occurrences of one part.
std::string DoublingAssembly(const std::string& small) {
  std::string records;
  constexpr int kDepth = 40, kFirst = 800000;
  for (int i = 0; i < kDepth; ++i) {
    const auto number = [&](int record) { return "#" + std::to_string(kFirst + 10 * i + record); };
    const std::string next = i + 1 < kDepth ? number(12) : "#1539";
    records += number(0) + " = PRODUCT('Level " + number(0) + "','','',(#8));\n" + number(1) +
               " = PRODUCT_DEFINITION_FORMATION('',''," + number(0) + ");\n" + number(2) +
               " = PRODUCT_DEFINITION('',''," + number(1) + ",#9);\n";
    for (const int copy : {3, 4}) {
      records += number(copy) + " = NEXT_ASSEMBLY_USAGE_OCCURRENCE('" + number(copy) + "','',''," + number(2) + "," +
                 next + ",$);\n";
    }
  }
  return std::string(small).insert(small.rfind(kEnd) + 1, records);
}

}  // namespace

BrokenFiles BrokenStepFiles() {
  const std::string small = SmallStepAssembly();
  BrokenFiles files{{"doubling.step", DoublingAssembly(small)}};
  for (const auto& damages : {SelfReferences(), WrongNumbers(), kDamages}) AddDamaged(damages, ".step", small, files);
  AddCut(".stp", small, "", 6, files);
  AddCut(".p21", small, kEnd, 14, files);
  AddFlipped(".step", small, small.find("DATA;"), 24, files);
  const std::filesystem::path other = std::filesystem::path(ZR_MODELS_DIR) / "as1-oc-214.stp";
  if (!std::filesystem::exists(other)) return files;
  const std::string whole = ReadWholeFile(other);
  AddCut(".stp", whole, kEnd, 4, files);
  AddFlipped(".stp", whole, whole.find("DATA;"), 4, files);
  return files;
}

}  // namespace zrfigure::fixtures

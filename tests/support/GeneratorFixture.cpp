#include "support/GeneratorFixture.h"

#include <zrannotations/CalloutTemplates.h>
#include <zrk/MakeObject.h>

namespace zrtest {

namespace {

const std::string kRoot = "product/";

}  // namespace

GeneratorFixture::GeneratorFixture(const SceneOptions& options) : SceneFixture(options) {
  const Part& root = structure_->Root();
  double x = 0;
  for (const char* name : {"bolt", "bolt", "nut", "washer"}) structure_->AddPart(root, name, {x += 4, 0, 0});
  const Part frame = structure_->AddAssembly(root, "frame");
  for (const char* name : {"beam", "beam"}) structure_->AddPart(frame, name, {x += 4, 0, 0});
  const Part weld = structure_->AddWeld(root, "weld");
  for (const char* name : {"plate", "rib"}) structure_->AddPart(weld, name, {x += 4, 0, 0});
  structure_->AddAssembly(root, "stub");
  engine_->SetTemplate(NumberTemplate());
}

GeneratorFixture::~GeneratorFixture() {
  zrannotations::ClearCalloutTemplates();
}

Part GeneratorFixture::PartOf(const std::string& name) const {
  Part part;
  part.sbom = tree_->FindInstance(kRoot + name);
  EXPECT_TRUE(part.sbom) << name;
  part.design = part.sbom ? part.sbom->GetEbomInstance() : nullptr;
  part.shape = scene_->GetShapeInstance(part.design);
  return part;
}

zrcallouts::CalloutGenerator::Selection GeneratorFixture::Select(const Names& names) const {
  zrcallouts::CalloutGenerator::Selection selection;
  for (const auto& name : names) {
    const auto instance = name.empty() ? nullptr : PartOf(name).sbom;
    selection.push_back(zrk::MakeObject<zrk::illustration::SbomInstanceSelectionItem>(instance));
  }
  return selection;
}

void GeneratorFixture::SetProperty(const std::string& name, const std::string& group, const std::string& property,
                                   const std::string& value) {
  tree_->SetProperty(PartOf(name).sbom, du::Symbol(group), du::Symbol(property), du::Symbol(value), du::Symbol());
}

void GeneratorFixture::Run(const Names& names, const EventPtr& event) {
  auto selection = Select(names);
  zrcallouts::CalloutGenerator::CreateCallouts(engine_, std::move(selection), event);
  EXPECT_TRUE(selection.empty());  // the run took it over
  RunTasks();
}

Names GeneratorFixture::Describe() const {
  Names described;
  for (const auto& callout : Shown()) described.push_back(Describe(*callout));
  return described;
}

std::string GeneratorFixture::Describe(const zrannotations::Callout& callout) {
  std::string text = callout.GetText(false).GetString() + ":";
  for (const auto& leader : callout.GetLeaders()) {
    const auto assembly = leader->GetAssemblyInstanceId();
    const std::string id = assembly.empty() ? leader->GetShapeInstanceId() : assembly;
    text += " " + (id.compare(0, kRoot.size(), kRoot) == 0 ? id.substr(kRoot.size()) : id);
    if (leader->IsHidden()) text += "*";
  }
  return text;
}

}  // namespace zrtest

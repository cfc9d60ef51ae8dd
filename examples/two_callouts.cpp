// Two bolts, one item, one numbered callout: the smallest program that runs the component in the bundled host.
#include <cstdio>

#include <dg/DBox.h>
#include <dg/Location.h>
#include <du/Localizer.h>
#include <zrannotations/Callout.h>
#include <zrcallouts/CalloutGenerator.h>
#include <zrcallouts/Callouts.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/AsyncEvent.h>
#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/World.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration/ComponentLoader.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/Illustration3dView.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>
#include <zrk/illustration/SbomTree.h>
#include <zrk/illustration/TAnnotation.h>

using namespace zrk::illustration;
using zrk::MakeObject;

int main() {
  zrk::World::SetWorld(MakeObject<zrk::World>());
  std::string error;
  if (!ComponentLoader::Load("libzrcallouts.so.0", error)) return std::puts(error.c_str()), 1;
  const auto scene = MakeObject<Illustration3dScene>();
  const auto tree = MakeObject<SbomTree>();
  scene->SetSbomTree(tree);
  scene->AddView(MakeObject<Illustration3dView>());
  zritemlist::ItemList::CreateItemListForScene(scene);
  const auto product = MakeObject<zrk::Instance>(MakeObject<zrk::ComponentNode>("vise"), nullptr, "vise");
  const auto root = tree->CreateRoot("vise", product);
  const auto boltNode = MakeObject<zrk::ComponentNode>("bolt");
  zrcallouts::CalloutGenerator::Selection selection;
  for (double x : {0.0, 50.0}) {
    const auto bolt = MakeObject<zrk::Instance>(boltNode, product, "bolt");
    selection.push_back(MakeObject<SbomInstanceSelectionItem>(tree->AddInstance(root, "bolt", bolt)));
    scene->AddShapeInstance(MakeObject<zrk::ShapeInstance>(bolt, MakeObject<zrk::Shape>("bolt"),
                                                           dg::DBox({0, 0, 0}, {10, 10, 40}),
                                                           dg::Location(dg::FMat33::IDENTITY, {x, 0, 0})));
  }
  const auto engine = du::StaticCast<zrcallouts::Callouts>(CalloutEngineMgr::Instance().CreateEngineForScene(scene));
  const auto numbered = MakeObject<TAnnotation>();
  numbered->SetTextContent({MakeObject<LabelContent>("System", "zrITM", TextProperties())}, true);
  engine->SetTemplate(numbered);
  engine->SetCombineForSamePart(true);
  const auto done = MakeObject<zrk::AsyncEvent>();
  zrcallouts::CalloutGenerator::CreateCallouts(engine, std::move(selection), done);
  if (!done->WaitComplete(10000)) return 1;
  for (const auto& annotation : scene->GetAnnoSet()->GetAnnotations()) {
    const auto callout = du::DynamicCast<zrannotations::Callout>(annotation);
    std::printf("callout %s, %u leaders\n", callout->GetText(false).GetString().c_str(),
                callout->GetLeaderLineCount(true));
  }
  scene->Destroy();
  zrk::World::GetWorld()->Shutdown();
}

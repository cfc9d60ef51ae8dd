// Two bolts, one item, one numbered callout.
#include <zrannotations/Callout.h>
#include <zrcallouts/CalloutGenerator.h>
#include <zrcallouts/Callouts.h>
#include <zrk/AsyncEvent.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/StarterScene.h>
#include <zrk/illustration/TAnnotation.h>
#include <cstdio>

using namespace zrk::illustration;

int main() {
  StarterScene vise("vise");
  for (double x : {0.0, 50.0}) vise.AddPart("bolt", {{0, 0, 0}, {10, 10, 40}}, {x, 0, 0});
  const auto engine = du::StaticCast<zrcallouts::Callouts>(vise.LoadCallouts());
  if (!engine) return 1;
  const auto number = zrk::MakeObject<TAnnotation>();  // a label of one piece: the item's number
  number->SetTextContent({zrk::MakeObject<LabelContent>("System", "zrITM", TextProperties())}, true);
  engine->SetTemplate(number);
  engine->SetCombineForSamePart(true);  // one callout an item, a leader to each part
  const auto done = zrk::MakeObject<zrk::AsyncEvent>();
  zrcallouts::CalloutGenerator::CreateCallouts(engine, vise.SelectAll(), done);  // in the background, one undoable step
  if (!done->WaitComplete(10000)) return 1;
  for (const auto& callout : vise.GetCallouts()) {
    std::printf("callout %s, %u leaders\n", callout->GetText(false).GetString().c_str(),
                callout->GetLeaderLineCount(true));
  }
}

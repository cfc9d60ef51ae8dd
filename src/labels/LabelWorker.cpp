#include "labels/LabelWorker.h"

#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLabelFileProperties.h>
#include <zritemlist/ItemList.h>
#include <zrk/Property.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/PlainTextToMarkdown.h>

#include "hostlayer/HostLayer.h"
#include "labels/PartProperty.h"

using zrk::illustration::LabelContent;
using zrk::illustration::PlainTextToMarkdown;

namespace zrcallouts {

namespace {

constexpr std::uint32_t kLiteral = 0;
constexpr std::uint32_t kProperty = 1;

bool ShowsName(const LabelContent& content) {
  return content.display == "Name";
}

std::string QuantityText(const zritemlist::ItemList& itemList, std::uint32_t itemId) {
  const auto& items = itemList.GetZrkItemList();
  return items ? std::to_string(static_cast<int>(items->GetQuantity(itemId))) : std::string();
}

std::string TagText(const zritemlist::ItemList& itemList, std::uint32_t itemId) {
  const auto& items = itemList.GetZrkItemList();
  return items ? items->GetItemTag(itemId) : std::string();
}

}  // namespace

LabelWorker::LabelWorker(const LabelSource& source)
    : source_(source), markdown_(!source.withCallout || (source.callout && source.callout->IsMarkdown())) {}

void LabelWorker::Build(const std::vector<du::SmartPtr<LabelContent>>& contents, std::string& label) {
  label.clear();
  if (source_.hasItem && !source_.itemList) return;
  text_.clear();
  for (const auto& content : contents) {
    if (content) Append(*content);
  }
  if (!text_.empty() && markdown_ && !source_.markdownContent) text_ = PlainTextToMarkdown(text_);
  label.swap(text_);
}

// The first rule that applies makes the piece. Without an item number the item tokens are not special: they are looked
// up like any part property of that name.
void LabelWorker::Append(const LabelContent& content) {
  if (content.type == kLiteral) {
    text_ += content.text;
  } else if (content.type != kProperty) {
    return;
  } else if (AppendItemToken(content)) {
    return;
  } else if (zrannotations::IsCalloutLabelGroupFileProperty(content.text)) {
    AppendFileProperty(content);
  } else if (source_.withCallout && !content.name.empty()) {
    AppendPartProperty(content);
  }
}

bool LabelWorker::AppendItemToken(const LabelContent& content) {
  if (!source_.hasItem || content.text != "System") return false;
  if (content.name == "zrITM") {
    std::string number;
    bool itemized = false;
    source_.itemList->GetItemLabel(source_.itemId, number, itemized);
    Insert(number);
  } else if (content.name == "zrQTY") {
    Insert(QuantityText(*source_.itemList, source_.itemId));
  } else if (content.name == "zrTAG") {
    Insert(TagText(*source_.itemList, source_.itemId));
  } else {
    return false;
  }
  return true;
}

void LabelWorker::AppendFileProperty(const LabelContent& content) {
  Insert(ShowsName(content)
             ? zrannotations::GetCalloutLabelFilePropertyName(content.text, content.name)
             : zrannotations::GetCalloutLabelFilePropertyValue(source_.scene, content.text, content.name));
}

void LabelWorker::AppendPartProperty(const LabelContent& content) {
  if (const auto property = FindPartProperty(source_.callout, content)) {
    Insert((ShowsName(content) ? property->GetName() : hostlayer::ValueOf(property)).GetString());
  } else {
    text_ += MissingAttributeText(source_.scene);  // never escaped
  }
}

void LabelWorker::Insert(const std::string& value) {
  if (markdown_ && source_.markdownContent) {
    text_ += PlainTextToMarkdown(value);
  } else {
    text_ += value;
  }
}

}  // namespace zrcallouts

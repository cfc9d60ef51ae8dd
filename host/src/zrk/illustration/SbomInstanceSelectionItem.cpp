#include <zrk/illustration/SbomInstanceSelectionItem.h>

#include <zrk/illustration/SbomInstance.h>

namespace zrk::illustration {

SbomInstanceSelectionItem::SbomInstanceSelectionItem(const du::SmartPtr<SbomInstance>& instance)
    : instance_(instance) {}

SbomInstanceSelectionItem::~SbomInstanceSelectionItem() = default;

du::SmartPtr<SbomInstance> SbomInstanceSelectionItem::GetSbomInstance() const {
  return instance_;
}

}  // namespace zrk::illustration

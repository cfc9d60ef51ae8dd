#include <zrannotations/InsetBase.h>

#include <zrannotations/ConstStrings.h>

namespace zrannotations {

InsetBase::InsetBase() : zrk::Annotation(ConstStrings::zrInset) {}

InsetBase::~InsetBase() = default;

unsigned InsetBase::GetAnnotationType() const {
  return InsetKind;
}

InsetInfo InsetBase::GetInsetInfo() const {
  const dp::MutexGuard guard(baseMutex_);
  return info_;
}

void InsetBase::SetInsetInfo(const InsetInfo& info) {
  const dp::MutexGuard guard(baseMutex_);
  info_ = info;
}

bool InsetBase::IsCustom() const {
  const dp::MutexGuard guard(baseMutex_);
  return custom_;
}

void InsetBase::SetCustom(bool custom) {
  const dp::MutexGuard guard(baseMutex_);
  custom_ = custom;
}

}  // namespace zrannotations

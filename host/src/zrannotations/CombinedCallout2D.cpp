#include <zrannotations/CombinedCallout2D.h>

#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Text2D.h>

#include "MemberLabels.h"

namespace zrannotations {

using zrk::illustration2d::Callout2D;

CombinedCallout2D::CombinedCallout2D() = default;

CombinedCallout2D::~CombinedCallout2D() = default;

std::string CombinedCallout2D::GenerateLabelString(const du::SmartPtr<CombinedCallout2D>& combined,
                                                   const MemberLabel& member) {
  if (!combined) return {};
  return JoinMemberLabels<Callout2D>(combined->GetMembers(), member, combined->GetSeparator());
}

void CombinedCallout2D::AddMember(const du::SmartPtr<Callout2D>& member) {
  if (!member) return;
  const dp::MutexGuard guard(membersMutex_);
  members_.push_back(member);
}

std::vector<du::SmartPtr<Callout2D>> CombinedCallout2D::GetMembers() const {
  const dp::MutexGuard guard(membersMutex_);
  return members_;
}

void CombinedCallout2D::SetSeparator(const std::string& separator) {
  const dp::MutexGuard guard(membersMutex_);
  separator_ = separator;
}

std::string CombinedCallout2D::GetSeparator() const {
  const dp::MutexGuard guard(membersMutex_);
  return separator_;
}

}  // namespace zrannotations

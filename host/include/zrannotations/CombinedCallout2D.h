#pragma once

#include <functional>
#include <string>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/illustration2d/Callout2D.h>

namespace zrannotations {

/// Several 2D callouts shown as one label. [any-thread]
class ZR_HOST_API CombinedCallout2D final : public zrk::illustration2d::Callout2D {
public:
  using MemberLabel = std::function<std::string(const du::SmartPtr<zrk::illustration2d::Callout2D>&)>;

  CombinedCallout2D();
  ~CombinedCallout2D() override;

  /// Calls `member` once for each member, in order, and joins the non-empty results with the separator. No host lock
  /// is held during the calls. Empty without a callout.
  [[nodiscard]] static std::string GenerateLabelString(const du::SmartPtr<CombinedCallout2D>& combined,
                                                       const MemberLabel& member);
  /// Appends; null changes nothing.
  void AddMember(const du::SmartPtr<zrk::illustration2d::Callout2D>& member);
  [[nodiscard]] std::vector<du::SmartPtr<zrk::illustration2d::Callout2D>> GetMembers() const;
  /// Between the members' labels; a line feed at first.
  void SetSeparator(const std::string& separator);
  [[nodiscard]] std::string GetSeparator() const;

private:
  mutable dp::Mutex membersMutex_;
  std::vector<du::SmartPtr<zrk::illustration2d::Callout2D>> members_ ZR_GUARDED_BY(membersMutex_);
  std::string separator_ ZR_GUARDED_BY(membersMutex_) = "\n";
};

}  // namespace zrannotations

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>

namespace zrannotations {

/// Several callouts shown as one label, each with an item number of its own. Its leaders are its own too and stand for
/// those of the first member; the members are in no annotation set, they share the scene of the combined callout.
class ZR_HOST_API CombinedCallout final : public Callout {
public:
  using MemberLabel = std::function<std::string(const du::SmartPtr<Callout>&)>;

  CombinedCallout();
  ~CombinedCallout() override;

  /// The members themselves, to be changed in place by whoever serialises access to the callout.
  [[nodiscard]] std::vector<du::SmartPtr<Callout>>& GetCalloutVec();
  [[nodiscard]] unsigned GetCount() const;
  /// Takes out the first member that carries the item and returns it; null when none does. When it led, the callout
  /// stands on the leaders of the next one.
  du::SmartPtr<Callout> RemoveItemId(std::uint32_t itemId);
  /// Replaces the callout's own leaders by copies of the first member's; nothing without members.
  void UpdateLeaderLine();
  /// Makes the members point at this callout, at its scene and at its subset scene again.
  void ReattachChildren();
  /// Calls `member` once for each member, in order, and joins the non-empty results with the separator. No host lock
  /// is held during the calls. Empty without a callout.
  [[nodiscard]] static std::string GenerateLabelString(const du::SmartPtr<CombinedCallout>& combined,
                                                       const MemberLabel& member);
  /// The first member's item number.
  [[nodiscard]] bool GetItemId(std::uint32_t& itemId) const override;
  /// Whether any member has one.
  [[nodiscard]] bool HasItemId() const override;
  /// Whether any member carries it.
  [[nodiscard]] bool CarriesItemId(std::uint32_t itemId) const override;
  [[nodiscard]] bool IsCompoundCallout() const override;

  /// Appends a member; null and a member already there change nothing.
  void AddMember(const du::SmartPtr<Callout>& member);
  /// Between the members' labels; a line feed at first.
  void SetSeparator(const std::string& separator);
  [[nodiscard]] std::string GetSeparator() const;

  [[nodiscard]] CalloutSnapshot TakeSnapshot() const override;
  void RestoreSnapshot(const CalloutSnapshot& snapshot, std::int32_t aspects) override;

protected:
  [[nodiscard]] LeaderVector GetFollowingLeaders() const override;

private:
  using MemberVector = std::vector<du::SmartPtr<Callout>>;
  [[nodiscard]] MemberVector GetMembers() const;

  mutable dp::Mutex membersMutex_;
  // Not declared as guarded: GetCalloutVec hands it out.
  MemberVector members_;
  std::string separator_ ZR_GUARDED_BY(membersMutex_) = "\n";
  const ParentLink ownLink_;
};

}  // namespace zrannotations

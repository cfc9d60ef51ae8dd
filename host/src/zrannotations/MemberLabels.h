#pragma once

#include <functional>
#include <string>
#include <vector>

#include <du/SmartPtr.h>

namespace zrannotations {

/// Calls `label` once for each member, in order, and joins the non-empty results.
template <class T>
[[nodiscard]] std::string JoinMemberLabels(const std::vector<du::SmartPtr<T>>& members,
                                           const std::function<std::string(const du::SmartPtr<T>&)>& label,
                                           const std::string& separator) {
  std::string joined;
  for (const du::SmartPtr<T>& member : members) {
    const std::string text = label ? label(member) : std::string();
    if (!text.empty()) joined += (joined.empty() ? std::string() : separator) + text;
  }
  return joined;
}

}  // namespace zrannotations

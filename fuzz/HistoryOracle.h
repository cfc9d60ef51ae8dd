#pragma once

#include <optional>
#include <string>
#include <vector>

#include "HostCall.h"

namespace zrfuzz {

/// Name of operations that do not restore everything: anchors stand where the view shows their parts at that time.
constexpr const char* kInexact = "inexact";

/// Knows what state undo and redo must come back to. Forgets all of it whenever something changes that is nobody's to
/// undo; from then on it learns again from what the history itself comes to: steps restore stored values, so the second
/// visit must find what the first one found.
class HistoryOracle {
public:
  explicit HistoryOracle(const LiveScene& live);

  /// Compares the scene after a call of that effect. \return what is wrong; empty when nothing is.
  [[nodiscard]] std::string Compare(HostCall::Effect effect);

private:
  void Forget();
  [[nodiscard]] std::string CompareRecorded(const std::string& before);
  [[nodiscard]] std::string CompareVisit(std::size_t place, const std::string& operation);

  const LiveScene& live_;
  std::vector<std::optional<std::string>> states_;  ///< By the number of operations done; the present one included.
  std::size_t at_ = 0;
  std::string now_;
  std::string last_;  ///< Name of the operation that undo would take back.
};

/// The first line in which two states differ.
[[nodiscard]] std::string FirstDifference(const std::string& expected, const std::string& actual);

}  // namespace zrfuzz

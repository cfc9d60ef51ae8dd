#pragma once

#include <string>

#include <du/Export.h>

namespace du {

/// Interned text: two symbols are equal when they name the same entry of a table that only grows. [any-thread]
class ZR_HOST_API Symbol {
public:
  /// The empty symbol, equal to Symbol("").
  constexpr Symbol() noexcept = default;
  /// A null text is the empty symbol.
  Symbol(const char* text);
  Symbol(const std::string& text);

  /// The empty symbol; constant-initialised, hence usable during static initialisation.
  static const Symbol EMPTY;

  [[nodiscard]] const std::string& GetString() const;
  [[nodiscard]] bool IsEmpty() const noexcept { return entry_ == nullptr; }

  friend bool operator==(const Symbol& left, const Symbol& right) noexcept { return left.entry_ == right.entry_; }
  friend bool operator!=(const Symbol& left, const Symbol& right) noexcept { return left.entry_ != right.entry_; }
  /// Order by text, so that walks over ordered containers do not depend on addresses.
  friend bool operator<(const Symbol& left, const Symbol& right) noexcept {
    return left.entry_ != right.entry_ && left.GetString() < right.GetString();
  }

private:
  const std::string* entry_ = nullptr;
};

}  // namespace du

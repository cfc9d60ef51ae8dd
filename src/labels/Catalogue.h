#pragma once
// The component's texts that a user sees, by their numbers in the host's message catalogue.

#include <string>

namespace zrcallouts {

inline constexpr const char* kCatalogue = "zrbase:zrmodulesStrings";
inline constexpr const char* kCreateCalloutsMessage = "142";
inline constexpr const char* kPredefinedTextMessage = "850";
inline constexpr const char* kDefaultPropertyGroupMessage = "3206";

/// The message in the current language; empty when the catalogue does not have it.
[[nodiscard]] std::string CatalogueText(const char* message);

}  // namespace zrcallouts

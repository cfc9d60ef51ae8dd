#pragma once
// Template texts as patterns for translators: literals as they stand, each property a numbered placeholder, and back.

#include <string>
#include <vector>

#include <du/SmartPtr.h>

namespace zrk::illustration {
class LabelContent;
}

namespace zrcallouts {

using LabelContents = std::vector<du::SmartPtr<zrk::illustration::LabelContent>>;

/// Writes the pattern of `contents`, properties numbered from 0 in content order; true when there is a literal piece.
bool MakePattern(const LabelContents& contents, std::string& pattern);

/// Appends to `localized` the content list that `pattern` describes over the properties of `contents`. Placeholders
/// that name no property vanish. Does nothing when `contents` is empty.
void ReadPattern(const std::string& pattern, const LabelContents& contents, LabelContents& localized);

}  // namespace zrcallouts

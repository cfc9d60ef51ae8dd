#pragma once
// One picture's callouts: created, arranged and numbered in a host session of its own.

#include <map>
#include <vector>

#include "commands/AnchorChoice.h"
#include "commands/HostSession.h"
#include "commands/PinnedLabels.h"

namespace zrfigure {

/// What a run works on; the host process must be there, with the component loaded.
struct PictureRequest {
  const OccurrenceTree& tree;
  const Options& options;
  const TemplateDefinition& definition;
  const std::vector<PlannedRow>& rows;
  const TextMeasure& text;
  const Picture& picture;
  const PictureCallouts& callouts;
  const std::vector<PinnedLabel>& pins;  ///< Of all pictures.
};

/// What a run left in the host, as plain values.
struct PictureResult {
  std::vector<CalloutState> callouts;
  std::vector<ItemState> items;
  RunSeconds seconds;
  int movedPins = 0;  ///< Pinned labels that could not stay where they stood.
};

/// Runs a picture. Pinned labels are placed first and the others round them; those that cross, cover or leave what they
/// should not are let go. \param order items numbered so far, in order: goes on where it ends, when numbers run
/// clockwise. \throws CommandFailure.
[[nodiscard]] PictureResult RunPicture(const PictureRequest& request, std::vector<unsigned>& order);

}  // namespace zrfigure

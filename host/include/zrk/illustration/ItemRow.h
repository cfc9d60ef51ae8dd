#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <du/SmartPtr.h>
#include <zrk/illustration/SbomInstance.h>

namespace zrk::illustration {

/// What a row of an items list shows and how it is ordered.
struct ItemValues {
  std::string label;
  unsigned quantity = 0;
  std::string tag;
  bool itemized = true;
  unsigned index = 0;                        ///< flat position, counted from 1
  std::vector<std::uint32_t> hierarchyPath;  ///< outermost first; empty when none is set

  friend bool operator==(const ItemValues&, const ItemValues&) = default;
};

/// A row of an items list.
struct ItemRow {
  unsigned id = 0;
  ItemValues values;
  bool indicated = false;
  bool addedByHand = false;
  std::set<du::SmartPtr<SbomInstance>> instances;

  friend bool operator==(const ItemRow&, const ItemRow&) = default;
};

/// What adding an instance did: which row took it, and the quantity before and after.
struct ItemInstanceChange {
  unsigned itemId = 0;
  bool rowCreated = false;
  bool changed = false;  ///< false when the instance had a row already
  unsigned quantityBefore = 0;
  unsigned quantityAfter = 0;
};

}  // namespace zrk::illustration

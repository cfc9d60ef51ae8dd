#pragma once

#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk {

/// How a view would be printed; kinds of views derive theirs from it.
class ZR_HOST_API PrintPreview : public Object {
public:
  PrintPreview();
  ~PrintPreview() override;
};

}  // namespace zrk

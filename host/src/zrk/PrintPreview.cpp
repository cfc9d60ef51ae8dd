#include <zrk/PrintPreview.h>

namespace zrk {

PrintPreview::PrintPreview() = default;

PrintPreview::~PrintPreview() = default;

}  // namespace zrk

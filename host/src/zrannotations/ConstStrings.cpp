#include <zrannotations/ConstStrings.h>

namespace zrannotations {

const char* const ConstStrings::zrSymbol3D = "zrSymbol3D";
const char* const ConstStrings::zrCalloutLabel = "zrCalloutLabel";
const char* const ConstStrings::zrInset = "zrInset";

}  // namespace zrannotations

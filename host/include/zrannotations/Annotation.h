#pragma once

#include <zrk/Annotation.h>

namespace zrannotations {

using Annotation = zrk::Annotation;

}  // namespace zrannotations

#pragma once
// The two ray queries of Embree in one spelling: version 3 wants a context a query, version 4 none.

#if __has_include(<embree4/rtcore.h>)
#include <embree4/rtcore.h>
#else
#include <embree3/rtcore.h>
#endif

namespace zrfigure {

inline void IntersectRay(RTCScene scene, RTCRayHit& query) {
#if RTC_VERSION_MAJOR >= 4
  rtcIntersect1(scene, &query);
#else
  RTCIntersectContext context;
  rtcInitIntersectContext(&context);
  rtcIntersect1(scene, &context, &query);
#endif
}

inline void OccludeRay(RTCScene scene, RTCRay& ray) {
#if RTC_VERSION_MAJOR >= 4
  rtcOccluded1(scene, &ray);
#else
  RTCIntersectContext context;
  rtcInitIntersectContext(&context);
  rtcOccluded1(scene, &context, &ray);
#endif
}

}  // namespace zrfigure

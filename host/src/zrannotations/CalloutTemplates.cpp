#include <zrannotations/CalloutTemplates.h>

#include <algorithm>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrannotations {

namespace {

using TemplateVector = std::vector<du::SmartPtr<zrk::illustration::TAnnotation>>;

struct TemplateList {
  dp::Mutex mutex;
  TemplateVector templates ZR_GUARDED_BY(mutex);
};

TemplateList& GetList() {
  static TemplateList list;
  return list;
}

}  // namespace

void GetCalloutTemplates(TemplateVector& templates, bool, bool) {
  TemplateList& list = GetList();
  const dp::MutexGuard guard(list.mutex);
  templates.insert(templates.end(), list.templates.begin(), list.templates.end());
}

void AddCalloutTemplate(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate) {
  if (!callouttemplate) return;
  TemplateList& list = GetList();
  const dp::MutexGuard guard(list.mutex);
  const bool isKnown = std::find(list.templates.begin(), list.templates.end(), callouttemplate) != list.templates.end();
  if (!isKnown) list.templates.push_back(callouttemplate);
}

void ClearCalloutTemplates() {
  TemplateVector released;
  TemplateList& list = GetList();
  const dp::MutexGuard guard(list.mutex);
  list.templates.swap(released);
}

}  // namespace zrannotations

#include <du/Tracer.h>

#include <cstdarg>
#include <cstdio>
#include <deque>
#include <new>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>

namespace du {

namespace {

constexpr std::size_t kMaxEntries = 10000;

struct Log {
  dp::Mutex mutex;
  std::deque<Tracer::Entry> entries ZR_GUARDED_BY(mutex);
};

Log& GetLog() {
  static Log* log = new Log;
  return *log;
}

__attribute__((format(printf, 1, 0))) std::string Format(const char* format, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  if (length > 0) std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  return text;
}

void Append(Tracer::Entry entry) {
  Log& log = GetLog();
  const dp::MutexGuard guard(log.mutex);
  if (log.entries.size() == kMaxEntries) log.entries.pop_front();
  log.entries.push_back(std::move(entry));
}

}  // namespace

void Tracer::Trace(int level, const char* module, const char* category, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  // Called where failures are handled, so a trace must not be another one.
  try {
    Append({level, module, category, Format(format, arguments)});
  } catch (const std::bad_alloc&) {
  }
  va_end(arguments);
}

std::vector<Tracer::Entry> Tracer::TakeEntries() {
  Log& log = GetLog();
  const dp::MutexGuard guard(log.mutex);
  std::vector<Entry> result(log.entries.begin(), log.entries.end());
  log.entries.clear();
  return result;
}

}  // namespace du

#include <zrk/ReadWriteLock.h>

namespace zrk {

ReadWriteLock::ReadWriteLock() = default;

ReadWriteLock::~ReadWriteLock() = default;

}  // namespace zrk

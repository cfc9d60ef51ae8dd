#include <du/Task.h>

namespace du {

Task::Task(unsigned priority) : priority_(priority) {}

Task::~Task() = default;

}  // namespace du

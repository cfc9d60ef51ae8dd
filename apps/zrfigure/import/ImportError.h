#pragma once
// The exception that carries a reason for the user through this folder. It ends at ImportProcess.h's ImportModel().

#include <stdexcept>

namespace zrfigure {

/// Why a file cannot be read, worded to stand behind "cannot read 'FILE': ".
class ImportError final : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

}  // namespace zrfigure

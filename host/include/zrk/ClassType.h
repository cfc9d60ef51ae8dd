#pragma once

#include <du/Export.h>

namespace zrk {

/// Run-time record of a class: a static object of the program or of a plug-in library that registers itself by name
/// and leaves the register when it is destroyed. [any-thread]
class ZR_HOST_API ClassType {
public:
  /// `name` must outlive the record. `base` is the record of the base class, null for a root.
  ClassType(const char* name, const ClassType* base);
  ~ClassType();
  ClassType(const ClassType&) = delete;
  ClassType& operator=(const ClassType&) = delete;

  [[nodiscard]] const char* GetName() const;
  /// Unique in the process, never 0.
  [[nodiscard]] unsigned GetId() const;
  [[nodiscard]] const ClassType* GetBase() const;
  /// The record registered under that name, the first one when there are several; null when there is none.
  [[nodiscard]] static const ClassType* Find(const char* name);

private:
  const char* name_;
  const ClassType* base_;
  const unsigned id_;
};

}  // namespace zrk

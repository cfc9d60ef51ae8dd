#pragma once

#include <cstddef>
#include <string>

#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk {

/// A component definition. Instances of one component share the node; its identity is what counts. Allocated at
/// ascending addresses, so that the order of addresses is the order of creation.
class ZR_HOST_API ComponentNode : public Object {
public:
  static void* operator new(std::size_t size) noexcept;
  static void operator delete(void* memory) noexcept;

  explicit ComponentNode(const std::string& name);
  ~ComponentNode() override;

  [[nodiscard]] const std::string& GetName() const;
  [[nodiscard]] std::string GetObjectName() const override;

private:
  const std::string name_;
};

}  // namespace zrk

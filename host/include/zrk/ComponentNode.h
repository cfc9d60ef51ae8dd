#pragma once

#include <string>

#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk {

/// A component definition. Instances of one component share the node; its identity is what counts.
class ZR_HOST_API ComponentNode : public Object {
public:
  explicit ComponentNode(const std::string& name);
  ~ComponentNode() override;

  [[nodiscard]] const std::string& GetName() const;
  [[nodiscard]] std::string GetObjectName() const override;

private:
  const std::string name_;
};

}  // namespace zrk

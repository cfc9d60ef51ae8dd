#pragma once

#include <atomic>
#include <cstddef>
#include <string>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/BackLink.h>
#include <zrk/BaseInstance.h>
#include <zrk/PropertyTable.h>

namespace zrk {

class ComponentInstance;
class ComponentNode;
namespace illustration {
class SbomInstance;
}

/// A design-side occurrence of a component, or a 3D symbol. It keeps its parent alive and has no list of children.
/// Allocated at ascending addresses, so that the order of addresses is the order of creation.
class ZR_HOST_API Instance : public BaseInstance {
public:
  /// An occurrence of `node` below `parent`; a null parent makes it the root of its container.
  Instance(const du::SmartPtr<ComponentNode>& node, const du::SmartPtr<Instance>& parent, const std::string& name);
  /// A 3D symbol below `parent`; its id is "/" followed by the component's id.
  Instance(const du::SmartPtr<ComponentInstance>& symbol, const du::SmartPtr<Instance>& parent);
  ~Instance() override;

  static void* operator new(std::size_t size) noexcept;
  static void operator delete(void* memory) noexcept;

  /// The structure-side occurrence bound to this one by its tree; null when there is none or it is gone.
  [[nodiscard]] du::SmartPtr<illustration::SbomInstance> GetSbomInstance() const;
  /// The topmost instance above this one; the instance itself when it has no parent.
  [[nodiscard]] du::SmartPtr<Instance> GetRootContainerRoot() const;
  [[nodiscard]] du::SmartPtr<Instance> GetParent() const;
  /// Null for a 3D symbol and when none was given.
  [[nodiscard]] du::SmartPtr<ComponentNode> GetComponentNode() const;
  [[nodiscard]] bool Is3dSymbol() const;
  /// Null unless the instance is a 3D symbol.
  [[nodiscard]] du::SmartPtr<ComponentInstance> GetComponentInstance() const;
  [[nodiscard]] const std::string& GetName() const;

  [[nodiscard]] du::Symbol GetId() const override;
  [[nodiscard]] unsigned GetDepth() const override;
  [[nodiscard]] bool HasChildren() const override;
  [[nodiscard]] du::SmartPtr<Property> GetProperty(const du::Symbol& group, const du::Symbol& name,
                                                   const du::Symbol& shapeSource = du::Symbol::EMPTY) const override;
  [[nodiscard]] std::string GetObjectName() const override;

  /// Design-side properties, apart from those of the bound structure-side occurrence.
  [[nodiscard]] PropertyTable& GetProperties();

private:
  friend class illustration::SbomInstance;

  const du::SmartPtr<ComponentNode> node_;
  const du::SmartPtr<ComponentInstance> symbol_;
  const du::SmartPtr<Instance> parent_;
  const std::string name_;
  const du::Symbol id_;
  const unsigned depth_;
  std::atomic<unsigned> childCount_{0};
  BackLink<illustration::SbomInstance> sbomInstance_;
  PropertyTable properties_;
};

}  // namespace zrk

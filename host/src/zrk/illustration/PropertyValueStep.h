#pragma once

#include <optional>

#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration/SceneEdit.h>

namespace zrk::illustration {

class SbomTree;

/// A property value of an instance before and after; nothing stands for no value.
class PropertyValueStep final : public OperationStep {
public:
  using Value = std::optional<du::Symbol>;

  /// Takes the present value as the one before; Redo stores `after`.
  PropertyValueStep(const du::SmartPtr<SbomTree>& tree, const du::SmartPtr<SbomInstance>& instance,
                    const SceneEdit::PropertyPlace& place, const Value& after);
  ~PropertyValueStep() override;

  void Undo() override;
  void Redo() override;
  [[nodiscard]] bool ChangesAnything() const;

private:
  void Store(const Value& value);

  const du::SmartPtr<SbomTree> tree_;
  const du::SmartPtr<SbomInstance> instance_;
  const SceneEdit::PropertyPlace place_;
  const Value before_;
  const Value after_;
};

}  // namespace zrk::illustration

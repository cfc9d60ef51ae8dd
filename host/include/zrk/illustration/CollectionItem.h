#pragma once

#include <string>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk::illustration {

/// A named entry of a template collection.
class ZR_HOST_API CollectionItem : public Object {
public:
  CollectionItem();
  ~CollectionItem() override;

  [[nodiscard]] std::string GetName() const;
  void SetName(const std::string& name);
  [[nodiscard]] std::string GetObjectName() const override;

private:
  mutable dp::Mutex nameMutex_;
  std::string name_ ZR_GUARDED_BY(nameMutex_);
};

}  // namespace zrk::illustration

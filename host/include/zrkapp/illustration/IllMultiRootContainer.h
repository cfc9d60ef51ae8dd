#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/MultiRootContainer.h>

namespace zrkapp::illustration {

class FileInfo;

/// The application's container of an illustration file.
class ZR_HOST_API IllMultiRootContainer : public zrk::MultiRootContainer {
public:
  IllMultiRootContainer();
  ~IllMultiRootContainer() override;

  [[nodiscard]] du::SmartPtr<FileInfo> GetFileInfo() const;

private:
  const du::SmartPtr<FileInfo> fileInfo_;
};

}  // namespace zrkapp::illustration

#include <zrkapp/illustration/IllMultiRootContainer.h>

#include <zrk/MakeObject.h>
#include <zrkapp/illustration/FileInfo.h>

namespace zrkapp::illustration {

IllMultiRootContainer::IllMultiRootContainer() : fileInfo_(zrk::MakeObject<FileInfo>()) {}

IllMultiRootContainer::~IllMultiRootContainer() = default;

du::SmartPtr<FileInfo> IllMultiRootContainer::GetFileInfo() const {
  return fileInfo_;
}

}  // namespace zrkapp::illustration

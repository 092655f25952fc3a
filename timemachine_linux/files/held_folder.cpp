#include "timemachine_linux/files/held_folder.h"

#include "platform/linux/files/file_status.h"

namespace norvane {

bool HeldFolder::isInPlace() const { return isSameFile(fileStatus(folder.get()), fileStatus(path)); }

} // namespace norvane

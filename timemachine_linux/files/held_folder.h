// Whether a folder is still the one that was opened, by its name.
#pragma once

#include <string>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

struct HeldFolder {
    std::string path;
    FileDescriptor folder; ///< Opened at that path.

    /// False: it has been renamed or removed. A snapshot that keeps its name is whole.
    [[nodiscard]] bool isInPlace() const;
};

} // namespace norvane

// The labels of file systems, from the links that udev keeps: udev(7), "ID_FS_LABEL_ENC".
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace norvane {

/// The label of the file system on the device, by the folder of links named after labels
/// (/dev/disk/by-label); none when no link leads to the device.
[[nodiscard]] std::optional<std::string> volumeLabel(const std::string& linksFolder,
                                                     const std::string& device);

/// The name of such a link with "\x20" and the like as the bytes that they stand for.
[[nodiscard]] std::string decodedLabel(std::string_view linkName);

} // namespace norvane

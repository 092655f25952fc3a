#include "platform/linux/files/volume_label.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

namespace norvane {

namespace fs = std::filesystem;

std::optional<std::string> volumeLabel(const std::string& linksFolder, const std::string& device) {
    std::error_code error;
    const fs::path wanted = fs::canonical(device, error); // device-mapper names are links as well
    if (error)
        return std::nullopt;
    for (fs::directory_iterator link(linksFolder, error); !error && link != fs::directory_iterator();
         link.increment(error)) {
        std::error_code broken;
        if (fs::canonical(link->path(), broken) == wanted)
            return decodedLabel(link->path().filename().string());
    }
    return std::nullopt;
}

std::string decodedLabel(std::string_view linkName) {
    constexpr std::string_view escape = "\\x";
    constexpr std::size_t escapeLength = 4;
    std::string label;
    while (!linkName.empty()) {
        unsigned char byte = 0;
        const std::string_view digits = linkName.substr(std::min(escape.size(), linkName.size()), 2);
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        const bool escaped = linkName.starts_with(escape) && read.ec == std::errc() &&
                             read.ptr == linkName.data() + escapeLength;
        label += escaped ? static_cast<char>(byte) : linkName.front();
        linkName.remove_prefix(escaped ? escapeLength : 1);
    }
    return label;
}

} // namespace norvane

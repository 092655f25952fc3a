#include "platform/linux/files/volume_label.h"

#include <filesystem>
#include <system_error>

#include "platform/text/escapes.h"

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

std::string decodedLabel(std::string_view linkName) { return withoutEscapes(linkName, "\\x", 2, 16); }

} // namespace norvane

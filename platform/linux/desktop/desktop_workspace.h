// Opening URLs and folders with the desktop's programs.
#pragma once

#include <string>

#include "platform/workspace.h"

namespace norvane {

/// A program of our own that opens the URLs of a scheme. It gets the URL as its only argument.
struct OwnUrlHandler {
    std::string scheme;
    std::string program; ///< Absolute.
};

class DesktopWorkspace final : public Workspace {
public:
    explicit DesktopWorkspace(OwnUrlHandler own = {});

    void openUrl(const std::string& url) override;
    /// Asks org.freedesktop.FileManager1 (freedesktop.org File Manager D-Bus Interface); opens the folder
    /// where nobody answers that.
    void revealFile(const std::string& path) override;

private:
    const OwnUrlHandler own_;
};

} // namespace norvane

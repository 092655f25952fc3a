// Handing things over to the desktop.
#pragma once

#include <string>

namespace norvane {

class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens the URL with the program registered for it. Main thread; failure is silent.
    virtual void openUrl(const std::string& url) = 0;

    /// Shows the file (an absolute path), selected, in the file manager, or at least its folder. Main thread;
    /// does not wait, and failure is silent.
    virtual void revealFile(const std::string& path) = 0;
};

} // namespace norvane

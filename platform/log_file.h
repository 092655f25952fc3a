// The file behind the event log.
#pragma once

#include <string_view>

namespace norvane {

class LogFile {
public:
    virtual ~LogFile() = default;

    /// Adds the bytes at the file's end, creating the file if need be. Failure is silent: the bytes are lost.
    virtual void append(std::string_view bytes) = 0;
};

} // namespace norvane

// Handing a prepared message to the user's mail program.
#pragma once

#include <string>

namespace norvane {

/// All texts UTF-8.
struct Email {
    std::string recipient; ///< One address.
    std::string subject;
    std::string body;
    std::string attachment; ///< Path of a file.
};

class EmailComposer {
public:
    virtual ~EmailComposer() = default;

    /// Opens the message for the user to edit and to send, or not. Main thread; does not wait. Nothing tells
    /// what becomes of it; without a mail program, or without the file, nothing happens.
    virtual void compose(const Email& email) = 0;
};

} // namespace norvane

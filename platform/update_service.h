// Looking for newer versions of this program.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace norvane {

struct UpdateResult {
    enum class Kind {
        unreachable, ///< Nobody answered, or not as the one who was asked.
        unreadable,  ///< The answer tells of no version.
        upToDate,
        available,
    };

    Kind kind = Kind::unreachable;
    std::string version = {}; ///< Of an available update: "1.10.0".
    std::string page = {};    ///< Of an available update: where users get it; an https URL.

    bool operator==(const UpdateResult&) const = default;
};

/// Where results go: that of every check that the user asked for, and of an automatic one when there is an
/// update.
using TellUpdate = std::function<void(const UpdateResult& result, bool askedByUser)>;

/// Main thread only. Nothing is installed, nor downloaded for it.
class UpdateService {
public:
    /// Destroying it ends the observation.
    class Observation {
    public:
        virtual ~Observation() = default;
    };

    virtual ~UpdateService() = default;

    /// From now on checks are possible, and automatic ones happen. Once.
    virtual void start() = 0;

    /// A setting of the user's, kept across runs.
    [[nodiscard]] virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;

    /// False before the start, during a check, and always where this build does not know whom to ask.
    [[nodiscard]] virtual bool canCheckForUpdates() const = 0;
    /// Calls `observer` with the present value at once, and with every new one for as long as the result
    /// lives.
    [[nodiscard]] virtual std::unique_ptr<Observation>
    observeCanCheckForUpdates(std::function<void(bool)> observer) = 0;

    /// Checks now, at the user's wish; nothing happens when that is not possible.
    virtual void checkForUpdates() = 0;
};

} // namespace norvane

// One instance of the program at a time: which of several stays.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace norvane {

/// The running instances of this program, as the session knows them.
class ProgramInstances {
public:
    virtual ~ProgramInstances() = default;

    /// False: the session gives programs no identity, so nothing can be told of others.
    [[nodiscard]] virtual bool identified() const = 0;
    [[nodiscard]] virtual std::int64_t ownProcessId() const = 0;
    /// Process ids of the other instances that run now.
    [[nodiscard]] virtual std::vector<std::int64_t> others() const = 0;
    /// Brings the other instance to the front. False: it does not answer.
    virtual bool activate(std::int64_t processId) = 0;
};

struct OlderInstance {
    std::int64_t processId = 0;
    bool answers = true;

    bool operator==(const OlderInstance&) const = default;
};

/// Waits up to 2 s for other instances to go away. None: this one may run. Else an older one, which was
/// activated: this process must end with status 0. `sleep` blocks for the seconds given.
[[nodiscard]] std::optional<OlderInstance> olderInstance(ProgramInstances& instances,
                                                         const std::function<void(double)>& sleep);

} // namespace norvane

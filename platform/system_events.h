// What the system tells a running program.
#pragma once

#include <functional>
#include <memory>

namespace norvane {

struct SystemEventHandlers {
    std::function<void()> didWake;            ///< The machine woke from sleep.
    std::function<void()> clockChanged;       ///< The wall clock was set.
    std::function<void()> accentColorChanged; ///< The desktop's accent colour changed.
};

class SystemEvents {
public:
    /// Destroying it ends the observation.
    class Observation {
    public:
        virtual ~Observation() = default;
    };

    virtual ~SystemEvents() = default;

    /// Calls the handlers on the main thread, as the events come, for as long as the result lives.
    [[nodiscard]] virtual std::unique_ptr<Observation> observe(SystemEventHandlers handlers) = 0;
};

} // namespace norvane

// Telling those who asked for it that something has changed.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace norvane {

/// Main thread only. Observers may come and go at any time, also while they are told.
class Observers {
public:
    /// Destroying it ends the subscription, also after the Observers are gone.
    struct Subscription {
        std::shared_ptr<const std::function<void()>> observer;
    };

    [[nodiscard]] std::unique_ptr<Subscription> add(std::function<void()> observer) {
        auto shared = std::make_shared<const std::function<void()>>(std::move(observer));
        observers_.push_back(shared);
        return std::make_unique<Subscription>(Subscription{std::move(shared)});
    }

    void notify() {
        std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
        const auto observers = observers_;
        for (const auto& entry : observers)
            if (const auto observer = entry.lock())
                (*observer)();
    }

private:
    std::vector<std::weak_ptr<const std::function<void()>>> observers_;
};

} // namespace norvane

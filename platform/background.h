// The one road off the main thread and back.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace norvane {

/// Where blocking work runs.
class Background {
public:
    using Completion = std::function<void()>;

    virtual ~Background() = default;

    /// Runs `work` on some other thread, then the completion that it returned on the main thread. Returns at
    /// once. Works posted one after another may run at the same time and end in any order.
    virtual void post(std::function<Completion()> work) = 0;
};

/// A member of an object that starts background work. Results of that work are dropped once the object, and
/// this member with it, is gone. Main thread only. Neither copied nor moved: it stands for one object's life.
class Lifetime {
public:
    Lifetime() : token_(std::make_shared<char>()) {}
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    [[nodiscard]] std::weak_ptr<void> watch() const { return token_; }

private:
    std::shared_ptr<char> token_;
};

/// Runs `work` off the main thread and hands its result to `deliver` on the main thread, if `owner` still
/// lives then. `work` must capture values and things that outlive every worker; `deliver` may capture the
/// owner.
template <class Work, class Deliver>
void runInBackground(Background& background, const Lifetime& owner, Work work, Deliver deliver) {
    background.post([work = std::move(work), deliver = std::move(deliver),
                     owner = owner.watch()]() mutable -> Background::Completion {
        using Result = std::invoke_result_t<Work>;
        auto result = std::make_shared<Result>(work());
        return
            [result = std::move(result), deliver = std::move(deliver), owner = std::move(owner)]() mutable {
                if (owner.lock())
                    deliver(std::move(*result));
            };
    });
}

} // namespace norvane

#include "platform/linux/measurements/pulse_recording.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <pulse/pulseaudio.h>
#include <set>
#include <vector>

namespace norvane {

namespace {

using SteadyClock = std::chrono::steady_clock;

struct Told {
    std::set<std::uint32_t> microphones; ///< Sources that are no loudspeaker's monitor.
    std::vector<std::uint32_t> recorded; ///< The sources of running recordings.
    int endedLists = 0;
};

void takeSource(pa_context*, const pa_source_info* source, int end, void* data) {
    auto& told = *static_cast<Told*>(data);
    if (end != 0)
        ++told.endedLists;
    else if (source->monitor_of_sink == PA_INVALID_INDEX)
        told.microphones.insert(source->index);
}

void takeRecording(pa_context*, const pa_source_output_info* recording, int end, void* data) {
    auto& told = *static_cast<Told*>(data);
    if (end != 0)
        ++told.endedLists;
    else if (recording->corked == 0)
        told.recorded.push_back(recording->source);
}

/// False: the time is over, or the connection failed.
bool iterate(pa_mainloop* loop, SteadyClock::time_point end) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - SteadyClock::now());
    return left.count() > 0 && pa_mainloop_prepare(loop, static_cast<int>(left.count())) >= 0 &&
           pa_mainloop_poll(loop) >= 0 && pa_mainloop_dispatch(loop) >= 0;
}

bool connected(pa_context* context, pa_mainloop* loop, SteadyClock::time_point end) {
    if (pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        return false;
    while (PA_CONTEXT_IS_GOOD(pa_context_get_state(context))) {
        if (pa_context_get_state(context) == PA_CONTEXT_READY)
            return true;
        if (!iterate(loop, end))
            return false;
    }
    return false;
}

} // namespace

bool pulseRecordsMicrophone(std::chrono::milliseconds limit) {
    const auto end = SteadyClock::now() + limit;
    const std::unique_ptr<pa_mainloop, decltype(&pa_mainloop_free)> loop(pa_mainloop_new(), pa_mainloop_free);
    if (!loop)
        return false;
    Told told; // outlives the context, which may still call back when it goes
    const std::unique_ptr<pa_context, decltype(&pa_context_unref)> context(
        pa_context_new(pa_mainloop_get_api(loop.get()), "Norvane"), pa_context_unref);
    if (!context)
        return false;
    if (connected(context.get(), loop.get(), end)) {
        const auto release = [](pa_operation* operation) {
            if (operation)
                pa_operation_unref(operation);
        };
        release(pa_context_get_source_info_list(context.get(), takeSource, &told));
        release(pa_context_get_source_output_info_list(context.get(), takeRecording, &told));
        while (told.endedLists < 2 && iterate(loop.get(), end)) {
        }
    }
    pa_context_disconnect(context.get());
    return told.endedLists == 2 &&
           std::any_of(told.recorded.begin(), told.recorded.end(),
                       [&](std::uint32_t source) { return told.microphones.contains(source); });
}

} // namespace norvane

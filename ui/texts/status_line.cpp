#include "ui/texts/status_line.h"

namespace norvane {

namespace {

Tint dotOf(const ControllerState& state) {
    if (state.status.running)
        return Tint::accent;
    if (state.pausedUntil)
        return Tint::yellow;
    return state.nextFire ? Tint::green : Tint::secondary;
}

} // namespace

StatusLine statusLine(const ControllerState& state, Instant now, const Formats& formats,
                      const Translator& texts) {
    StatusLine line{dotOf(state), {}, {}};
    if (state.status.running) {
        line.text = texts.translate("Backing up now…");
    } else if (state.pausedUntil) {
        line.text = texts.translate("Paused until ") + formats.shortTime(*state.pausedUntil);
    } else if (!state.nextFire) {
        line.text = texts.translate("No backup scheduled");
    } else {
        line.text = texts.translate("Next backup: ") + fireDateText(*state.nextFire, now, formats) + " (" +
                    formats.relativeTime(*state.nextFire, now) + ")";
        if (state.deferredFrom && state.deferredFrom != state.nextFire)
            line.deferral = texts.translate("  · deferred by a blackout");
    }
    return line;
}

std::string fireDateText(Instant instant, Instant now, const Formats& formats) {
    constexpr double dateNeededFrom = 72'000;
    return secondsBetween(now, instant) < dateNeededFrom ? formats.shortTime(instant)
                                                         : formats.dateAndTime(instant);
}

} // namespace norvane

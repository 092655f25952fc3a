#include "ui/panel/panel_content.h"

#include <algorithm>
#include <cmath>

#include "platform/text/letter_case.h"
#include "platform/text/utf8.h"
#include "ui/texts/health_verdict.h"
#include "ui/texts/schedule_summary.h"
#include "ui/texts/status_line.h"

namespace norvane {

namespace {

/// Makes the texts of one moment.
class Writer {
public:
    Writer(const ControllerState& state, Instant now, const Formats& formats, const Translator& texts,
           TimeGrain grain)
        : state_(state), now_(now), formats_(formats), texts_(texts), grain_(grain) {}

    PanelContent write() const {
        PanelContent content;
        writeHeader(content);
        if (state_.status.running)
            writeProgress(content);
        writeNotices(content);
        content.schedule = qt(scheduleSummary(state_.schedule, texts_));
        if (state_.lastBackupDate)
            content.lastBackup = qt(relative(*state_.lastBackupDate) + text(" ago"));
        content.destination = qt(state_.destinationName.value_or(""));
        content.backUpSymbol = state_.status.running ? "arrow.triangle.2.circlepath" : "arrow.clockwise";
        content.backUpLabel = qt(text(state_.status.running ? "Backup in Progress…" : "Back Up Now"));
        content.canSkip = state_.nextFire && !state_.status.running;
        content.paused = state_.pausedUntil.has_value();
        content.lastEvent = qt(state_.lastEvent);
        return content;
    }

private:
    void writeHeader(PanelContent& content) const {
        const auto header = [this]() -> HealthVerdict {
            if (state_.status.running)
                return {"arrow.triangle.2.circlepath", Tint::accent, "Backing Up…"};
            if (state_.health != BackupHealth::ok)
                return healthVerdict(state_.health);
            if (state_.deferral)
                return {"hourglass", Tint::orange, "Waiting"};
            if (state_.pausedUntil)
                return {"pause.fill", Tint::yellow, "Paused"};
            if (!state_.nextFire)
                return {"moon.zzz", Tint::secondary, "Nothing Scheduled"};
            return {"checkmark", Tint::green, "On Schedule"};
        }();
        content.symbol = header.symbol;
        content.tint = header.tint;
        content.title = qt(text(header.title));
        content.subtitle = qt(subtitle());
    }

    std::string subtitle() const {
        if (state_.status.running)
            return state_.status.phase ? prettified(*state_.status.phase) : "In progress";
        if (state_.deferral) {
            std::string reasons;
            for (const std::string& reason : state_.deferral->reasons)
                reasons += (reasons.empty() ? "" : ", ") + reason;
            return capitalized(reasons) + text(" — next check ") + relative(state_.deferral->nextCheck);
        }
        if (state_.pausedUntil)
            return text("Until ") + formats_.shortTime(*state_.pausedUntil) +
                   text(" — resumes automatically");
        if (state_.nextFire)
            return text("Next backup in ") + relative(*state_.nextFire) + "  (" +
                   fireDateText(*state_.nextFire, now_, formats_) + ")";
        return text("No rules produce an upcoming backup");
    }

    void writeProgress(PanelContent& content) const {
        const TMStatus& status = state_.status;
        const std::optional<double> fraction = progressFraction();
        content.running = true;
        content.progress = fraction.value_or(-1);
        if (const auto copied = status.copiedText(formats_, texts_))
            content.progressText = qt(fraction ? *copied + " · " + formats_.percentage(*fraction) : *copied);
        else if (status.percent)
            content.progressText = qt(formats_.percentage(*status.percent));
        if (!state_.stalled && status.progress && status.progress->timeRemaining)
            content.timeLeft =
                qt(fillIn(text("about %@ left"), {formats_.roundTime(*status.progress->timeRemaining)}));
    }

    std::optional<double> progressFraction() const {
        const TMStatus& status = state_.status;
        if (status.fractionOfProgressBar)
            return status.fractionOfProgressBar;
        if (status.progress && status.progress->totalBytes > 0)
            return std::min(static_cast<double>(status.progress->bytes) /
                                static_cast<double>(status.progress->totalBytes),
                            1.0);
        return status.percent;
    }

    void writeNotices(PanelContent& content) const {
        content.stalled = state_.stalled;
        if (state_.deferral) {
            const std::string forceAt = formats_.shortTime(state_.deferral->forceAt);
            content.willBackUpBy = qt(text("Will back up by ") + forceAt + text(" regardless"));
            content.runsBy = qt(fillIn(text("Runs by %@ regardless"), {forceAt}));
        }
        if (state_.deferredFrom)
            content.deferredFrom = qt(fillIn(text("Deferred from %@ by a blackout window"),
                                             {formats_.shortTime(*state_.deferredFrom)}));
        content.skipArmed = state_.skipArmed;
        content.catchUpPending = state_.catchUpPending;
        content.crashed = state_.pendingCrashReport.has_value();
        content.autoBackupOn = state_.autoBackupOn.value_or(false);
    }

    /// "ThinningPostBackup" as words.
    static std::string prettified(const std::string& phase) {
        std::string words;
        for (std::size_t next = 0; next < phase.size();) {
            const std::size_t start = next;
            if (isUpperCase(nextCodePoint(phase, next)) && !words.empty())
                words += ' ';
            words.append(phase, start, next - start);
        }
        return words;
    }

    /// The distance in time, either way.
    std::string relative(Instant instant) const {
        constexpr double minute = 60;
        const double distance = std::abs(secondsBetween(now_, instant));
        return formats_.elapsedTime(grain_ == TimeGrain::minute ? std::ceil(distance / minute) * minute
                                                                : distance);
    }

    std::string text(std::string_view english) const { return texts_.translate(english); }
    static QString qt(const std::string& utf8) { return QString::fromStdString(utf8); }

    const ControllerState& state_;
    const Instant now_;
    const Formats& formats_;
    const Translator& texts_;
    const TimeGrain grain_;
};

} // namespace

PanelContent panelContent(const ControllerState& state, Instant now, const Formats& formats,
                          const Translator& texts, TimeGrain grain) {
    return Writer(state, now, formats, texts, grain).write();
}

QString quitMessage(const ControllerState& state, const Translator& texts) {
    return QString::fromStdString(texts.translate(
        state.autoBackupOn.value_or(false)
            ? "Apple's automatic backups are turned on, so Time Machine will keep backing up on Apple's "
              "schedule "
              "while Norvane is closed."
            : "Scheduled backups stop while Norvane isn't running — and Time Machine's automatic mode is "
              "off, so "
              "nothing will back up until you reopen Norvane or turn automatic backups back on in System "
              "Settings."));
}

} // namespace norvane

#include "ui/health/health_content.h"

#include <algorithm>
#include <cmath>

#include "ui/health/duration_chart.h"
#include "ui/kit/view_values.h"
#include "ui/texts/health_verdict.h"

namespace norvane {

namespace {

constexpr auto unknown = "—";

/// Makes the texts over one record.
class Writer {
public:
    Writer(const HealthData& data, const Calendar& calendar, const Formats& formats, const Translator& texts)
        : data_(data), calendar_(calendar), formats_(formats), texts_(texts) {}

    void write(HealthContent& content) const {
        content.loading = false;
        for (const StatTile& tile : {backupDisk(), startupDisk(), backupsStored(), typical()})
            content.tiles.append(QVariant::fromValue(tile));
        if (!data_.attempts.empty())
            content.chart = chart();
        content.attempts = latestAttempts();
        constexpr std::int64_t gratefulFrom = 50;
        if (data_.backupCount >= gratefulFrom)
            content.coffee =
                viewText(fillIn(text("Norvane has verified %d backups for you ☕"), {data_.backupCount}));
    }

private:
    StatTile backupDisk() const {
        constexpr double nearlyFull = 0.9;
        const std::optional<double> used = usedFraction();
        const std::string detail = used ? fillIn(text("%.0f%% full"), {*used * 100}) : "";
        return {label("Backup disk"), freeSpace(data_.destinationBytesAvailable), viewText(detail), used,
                nearlyFull};
    }

    StatTile startupDisk() const {
        return {label("Startup disk"),
                freeSpace(data_.sourceFreeBytes),
                label("10 GB minimum to stage backups"),
                {},
                {}};
    }

    StatTile backupsStored() const {
        const std::string oldest =
            data_.oldestBackup ? fillIn(text("oldest %@"), {formats_.abbreviatedDate(*data_.oldestBackup)})
                               : "";
        return {
            label("Backups stored"), viewText(fillIn("%d", {data_.backupCount})), viewText(oldest), {}, {}};
    }

    StatTile typical() const {
        const std::optional<double> seconds = typicalDuration(data_.attempts);
        return {label("Typical duration"),
                viewText(seconds ? durationText(*seconds, texts_) : unknown),
                label("median of recent backups"),
                {},
                {}};
    }

    QString freeSpace(std::optional<std::int64_t> bytes) const {
        return viewText(bytes ? fillIn(text("%@ free"), {formats_.byteCount(*bytes)}) : unknown);
    }

    std::optional<double> usedFraction() const {
        if (!data_.destinationBytesUsed || !data_.destinationBytesAvailable)
            return std::nullopt;
        const auto used = static_cast<double>(*data_.destinationBytesUsed);
        const double sum = used + static_cast<double>(*data_.destinationBytesAvailable);
        return sum > 0 ? std::optional(used / sum) : std::nullopt;
    }

    QVariantMap chart() const {
        const DurationChart chart = durationChart(data_.attempts, calendar_, formats_);
        const auto height = [&chart](double minutes) { return std::min(minutes / chart.top, 1.0); };
        QVariantList bars;
        for (std::size_t i = 0; i < chart.bars.size(); ++i) {
            const HealthData::Attempt& attempt = data_.attempts[i];
            bars.append(QVariantMap{{"position", chart.bars[i].position},
                                    {"height", height(chart.bars[i].minutes)},
                                    {"success", chart.bars[i].success},
                                    {"text", dateOf(attempt) + ", " + resultOf(attempt)}});
        }
        QVariantList dateMarks;
        for (const DurationChart::DateMark& mark : chart.dateMarks)
            dateMarks.append(QVariantMap{{"position", mark.position}, {"label", viewText(mark.label)}});
        QVariantList minuteMarks;
        for (const double minutes : chart.minuteMarks)
            minuteMarks.append(
                QVariantMap{{"position", height(minutes)}, {"label", viewText(fillIn("%.0f", {minutes}))}});
        return {{"bars", bars},
                {"dateMarks", dateMarks},
                {"minuteMarks", minuteMarks},
                {"crossHeight", height(DurationChart::crossMinutes)}};
    }

    QVariantList latestAttempts() const {
        constexpr qsizetype shown = 6;
        QVariantList rows;
        for (auto attempt = data_.attempts.rbegin(); attempt != data_.attempts.rend() && rows.size() < shown;
             ++attempt)
            rows.append(QVariantMap{
                {"success", attempt->success}, {"date", dateOf(*attempt)}, {"result", resultOf(*attempt)}});
        return rows;
    }

    QString dateOf(const HealthData::Attempt& attempt) const {
        return viewText(formats_.dateAndTime(attempt.date));
    }

    QString resultOf(const HealthData::Attempt& attempt) const {
        return viewText(attempt.duration ? durationText(*attempt.duration, texts_)
                                         : text("did not complete"));
    }

    std::string text(std::string_view english) const { return texts_.translate(english); }
    QString label(std::string_view english) const { return viewText(text(english)); }

    const HealthData& data_;
    const Calendar& calendar_;
    const Formats& formats_;
    const Translator& texts_;
};

} // namespace

HealthContent healthContent(const ControllerState& state, const Calendar& calendar, const Formats& formats,
                            const Translator& texts) {
    const HealthVerdict verdict = healthVerdict(state.health);
    HealthContent content;
    content.symbol = verdict.symbol;
    content.tint = verdict.tint;
    content.title = viewText(texts.translate(verdict.title));
    if (state.healthData)
        Writer(*state.healthData, calendar, formats, texts).write(content);
    return content;
}

QString lastVerifiedBackup(const ControllerState& state, Instant now, const Formats& formats,
                           const Translator& texts) {
    if (!state.healthData || !state.healthData->lastSuccess)
        return viewText(texts.translate("No verified backups recorded"));
    const double distance = std::abs(secondsBetween(*state.healthData->lastSuccess, now));
    return viewText(texts.translate("Last verified backup ") + formats.elapsedTime(distance) +
                    texts.translate(" ago"));
}

std::string durationText(double seconds, const Translator& texts) {
    constexpr double secondsPerMinute = 60;
    constexpr double toldInSeconds = 90;
    if (seconds < toldInSeconds)
        return fillIn(texts.translate("%.0f sec"), {seconds});
    return fillIn(texts.translate("%.0f min"), {seconds / secondsPerMinute});
}

std::optional<double> typicalDuration(const std::vector<HealthData::Attempt>& attempts) {
    std::vector<double> durations;
    for (const HealthData::Attempt& attempt : attempts)
        if (attempt.duration)
            durations.push_back(*attempt.duration);
    if (durations.empty())
        return std::nullopt;
    std::sort(durations.begin(), durations.end());
    return durations[durations.size() / 2];
}

} // namespace norvane

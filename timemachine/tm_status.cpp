#include "timemachine/tm_status.h"

#include <algorithm>
#include <utility>

#include "platform/text/truncation.h"
#include "timemachine/number_text.h"
#include "timemachine/tm_util.h"

namespace norvane {

namespace {

bool runningFrom(const PropertyList* value) {
    if (!value)
        return false;
    if (const std::string* text = value->string())
        return *text == "1";
    return value->number().value_or(0) != 0;
}

/// 0 to 1; absent when missing, negative or not a number.
std::optional<double> fractionFrom(const PropertyList* value) {
    const std::optional<double> number = numberFromValue(value);
    if (!number || !(*number >= 0))
        return std::nullopt;
    return std::min(*number, 1.0);
}

std::optional<BackupProgress> progressFrom(const PropertyList* value) {
    if (!value || !value->dictionary())
        return std::nullopt;
    const auto bytes = numberFromValue(value->find("bytes"));
    const auto totalBytes = numberFromValue(value->find("totalBytes"));
    if (!bytes || !totalBytes || !(*totalBytes > 0))
        return std::nullopt;
    const auto wholeBytes = truncated(*bytes);
    const auto wholeTotalBytes = truncated(*totalBytes);
    const auto files = truncated(numberFromValue(value->find("files")).value_or(0));
    const auto totalFiles = truncated(numberFromValue(value->find("totalFiles")).value_or(0));
    // A count that no file system can have makes the whole record worthless. A fraction of a byte is none.
    if (!wholeBytes || !wholeTotalBytes || *wholeTotalBytes <= 0 || !files || !totalFiles)
        return std::nullopt;
    std::optional<double> timeRemaining = numberFromValue(value->find("TimeRemaining"));
    if (timeRemaining && !(*timeRemaining > 0))
        timeRemaining.reset();
    return BackupProgress{*wholeBytes, *wholeTotalBytes, *files, *totalFiles, timeRemaining};
}

} // namespace

const TMStatus& TMStatus::idle() {
    static const TMStatus status;
    return status;
}

std::optional<std::string> TMStatus::copiedText(const Formats& formats, const Translator& translator) const {
    if (!progress)
        return std::nullopt;
    return fillIn(translator.translate("%@ copied"), {formats.byteCount(progress->bytes)});
}

TMStatus TMUtil::parseStatus(std::string_view text) {
    const std::size_t brace = text.find('{');
    if (brace == std::string_view::npos)
        return TMStatus::idle();
    std::optional<PropertyList> list = parsePropertyList(text.substr(brace));
    auto* const entries = list ? std::get_if<PropertyList::Dictionary>(&list->value) : nullptr;
    if (!entries)
        return TMStatus::idle();
    TMStatus status;
    status.running = runningFrom(list->find("Running"));
    status.percent = fractionFrom(list->find("Percent"));
    status.fractionOfProgressBar = fractionFrom(list->find("FractionOfProgressBar"));
    if (const PropertyList* phase = list->find("BackupPhase"); phase && phase->string())
        status.phase = *phase->string();
    status.progress = progressFrom(list->find("Progress"));
    status.raw = std::move(*entries);
    return status;
}

} // namespace norvane

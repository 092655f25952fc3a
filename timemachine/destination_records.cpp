// Destinations: reading what `tmutil destinationinfo` and Time Machine's preferences say of them.
#include <algorithm>
#include <charconv>

#include "platform/text/white_space.h"
#include "timemachine/tm_util.h"

namespace norvane {

namespace {

struct LabelledLine {
    std::string_view label;
    std::string_view value;
};

/// None when the line has no colon behind a label, or nothing at all behind that colon.
std::optional<LabelledLine> labelledLine(std::string_view line) {
    const std::size_t labelStart = line.find_first_not_of(':');
    if (labelStart == std::string_view::npos)
        return std::nullopt;
    line.remove_prefix(labelStart);
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || colon + 1 == line.size())
        return std::nullopt;
    return LabelledLine{line.substr(0, colon), line.substr(colon + 1)};
}

/// All dates of a list; empty when the value is missing, no list, or has an element of another type.
std::vector<Instant> datesFrom(const PropertyList* value) {
    std::vector<Instant> dates;
    if (!value || !value->array())
        return dates;
    dates.reserve(value->array()->size());
    for (const PropertyList& element : *value->array()) {
        if (!element.date())
            return {};
        dates.push_back(*element.date());
    }
    return dates;
}

std::optional<std::int64_t> exactIntegerFrom(const PropertyList* value) {
    return value ? value->exactInteger() : std::nullopt;
}

std::optional<std::int64_t> integerFrom(const PropertyList* value) {
    return value ? value->truncatedInteger() : std::nullopt;
}

std::vector<std::string> stringsFrom(const PropertyList* value) {
    std::vector<std::string> strings;
    if (!value || !value->array())
        return strings;
    for (const PropertyList& element : *value->array())
        if (const std::string* text = element.string())
            strings.push_back(*text);
    return strings;
}

TMUtil::DestinationStatus statusFrom(const PropertyList& entry) {
    return {datesFrom(entry.find("SnapshotDates")),
            datesFrom(entry.find("AttemptDates")),
            exactIntegerFrom(entry.find("BytesAvailable")),
            exactIntegerFrom(entry.find("BytesUsed")),
            integerFrom(entry.find("RESULT")),
            stringsFrom(entry.find("MessageParameters"))};
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(&text[i + 1], &text[i + 1] + 2, byte, 16).ptr == &text[i + 1] + 2) {
            decoded += static_cast<char>(byte);
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

/// The host of a URL with an authority (RFC 3986, 3.2), percent-decoded; empty when it has none.
std::string hostOf(std::string_view url) {
    const std::size_t scheme = url.find("://");
    if (scheme == std::string_view::npos || scheme == 0)
        return {};
    std::string_view authority = url.substr(scheme + 3);
    authority = authority.substr(0, authority.find_first_of("/?#"));
    if (const std::size_t at = authority.rfind('@'); at != std::string_view::npos)
        authority.remove_prefix(at + 1);
    if (authority.starts_with('[')) {
        const std::size_t bracket = authority.find(']');
        return bracket == std::string_view::npos ? "" : std::string(authority.substr(1, bracket - 1));
    }
    return percentDecoded(authority.substr(0, authority.find(':')));
}

/// The host split at ".<type>."; none unless a service name and a domain remain.
std::optional<ServiceEndpoint> serviceFrom(std::string_view host, std::string_view type) {
    const std::string marker = "." + std::string(type) + ".";
    const std::size_t position = host.find(marker);
    if (position == std::string_view::npos)
        return std::nullopt;
    const std::string_view name = host.substr(0, position);
    std::string_view domain = host.substr(position + marker.size());
    if (domain.ends_with('.'))
        domain.remove_suffix(1);
    if (name.empty() || domain.empty())
        return std::nullopt;
    return ServiceEndpoint{std::string(name), std::string(type), std::string(domain)};
}

} // namespace

std::optional<std::string> TMUtil::infoValue(std::string_view key, std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const auto labelled = labelledLine(line);
        if (!labelled || trimHorizontal(labelled->label) != key)
            continue;
        const std::string_view value = trimHorizontal(labelled->value);
        return value.empty() ? std::nullopt : std::optional<std::string>(value);
    }
    return std::nullopt;
}

std::vector<TMUtil::DestinationStatus> TMUtil::parseDestinationStatuses(std::string_view text) {
    const std::optional<PropertyList> preferences = parsePropertyList(text);
    const PropertyList* destinations = preferences ? preferences->find("Destinations") : nullptr;
    if (!destinations || !destinations->array())
        return {};
    std::vector<DestinationStatus> statuses;
    for (const PropertyList& entry : *destinations->array()) {
        if (!entry.dictionary())
            return {};
        statuses.push_back(statusFrom(entry));
    }
    return statuses;
}

std::vector<NetworkEndpoint> TMUtil::endpoints(std::string_view destinationUrl) {
    constexpr std::uint16_t smbPort = 445;
    constexpr std::uint16_t afpPort = 548;
    const std::string host = hostOf(destinationUrl);
    if (host.empty())
        return {};
    for (std::string_view type : {"_afpovertcp._tcp", "_smb._tcp"})
        if (auto service = serviceFrom(host, type))
            return {*std::move(service)};
    if (destinationUrl.starts_with("smb"))
        return {HostEndpoint{host, smbPort}, HostEndpoint{host, afpPort}};
    return {HostEndpoint{host, afpPort}, HostEndpoint{host, smbPort}};
}

} // namespace norvane

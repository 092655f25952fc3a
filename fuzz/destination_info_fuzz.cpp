#include "fuzz/fuzz.h"
#include "platform/text/white_space.h"
#include "timemachine/tm_util.h"

namespace norvane {

namespace {

void checkValue(std::string_view key, std::string_view text) {
    const auto value = TMUtil::infoValue(key, text);
    if (!value)
        return;
    check(!trimHorizontal(*value).empty(), "A value is not blank.");
    check(value->find('\n') == std::string::npos, "A value is of one line.");
    check(text.find(*value) != std::string_view::npos, "A value stands in the text.");
    check(TMUtil::infoValue("Name", "====\nName          : " + *value + " \n") == value,
          "A value reads back from a line of its own.");
}

void checkEndpoints(std::string_view url) {
    const auto endpoints = TMUtil::endpoints(url);
    check(endpoints.size() <= 2, "There are at most two endpoints.");
    for (const NetworkEndpoint& endpoint : endpoints) {
        if (const auto* host = std::get_if<HostEndpoint>(&endpoint)) {
            check(endpoints.size() == 2, "Hosts are tried on both ports.");
            check(!host->host.empty() && (host->port == 445 || host->port == 548), "Hosts are complete.");
        } else {
            const auto& service = std::get<ServiceEndpoint>(endpoint);
            check(!service.name.empty() && !service.domain.empty(), "Services are complete.");
            check(endpoints.size() == 1, "A service is the only endpoint.");
        }
    }
}

} // namespace

void fuzz(std::string_view input) {
    for (const std::string_view key : {"Name", "Kind", "Mount Point", "URL"})
        checkValue(key, input);
    checkEndpoints(input);
    checkEndpoints(TMUtil::infoValue("URL", input).value_or(""));
}

} // namespace norvane

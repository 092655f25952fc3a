#include "ui/settings/update_alert.h"

#include <initializer_list>
#include <utility>

namespace norvane {

AlertTexts updateAlertTexts(const UpdateResult& result, const UpdateParties& parties,
                            const Translator& texts) {
    const auto text = [&](const char* english, std::initializer_list<FormatArgument> arguments = {}) {
        return fillIn(texts.translate(english), arguments);
    };
    const auto notChecked = [&](const std::string& reason) {
        return AlertTexts{.message = text("Norvane could not check for updates"),
                          .information = reason,
                          .button = text("OK"),
                          .symbol = "exclamationmark.triangle.fill"};
    };
    switch (result.kind) {
    case UpdateResult::Kind::available:
        return {.message = text("Norvane %@ is available", {result.version}),
                .information =
                    text("You have version %@. The web page of the new version says how to get it.",
                         {parties.ownVersion}),
                .button = text("Open Web Page"),
                .otherwise = text("Not Now"),
                .symbol = "arrow.up.forward.app"};
    case UpdateResult::Kind::upToDate:
        return {.message = text("Norvane is up to date"),
                .information = text("You have version %@.", {parties.ownVersion}),
                .button = text("OK"),
                .symbol = "checkmark.circle.fill"};
    case UpdateResult::Kind::unreadable:
        return notChecked(
            text("%@ gave an answer that Norvane cannot use. Try again later.", {parties.host}));
    case UpdateResult::Kind::unreachable:
        break;
    }
    return notChecked(
        text("%@ did not answer. Check the network connection, or try again later.", {parties.host}));
}

UpdateAlert::UpdateAlert(UiEngine& engine, Workspace& workspace, const Translator& texts,
                         UpdateParties parties)
    : engine_(engine), workspace_(workspace), texts_(texts), parties_(std::move(parties)) {}

void UpdateAlert::show(const UpdateResult& result) {
    window_ = std::make_unique<AlertWindow>(engine_, updateAlertTexts(result, parties_, texts_),
                                            [this, page = result.page](bool pressed) {
                                                window_.release()->deleteLater(); // it is what calls
                                                if (pressed && !page.empty())
                                                    workspace_.openUrl(page);
                                            });
    if (!window_->open())
        window_.reset();
}

} // namespace norvane

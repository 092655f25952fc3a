#include "ui/onboarding/onboarding_content.h"

#include "ui/kit/view_values.h"
#include "ui/texts/schedule_summary.h"

namespace norvane {

namespace {

constexpr auto boldMark = "**";

struct AutomaticTexts {
    const char* symbol;
    const char* status;
    const char* caption;
};

AutomaticTexts automaticTexts(const std::optional<bool>& autoBackupOn) {
    constexpr auto todo = "HOW TO TURN IT OFF";
    if (!autoBackupOn)
        return {"exclamationmark.circle.fill",
                "Couldn't read the current setting — follow the steps below to be sure.", todo};
    if (*autoBackupOn)
        return {"exclamationmark.circle.fill",
                "Apple's automatic backups are still ON — set the frequency to “Manually” below.", todo};
    return {"checkmark.circle.fill", "Automatic backups are OFF — Norvane is in control.",
            "ALREADY SET — HERE'S WHERE IT LIVES"};
}

} // namespace

OnboardingContent onboardingContent(const ControllerState& state, const Translator& texts) {
    const auto text = [&](const char* english) { return viewText(texts.translate(english)); };
    const AutomaticTexts automatic = automaticTexts(state.autoBackupOn);
    OnboardingContent content;
    content.automaticOff = state.autoBackupOn == false;
    content.statusSymbol = automatic.symbol;
    content.status = text(automatic.status);
    content.instructionsCaption = text(automatic.caption);
    content.destination =
        state.destinationName
            ? viewText(fillIn(texts.translate("Backing up to “%@”."), {*state.destinationName}))
            : text("No backup disk is configured yet — choose one in Time Machine settings first.");
    content.schedule = viewText(fillIn(texts.translate("Schedule: %@ — change it anytime in Settings."),
                                       {scheduleSummary(state.schedule, texts)}));
    content.controlSymbol = content.automaticOff ? "checkmark.circle" : "exclamationmark.triangle";
    content.control = text(content.automaticOff ? "Norvane controls your backup timing."
                                                : "Apple's automatic backups are still on — Norvane can't "
                                                  "control timing until they're off.");
    return content;
}

QString styledText(std::string_view marked) {
    QString styled = viewText(marked).toHtmlEscaped();
    styled.replace("  ", "&nbsp;&nbsp;"); // Qt joins spaces in a row, the character for a fixed one included
    bool bold = false;
    for (qsizetype at = styled.indexOf(boldMark); at >= 0; at = styled.indexOf(boldMark, at)) {
        bold = !bold;
        styled.replace(at, 2, bold ? "<b>" : "</b>");
    }
    return styled;
}

QString unmarkedText(std::string_view marked) { return viewText(marked).remove(boldMark); }

} // namespace norvane

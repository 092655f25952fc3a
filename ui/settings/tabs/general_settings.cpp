#include "ui/settings/tabs/general_settings.h"

#include <utility>

#include "platform/language_override.h"
#include "ui/kit/view_values.h"
#include "ui/settings/tabs/conditions_edit.h"

namespace norvane {

namespace {

constexpr std::array<Choice<std::int64_t>, 4> graceChoices = {
    {{"1 minute", 1}, {"5 minutes", 5}, {"15 minutes", 15}, {"30 minutes", 30}}};

constexpr double quitDelaySeconds = 0.3;

} // namespace

GeneralSettings::GeneralSettings(const GeneralServices& services, RelaunchActions actions,
                                 std::string updateHost)
    : services_(services), actions_(std::move(actions)), updateHost_(std::move(updateHost)),
      store_(services.defaults) {
    services_.updater.onChange([this] { Q_EMIT changed(); });
    load();
}

GeneralSettings::~GeneralSettings() { services_.updater.onChange({}); }

void GeneralSettings::load() {
    launchAtLogin_ = services_.loginItem.enabled();
    loginItemError_.clear();
    launchGrace_ = store_.launchGraceMinutes();
    alwaysBrand_ = store_.alwaysBrandAccent();
    language_ = languageOverride(services_.defaults);
    refresh();
}

void GeneralSettings::refresh() {
    const auto& name = services_.controller.state().destinationName;
    destination_ = name ? viewText(*name) : text("None configured");
    Q_EMIT changed();
}

void GeneralSettings::setLaunchAtLogin(bool launch) {
    if (launch == launchAtLogin_)
        return;
    launchAtLogin_ = launch;
    Q_EMIT changed();
    // A sandbox may ask the user first, and this may be gone by then.
    const LoginItem::Done done = [this, alive = lifetime_.watch()](const std::string& error) {
        if (!alive.expired())
            loginItemAnswered(error);
    };
    launch ? services_.loginItem.enable(done) : services_.loginItem.disable(done);
}

void GeneralSettings::loginItemAnswered(const std::string& error) {
    loginItemError_ = error;
    if (!error.empty())
        launchAtLogin_ = services_.loginItem.enabled();
    Q_EMIT changed();
}

void GeneralSettings::setLaunchGrace(double minutes) {
    launchGrace_ = static_cast<std::int64_t>(minutes);
    store_.setLaunchGraceMinutes(launchGrace_);
    Q_EMIT changed();
}

QVariantList GeneralSettings::launchGraceChoices() const {
    return viewChoices(graceChoices, services_.translator);
}

void GeneralSettings::setLanguage(const QString& code) {
    const std::string chosen = code.toStdString();
    if (chosen == language_)
        return;
    language_ = chosen;
    setLanguageOverride(services_.defaults, chosen);
    languageChanged_ = true;
    Q_EMIT changed();
}

QVariantList GeneralSettings::languageChoices() const {
    QVariantList choices = {QVariantMap{{"label", text("System Default")}, {"value", systemLanguage}}};
    // Each in its own language, so that whoever needs it can read it.
    for (const auto& [label, code] : {std::pair{"English", "en"},
                                      {"Français (Canada)", "fr-CA"},
                                      {"Deutsch", "de"},
                                      {"Nederlands", "nl"},
                                      {"Español", "es"}})
        choices.append(QVariantMap{{"label", QString::fromUtf8(label)}, {"value", code}});
    return choices;
}

void GeneralSettings::setAlwaysBrand(bool always) {
    if (always == alwaysBrand_)
        return;
    alwaysBrand_ = always;
    store_.setAlwaysBrandAccent(always);
    services_.controller.refreshAccent();
    Q_EMIT changed();
}

void GeneralSettings::setAutomaticallyChecks(bool automatically) {
    services_.updater.setAutomaticallyChecks(automatically);
}

QString GeneralSettings::updatesFooter() const {
    if (!looksForUpdates())
        return text("This build of Norvane does not check for new versions.");
    return text("Norvane checks ") + viewText(updateHost_) +
           text(" for new versions. No usage data or system information is sent.");
}

void GeneralSettings::relaunch() {
    actions_.startNewInstance();
    quitTimer_ = services_.timers.once(quitDelaySeconds, 0, [this] { actions_.quit(); });
}

QString GeneralSettings::text(const char* english) const {
    return viewText(services_.translator.translate(english));
}

} // namespace norvane

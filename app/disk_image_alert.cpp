#include "app/disk_image_alert.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>

#include "platform/linux/desktop/portal_appearance.h"
#include "platform/linux/files/user_defaults_file.h"
#include "platform/linux/files/user_folders.h"
#include "ui/kit/alert_window.h"
#include "ui/kit/english_texts.h"
#include "ui/kit/theme_updater.h"

namespace norvane {

int runDiskImageAlert() {
    const EnglishTexts texts;
    const AlertTexts alert{
        texts.translate("Norvane is running from the disk image"),
        texts.translate("Drag Norvane to your Applications folder, then open it from there."),
        texts.translate("Quit")};
    if (QGuiApplication::platformName() == "offscreen") {
        std::fprintf(stderr, "%s. %s\n", alert.message.c_str(), alert.information.c_str());
        return EXIT_FAILURE;
    }
    UserDefaultsFile defaults(preferencesFile("org.norvane.Norvane"));
    PortalAppearance appearance(QDBusConnection::sessionBus(), true);
    Theme theme(false, brandOrange);
    const ThemeUpdater themeUpdater(theme, appearance, defaults);
    UiEngine engine(theme, texts);
    AlertWindow window(engine, alert, [](bool) { QGuiApplication::quit(); });
    return window.open() ? QGuiApplication::exec() : EXIT_FAILURE;
}

} // namespace norvane

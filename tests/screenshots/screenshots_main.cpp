// screenshots FOLDER light|dark [NAME]: a picture of each window in each of its states, or of those whose
// names begin so. The scale is Qt's.
#include <QDir>
#include <QEventLoop>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QTimer>
#include <cstdio>
#include <functional>

#include "platform/linux/time/icu_formats.h"
#include "tests/screenshots/health_states.h"
#include "tests/screenshots/onboarding_states.h"
#include "tests/screenshots/pane_states.h"
#include "tests/screenshots/panel_states.h"
#include "tests/screenshots/settings_states.h"
#include "tests/screenshots/snapshots_states.h"
#include "ui/kit/alert_window.h"
#include "ui/kit/ui_engine.h"
#include "ui/panel/panel_view_model.h"
#include "ui/panel/tray_presenter.h"
#include "ui/settings/update_alert.h"

namespace {

using namespace norvane;

void letTheWindowSettle() {
    constexpr int milliseconds = 700; // longer than any animation
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

QVariantMap over(QObject& model) { return {{"model", QVariant::fromValue(&model)}}; }

/// Shows a window of a module, does with it what leads to the picture, and saves that.
bool photograph(
    UiEngine& engine, const QString& path, const QString& component, const QVariantMap& properties,
    const std::function<void(QQuickWindow&)>& act = [](QQuickWindow&) {}) {
    const auto window = engine.makeWindow(component, properties);
    if (!window)
        return false;
    window->show();
    act(*window);
    letTheWindowSettle();
    return window->grabWindow().save(path);
}

bool photographPanel(UiEngine& engine, const screenshots::PanelState& state, const QString& path) {
    SimulatedMachine machine(screenshots::thatMorning);
    SimulatedProgram program(machine, machine.timeMachine, machine.defaults);
    const IcuFormats formats;
    program.formats = &formats;
    state.reach(machine, program);
    PanelViewModel model({*program.controller, machine.time, machine.time, formats, machine.texts,
                          program.tmUtil, program.crashReporter},
                         {});
    model.opened();
    return photograph(engine, path, "Panel/PanelWindow", over(model), [&](QQuickWindow&) {
        letTheWindowSettle(); // the question comes once the panel has the keyboard
        if (state.asksToQuit)
            model.askToQuit();
    });
}

bool photographSettings(UiEngine& engine, const screenshots::SettingsState& state, const QString& path) {
    screenshots::SettingsScene scene;
    state.reach(scene);
    return photograph(engine, path, "Settings/SettingsWindow", over(scene.model()),
                      [&](QQuickWindow& window) {
                          if (state.change)
                              state.change(scene);
                          letTheWindowSettle();
                          screenshots::scrollTo(*window.contentItem(), state.scrolled);
                      });
}

bool photographHealth(UiEngine& engine, const screenshots::HealthState& state, const QString& path) {
    SimulatedMachine machine(screenshots::thatMorning);
    SimulatedProgram program(machine, machine.timeMachine, machine.defaults);
    const IcuFormats formats;
    program.formats = &formats;
    state.reach(machine, program);
    HealthViewModel model(screenshots::healthServices(machine, program), {});
    if (state.reads)
        model.refresh();
    machine.time.advance(1);
    model.opened();
    return photograph(engine, path, "Health/HealthWindow", over(model), [&](QQuickWindow& window) {
        letTheWindowSettle();
        screenshots::scrollTo(*window.contentItem(), state.scrolled);
        window.requestActivate();
        for (const int key : state.keys) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
            QGuiApplication::sendEvent(&window, &press);
        }
    });
}

bool photographSnapshots(UiEngine& engine, const screenshots::SnapshotsState& state, const QString& path) {
    SimulatedMachine machine(screenshots::thatMorning);
    const SimulatedProgram program(machine, machine.timeMachine, machine.defaults);
    const IcuFormats formats;
    state.reach(machine);
    LocalSnapshotsViewModel model(screenshots::snapshotsServices(machine, program.tmUtil),
                                  {machine.time, machine.time, formats});
    model.opened();
    if (state.reads)
        machine.time.advance(1);
    return photograph(engine, path, "LocalSnapshots/LocalSnapshotsWindow", over(model), [&](QQuickWindow&) {
        if (state.act)
            state.act(machine, model);
    });
}

bool photographOnboarding(UiEngine& engine, const screenshots::OnboardingState& state, const QString& path) {
    constexpr double settlingSeconds = 5;
    SimulatedMachine machine(screenshots::thatMorning);
    if (state.reach)
        state.reach(machine);
    SimulatedProgram program(machine, machine.timeMachine, machine.defaults);
    program.start();
    OnboardingViewModel model({*program.controller, machine.time, program.tmUtil, machine.defaults,
                               machine.loginItem, machine.notifications, machine.texts});
    model.opened();
    machine.time.advance(settlingSeconds);
    while (model.step() < state.step)
        model.forward();
    if (state.change)
        state.change(model);
    return photograph(engine, path, "Onboarding/OnboardingWindow", over(model));
}

bool photographPane(UiEngine& engine, const screenshots::PaneState& state, const QString& path) {
    screenshots::PaneScene scene;
    state.reach(scene);
    scene.model.opened();
    scene.settle();
    return photograph(engine, path, "SettingsPane/TimeMachinePane", over(scene.model), [&](QQuickWindow&) {
        if (state.change)
            state.change(scene);
    });
}

struct AlertState {
    std::string name;
    AlertTexts texts;
};

std::vector<AlertState> alertStates() {
    const UntranslatedText english;
    const auto update = [&](UpdateResult::Kind kind) {
        return updateAlertTexts({kind, "1.10.0", "https://updates.example.org/norvane"},
                                {"1.9.2", "updates.example.org"}, english);
    };
    return {{"disk-image",
             {.message = "Norvane is running from the disk image",
              .information = "Drag Norvane to your Applications folder, then open it from there.",
              .button = "Quit"}},
            {"update", update(UpdateResult::Kind::available)},
            {"update-none", update(UpdateResult::Kind::upToDate)},
            {"update-unreachable", update(UpdateResult::Kind::unreachable)}};
}

bool photographAlert(UiEngine& engine, const AlertState& state, const QString& path) {
    return photograph(engine, path, "Kit/windows/AlertWindow", alertProperties(state.texts));
}

bool photographSymbols(UiEngine& engine, const QString& path) {
    QStringList names = QDir(":/symbols").entryList({"*.svg"}, QDir::Files, QDir::Name);
    for (QString& name : names)
        name.chop(4); // ".svg"
    return photograph(engine, path, "Screenshots/SymbolPage", {{"names", names}});
}

/// Keeps what the tray would show.
class SeenTrayItem final : public TrayItem {
public:
    void show(const TrayAppearance& appearance) override { seen = appearance; }
    void onActivate(std::function<void(int, int)> /*action*/) override {}

    TrayAppearance seen;
};

/// The tray item in every state on a light and on a dark tray, in all its sizes.
bool photographTray(const QString& path) {
    constexpr int cell = 56;
    const auto& states = screenshots::panelStates();
    QImage picture(cell * static_cast<int>(states.size()), 4 * cell, QImage::Format_RGB32);
    picture.fill(QColor(0xf5, 0xf5, 0xf5));
    QPainter painter(&picture);
    painter.fillRect(0, 2 * cell, picture.width(), 2 * cell, QColor(0x2b, 0x2b, 0x2b));
    for (int column = 0; column < static_cast<int>(states.size()); ++column) {
        SimulatedMachine machine(screenshots::thatMorning);
        SimulatedProgram program(machine, machine.timeMachine, machine.defaults);
        states[static_cast<std::size_t>(column)].reach(machine, program);
        SeenTrayItem item;
        const TrayPresenter presenter(*program.controller, item, machine.time, machine.time, machine.formats,
                                      machine.texts);
        int row = 0;
        for (const TrayImage& image : item.seen.images) {
            const QImage pixels(reinterpret_cast<const uchar*>(image.pixels.data()), image.size, image.size,
                                QImage::Format_ARGB32);
            painter.drawImage(column * cell + 6, row * cell + 6, pixels);
            painter.drawImage(column * cell + 6, (row + 2) * cell + 6, pixels);
            ++row;
        }
    }
    painter.end();
    return picture.save(path);
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 3 || arguments.size() > 4) {
        std::fputs("usage: screenshots FOLDER light|dark [NAME]\n", stderr);
        return 2;
    }
    const bool dark = arguments[2] == "dark";
    Theme theme(dark, QColor::fromRgbF(1.0F, 0.42F, 0.1F));
    const UntranslatedText texts;
    UiEngine engine(theme, texts);
    const QString scale = qGuiApp->devicePixelRatio() > 1 ? "@2x" : "";
    const QString ending = "-" + arguments[2] + scale + ".png";
    const auto wanted = [&](const QString& name) { return name.startsWith(arguments.value(3)); };
    bool complete = !wanted("symbols") || photographSymbols(engine, arguments[1] + "/symbols" + ending);
    complete &= !wanted("tray") || photographTray(arguments[1] + "/tray.png");
    const auto photographAll = [&](const std::string& window, const auto& states, auto take) {
        for (const auto& state : states) {
            const QString name = QString::fromStdString(window + "-" + state.name);
            if (wanted(name))
                complete &= take(engine, state, arguments[1] + "/" + name + ending);
        }
    };
    photographAll("alert", alertStates(), photographAlert);
    photographAll("panel", screenshots::panelStates(), photographPanel);
    photographAll("onboarding", screenshots::onboardingStates(), photographOnboarding);
    photographAll("pane", screenshots::paneStates(), photographPane);
    photographAll("settings", screenshots::settingsStates(), photographSettings);
    photographAll("health", screenshots::healthStates(), photographHealth);
    photographAll("snapshots", screenshots::snapshotsStates(), photographSnapshots);
    if (!complete)
        std::fputs("some pictures are missing\n", stderr);
    return complete ? 0 : 1;
}

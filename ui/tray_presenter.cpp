#include "ui/tray_presenter.h"

#include <array>

#include "ui/tray_symbol.h"

namespace norvane {

namespace {

constexpr std::array traySizes = {22, 44};

QColor colorOf(LabelColor color) {
    switch (color) {
    case LabelColor::red:
        return QColor(0xff, 0x3b, 0x30);
    case LabelColor::orange:
        return QColor(0xff, 0x95, 0x00);
    case LabelColor::template_:
        break;
    }
    return QColor(0xdf, 0xdf, 0xdf); // most trays are dark
}

TrayImage trayImage(const MenuBarLabel& label, int size) {
    const QImage image = symbolImage(QString::fromStdString(label.symbol), size, colorOf(label.color))
                             .convertToFormat(QImage::Format_ARGB32);
    TrayImage result{size, {}};
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        result.pixels.insert(result.pixels.end(), row, row + image.width());
    }
    return result;
}

} // namespace

TrayPresenter::TrayPresenter(BackupController& controller, TrayItem& item, const Translator& translator)
    : controller_(controller), item_(item), translator_(translator) {
    soon_.setSingleShot(true);
    QObject::connect(&soon_, &QTimer::timeout, [this] { present(); });
    subscription_ = controller_.subscribe([this] { soon_.start(0); });
    present();
}

void TrayPresenter::present() {
    const ControllerState& state = controller_.state();
    const MenuBarLabel label = menuBarLabel(state);
    TrayAppearance appearance{translator_.translate(stateTitle(state)), state.lastEvent, label.text,
                              appearance_.images};
    if (drawn_ != label) {
        appearance.images.clear();
        for (int size : traySizes)
            appearance.images.push_back(trayImage(label, size));
        drawn_ = label;
    }
    if (appearance == appearance_)
        return;
    appearance_ = appearance;
    item_.show(appearance_);
}

} // namespace norvane

#include "ui/panel/tray_presenter.h"

#include <QGuiApplication>
#include <QPainter>
#include <array>

#include "ui/kit/pictures/symbol_image.h"
#include "ui/kit/theme.h"
#include "ui/panel/panel_content.h"
#include "ui/texts/health_verdict.h"

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
    // For trays that do not draw symbolic icons in their own colour: this grey stands out from black and from
    // white alike (WCAG 2.1: by more than 3 to 1).
    return QColor(0x80, 0x80, 0x80);
}

/// The number in a ring that fills: what is readable in a square of a tray.
QImage percentageImage(int percent, int size, const QColor& color) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double stroke = size / 11.0;
    const QRectF ring = QRectF(0, 0, size, size).adjusted(stroke, stroke, -stroke, -stroke);
    constexpr int degree = 16; // QPainter's unit
    painter.setPen(QPen(Theme::faded(color, 0.35), stroke));
    painter.drawEllipse(ring);
    painter.setPen(QPen(color, stroke, Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(ring, 90 * degree, -percent * 360 * degree / 100);
    QFont font = QGuiApplication::font();
    font.setPixelSize(size * (percent < 100 ? 10 : 7) / 22);
    font.setWeight(QFont::Bold);
    painter.setFont(font);
    painter.drawText(image.rect(), Qt::AlignCenter, QString::number(percent));
    return image;
}

TrayImage trayImage(const MenuBarLabel& label, int size) {
    const QColor color = colorOf(label.color);
    const QImage image = (label.text.empty() ? symbolImage(QString::fromStdString(label.symbol), size, color)
                                             : percentageImage(std::stoi(label.text), size, color)) // "42%"
                             .convertToFormat(QImage::Format_ARGB32);
    TrayImage result{size, {}};
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        result.pixels.insert(result.pixels.end(), row, row + image.width());
    }
    return result;
}

} // namespace

TrayPresenter::TrayPresenter(BackupController& controller, TrayItem& item, const Clock& clock, Timers& timers,
                             const Formats& formats, const Translator& translator)
    : controller_(controller), item_(item), clock_(clock), formats_(formats), translator_(translator),
      soon_(timers) {
    subscription_ = controller_.subscribe([this] { soon_.scheduleSoon([this] { present(); }); });
    present();
}

void TrayPresenter::present() {
    const ControllerState& state = controller_.state();
    const MenuBarLabel label = menuBarLabel(state);
    const PanelContent content = panelContent(state, clock_.now(), formats_, translator_, TimeGrain::minute);
    TrayAppearance appearance{.title = content.title.toStdString(),
                              .subtitle = content.subtitle.toStdString(),
                              .text = label.text,
                              .iconName = label.iconName,
                              .images = appearance_.images,
                              .imageDescription = content.title.toStdString()};
    if (label.color != LabelColor::template_)
        appearance.imageDescription = translator_.translate(healthVerdict(BackupHealth::stale).title);
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

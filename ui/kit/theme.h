// The one place for the colours, fonts and measures of all windows.
#pragma once

#include <QColor>
#include <QFont>
#include <QObject>

#include "ui/kit/given_object.h"

namespace norvane {

inline const QColor brandOrange = QColor::fromRgbF(1.0F, 0.42F, 0.1F);

/// Measures are in device-independent pixels. Main thread.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    // Colours.
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    Q_PROPERTY(QColor brand READ brand CONSTANT)             ///< The program's own, whatever the accent is.
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY changed) ///< Text on a surface in the accent colour.
    Q_PROPERTY(QColor onTint READ onTint CONSTANT)           ///< Text on any other coloured surface; a knob.
    Q_PROPERTY(QColor shade READ shade CONSTANT)             ///< What darkens a surface, faded.
    Q_PROPERTY(QColor window READ window NOTIFY changed)
    Q_PROPERTY(QColor control READ control NOTIFY changed)   ///< A bordered button, a menu.
    Q_PROPERTY(QColor backdrop READ backdrop NOTIFY changed) ///< Around a sheet; hides what lies below it.
    Q_PROPERTY(QColor tip READ tip NOTIFY changed) ///< A tooltip: light in dark windows, dark in light ones.
    Q_PROPERTY(QColor onTip READ onTip NOTIFY changed) ///< Text on it.
    Q_PROPERTY(QColor primary READ primary NOTIFY changed)
    Q_PROPERTY(QColor secondary READ secondary NOTIFY changed)
    Q_PROPERTY(QColor tertiary READ tertiary NOTIFY changed)
    Q_PROPERTY(QColor red READ red NOTIFY changed)
    Q_PROPERTY(QColor orange READ orange NOTIFY changed)
    Q_PROPERTY(QColor yellow READ yellow NOTIFY changed)
    Q_PROPERTY(QColor green READ green NOTIFY changed)
    Q_PROPERTY(QList<QColor> tints READ tints NOTIFY changed) ///< By Tint.
    // Surfaces and edges.
    Q_PROPERTY(QColor barSurface READ barSurface NOTIFY changed)       ///< Along an edge of a window.
    Q_PROPERTY(QColor figureSurface READ figureSurface NOTIFY changed) ///< Around something to look at.
    Q_PROPERTY(QColor cardSurface READ cardSurface NOTIFY changed)
    Q_PROPERTY(QColor cardEdge READ cardEdge NOTIFY changed)
    Q_PROPERTY(QColor groove READ groove NOTIFY changed) ///< What is not filled, or not chosen.
    Q_PROPERTY(QColor separator READ separator NOTIFY changed)
    Q_PROPERTY(QColor controlEdge READ controlEdge NOTIFY changed)
    Q_PROPERTY(QColor floatingEdge READ floatingEdge NOTIFY changed) ///< Of menus and sheets.
    Q_PROPERTY(QColor ring READ ring NOTIFY changed)                 ///< Around what has the keyboard.
    Q_PROPERTY(qreal pressedOpacity READ pressedOpacity CONSTANT)
    Q_PROPERTY(qreal disabledOpacity READ disabledOpacity CONSTANT)
    // Text styles, in the sizes and weights of a Mac's (Human Interface Guidelines, macOS built-in text
    // styles).
    Q_PROPERTY(QFont largeTitle READ largeTitle CONSTANT)
    Q_PROPERTY(QFont title READ title CONSTANT)
    Q_PROPERTY(QFont title2 READ title2 CONSTANT)
    Q_PROPERTY(QFont title3 READ title3 CONSTANT)
    Q_PROPERTY(QFont question READ question CONSTANT) ///< The title of a confirmation.
    Q_PROPERTY(QFont headline READ headline CONSTANT)
    Q_PROPERTY(QFont body READ body CONSTANT)
    Q_PROPERTY(QFont callout READ callout CONSTANT)
    Q_PROPERTY(QFont subheadline READ subheadline CONSTANT)
    Q_PROPERTY(QFont caption READ caption CONSTANT)
    Q_PROPERTY(QFont caption2 READ caption2 CONSTANT)
    // Measures.
    Q_PROPERTY(qreal cornerRadius READ cornerRadius CONSTANT) ///< Of a card.
    Q_PROPERTY(qreal sheetRadius READ sheetRadius CONSTANT)
    Q_PROPERTY(qreal floatingRadius READ floatingRadius CONSTANT) ///< Of menus.
    Q_PROPERTY(qreal controlRadius READ controlRadius CONSTANT)
    Q_PROPERTY(qreal smallRadius READ smallRadius CONSTANT) ///< Of small controls and tips.
    Q_PROPERTY(qreal itemRadius READ itemRadius CONSTANT)   ///< Of what stands in a menu or a field.
    Q_PROPERTY(qreal tightSpacing READ tightSpacing CONSTANT)
    Q_PROPERTY(qreal closeSpacing READ closeSpacing CONSTANT)
    Q_PROPERTY(qreal spacing READ spacing CONSTANT)
    Q_PROPERTY(qreal wideSpacing READ wideSpacing CONSTANT)
    Q_PROPERTY(qreal rowInset READ rowInset CONSTANT) ///< Beside what stands in the row of a form.
    Q_PROPERTY(qreal controlHeight READ controlHeight CONSTANT)
    Q_PROPERTY(qreal smallControlHeight READ smallControlHeight CONSTANT)

public:
    /// A colour that says something of what is in it.
    enum class Tint { accent, red, orange, yellow, secondary, green };
    Q_ENUM(Tint)

    Theme(bool dark, const QColor& accent) : dark_(dark), accent_(accent) {}

    /// For views: the one that their engine was given.
    static Theme* create(QQmlEngine* engine, QJSEngine*) { return givenTo<Theme>(*engine); }

    /// Every window follows at once.
    void set(bool dark, const QColor& accent);

    [[nodiscard]] bool dark() const { return dark_; }
    [[nodiscard]] QColor accent() const { return accent_; }
    [[nodiscard]] QColor brand() const { return brandOrange; }
    [[nodiscard]] QColor onAccent() const;
    [[nodiscard]] QColor onTint() const { return Qt::white; }
    [[nodiscard]] QColor shade() const { return Qt::black; }
    [[nodiscard]] QColor window() const {
        return dark_ ? QColor(0x26, 0x26, 0x28) : QColor(0xf7, 0xf7, 0xf8);
    }
    [[nodiscard]] QColor control() const {
        return dark_ ? QColor(0x46, 0x46, 0x49) : QColor(0xff, 0xff, 0xff);
    }
    [[nodiscard]] QColor backdrop() const {
        return dark_ ? QColor(0x19, 0x19, 0x1a) : QColor(0xd8, 0xd8, 0xda);
    }
    [[nodiscard]] QColor tip() const { return dark_ ? QColor(0xe6, 0xe6, 0xe8) : QColor(0x3a, 0x3a, 0x3d); }
    [[nodiscard]] QColor onTip() const { return dark_ ? Qt::black : Qt::white; }
    [[nodiscard]] QColor primary() const { return ink(dark_ ? 0.92 : 0.88); }
    [[nodiscard]] QColor secondary() const { return ink(dark_ ? 0.62 : 0.58); }
    [[nodiscard]] QColor tertiary() const { return ink(0.44); }
    // In light windows the colours are a little deeper than lamps would be, because small text is set in
    // them.
    [[nodiscard]] QColor red() const { return dark_ ? QColor(0xff, 0x45, 0x3a) : QColor(0xe0, 0x2d, 0x22); }
    [[nodiscard]] QColor orange() const {
        return dark_ ? QColor(0xff, 0x9f, 0x0a) : QColor(0xd2, 0x6a, 0x00);
    }
    [[nodiscard]] QColor yellow() const {
        return dark_ ? QColor(0xff, 0xd6, 0x0a) : QColor(0xc7, 0x94, 0x00);
    }
    [[nodiscard]] QColor green() const { return dark_ ? QColor(0x30, 0xd1, 0x58) : QColor(0x20, 0x9a, 0x44); }

    [[nodiscard]] QList<QColor> tints() const {
        return {accent(), red(), orange(), yellow(), secondary(), green()};
    }

    [[nodiscard]] QColor barSurface() const { return faded(primary(), 0.03); }
    [[nodiscard]] QColor figureSurface() const { return faded(primary(), 0.04); }
    [[nodiscard]] QColor cardSurface() const { return faded(primary(), 0.05); }
    [[nodiscard]] QColor cardEdge() const { return faded(primary(), 0.07); }
    [[nodiscard]] QColor groove() const { return faded(primary(), 0.08); }
    [[nodiscard]] QColor separator() const { return faded(primary(), 0.08); }
    [[nodiscard]] QColor controlEdge() const { return faded(primary(), 0.14); }
    [[nodiscard]] QColor floatingEdge() const { return faded(primary(), 0.16); }
    [[nodiscard]] QColor ring() const { return faded(accent(), 0.7); }
    [[nodiscard]] qreal pressedOpacity() const { return 0.6; }
    [[nodiscard]] qreal disabledOpacity() const { return 0.45; }

    [[nodiscard]] QFont largeTitle() const { return font(26, QFont::Normal); }
    [[nodiscard]] QFont title() const { return font(22, QFont::Normal); }
    [[nodiscard]] QFont title2() const { return font(17, QFont::Normal); }
    [[nodiscard]] QFont title3() const { return font(15, QFont::Normal); }
    [[nodiscard]] QFont question() const { return font(14, QFont::DemiBold); }
    [[nodiscard]] QFont headline() const { return font(13, QFont::Bold); }
    [[nodiscard]] QFont body() const { return font(13, QFont::Normal); }
    [[nodiscard]] QFont callout() const { return font(12, QFont::Normal); }
    [[nodiscard]] QFont subheadline() const { return font(11, QFont::Normal); }
    [[nodiscard]] QFont caption() const { return font(10, QFont::Normal); }
    [[nodiscard]] QFont caption2() const { return font(10, QFont::Medium); }

    [[nodiscard]] qreal cornerRadius() const { return 8; }
    [[nodiscard]] qreal sheetRadius() const { return 10; }
    [[nodiscard]] qreal floatingRadius() const { return 7; }
    [[nodiscard]] qreal controlRadius() const { return 6; }
    [[nodiscard]] qreal smallRadius() const { return 5; }
    [[nodiscard]] qreal itemRadius() const { return 4; }
    [[nodiscard]] qreal tightSpacing() const { return 4; }
    [[nodiscard]] qreal closeSpacing() const { return 6; }
    [[nodiscard]] qreal spacing() const { return 8; }
    [[nodiscard]] qreal wideSpacing() const { return 10; }
    [[nodiscard]] qreal rowInset() const { return 12; }
    [[nodiscard]] qreal controlHeight() const { return 28; }
    [[nodiscard]] qreal smallControlHeight() const { return 20; }

    /// The colour at this opacity, 0 to 1.
    Q_INVOKABLE [[nodiscard]] static QColor faded(const QColor& color, qreal opacity);
    /// The text style in another weight.
    Q_INVOKABLE [[nodiscard]] static QFont weighted(const QFont& style, int weight);

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] QColor ink(qreal opacity) const { return faded(dark_ ? Qt::white : Qt::black, opacity); }
    [[nodiscard]] static QFont font(int size, QFont::Weight weight);

    bool dark_;
    QColor accent_;
};

using Tint = Theme::Tint;

} // namespace norvane

// The one translation function, for views.
#pragma once

#include <QObject>
#include <QString>

#include "platform/translator.h"

namespace norvane {

class UiTexts : public QObject {
    Q_OBJECT

public:
    explicit UiTexts(const Translator& translator) : translator_(translator) {}

    /// The English text in the user's language.
    Q_INVOKABLE [[nodiscard]] QString text(const QString& english) const {
        return QString::fromStdString(translator_.translate(english.toStdString()));
    }

private:
    const Translator& translator_;
};

} // namespace norvane

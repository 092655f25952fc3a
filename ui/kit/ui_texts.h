// The one translation function, for views.
#pragma once

#include <QObject>
#include <QString>

#include "platform/translator.h"
#include "ui/kit/given_object.h"

namespace norvane {

class UiTexts : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Texts)
    QML_SINGLETON

public:
    explicit UiTexts(const Translator& translator) : translator_(translator) {}

    /// For views: the one that their engine was given.
    static UiTexts* create(QQmlEngine* engine, QJSEngine*) { return givenTo<UiTexts>(*engine); }

    /// The English text in the user's language.
    Q_INVOKABLE [[nodiscard]] QString text(const QString& english) const {
        return QString::fromStdString(translator_.translate(english.toStdString()));
    }

private:
    const Translator& translator_;
};

} // namespace norvane

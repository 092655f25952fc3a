// What the setup guide shows of the program's state, finished: texts in the user's language, and yes or no.
#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QtQmlIntegration>
#include <string_view>

#include "controller/controller_state.h"
#include "platform/translator.h"

namespace norvane {

struct OnboardingContent {
    Q_GADGET
    QML_ANONYMOUS
    // Time Machine's automatic schedule.
    Q_PROPERTY(bool automaticOff MEMBER automaticOff)
    Q_PROPERTY(QString statusSymbol MEMBER statusSymbol)
    Q_PROPERTY(QString status MEMBER status)
    Q_PROPERTY(QString destination MEMBER destination)
    Q_PROPERTY(QString instructionsCaption MEMBER instructionsCaption)
    // The summary.
    Q_PROPERTY(QString schedule MEMBER schedule)
    Q_PROPERTY(QString controlSymbol MEMBER controlSymbol)
    Q_PROPERTY(QString control MEMBER control)

public:
    bool automaticOff = false; ///< False also while it is unknown.
    QString statusSymbol;
    QString status;
    QString destination;
    QString instructionsCaption;
    QString schedule;
    QString controlSymbol;
    QString control;

    bool operator==(const OnboardingContent&) const = default;
};

[[nodiscard]] OnboardingContent onboardingContent(const ControllerState& state, const Translator& texts);

/// A text in which **two asterisks** enclose what is bold, as Qt's StyledText: nothing else in it is markup,
/// and runs of spaces keep their width.
[[nodiscard]] QString styledText(std::string_view marked);
/// The same without the asterisks.
[[nodiscard]] QString unmarkedText(std::string_view marked);

} // namespace norvane

Q_DECLARE_METATYPE(norvane::OnboardingContent)

// Values of the core as views take them.
#pragma once

#include <QString>
#include <QVariantMap>
#include <string_view>

#include "platform/translator.h"

namespace norvane {

[[nodiscard]] inline QString viewText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// Views have one kind of numbers.
[[nodiscard]] inline QVariant viewValue(std::int64_t value) { return static_cast<double>(value); }
[[nodiscard]] inline QVariant viewValue(double value) { return value; }

/// What a picker offers: maps with "label" and "value".
template <class Choices>
[[nodiscard]] QVariantList viewChoices(const Choices& choices, const Translator& texts) {
    QVariantList list;
    for (const auto& choice : choices)
        list.append(QVariantMap{{"label", viewText(texts.translate(choice.label))},
                                {"value", viewValue(choice.value)}});
    return list;
}

} // namespace norvane

// Objects of the program that all views of an engine share, found by the engine and not by a global.
#pragma once

#include <QQmlEngine>
#include <QVariant>

namespace norvane {

/// The object must outlive the engine's views, and stays its maker's.
template <class Type>
void giveTo(QQmlEngine& engine, Type& object) {
    QJSEngine::setObjectOwnership(&object, QJSEngine::CppOwnership);
    engine.setProperty(Type::staticMetaObject.className(), QVariant::fromValue(&object));
}

/// Null when the engine was given none.
template <class Type>
[[nodiscard]] Type* givenTo(const QQmlEngine& engine) {
    return engine.property(Type::staticMetaObject.className()).template value<Type*>();
}

} // namespace norvane

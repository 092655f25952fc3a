// Messages inside the process: who posts one need not know who listens.
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

namespace norvane {

/// Main thread only.
class NotificationCenter : public QObject {
    Q_OBJECT

Q_SIGNALS:
    void posted(const QString& name, const QVariant& object);
};

} // namespace norvane

// Choosing some of the installed applications.
#pragma once

#include <QObject>
#include <QSet>
#include <QtQmlIntegration>
#include <vector>

#include "platform/background.h"
#include "platform/installed_applications.h"
#include "ui/kit/row_list.h"

namespace norvane {

/// Main thread only.
class ApplicationChooser : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(bool open READ open NOTIFY changed)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY changed)
    Q_PROPERTY(int chosenCount READ chosenCount NOTIFY changed)
    /// Those that the search finds, by name: "appId", "name", "icon", "chosen".
    Q_PROPERTY(QObject* found READ found CONSTANT)

public:
    explicit ApplicationChooser(InstalledApplications& applications) : applications_(applications) {}

    [[nodiscard]] bool open() const { return open_; }
    [[nodiscard]] const QString& search() const { return search_; }
    void setSearch(const QString& search);
    [[nodiscard]] int chosenCount() const { return static_cast<int>(chosen_.size()); }
    [[nodiscard]] QAbstractItemModel* found() { return &found_; }

    Q_INVOKABLE void begin();
    Q_INVOKABLE void toggle(const QString& appId);
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void accept();

Q_SIGNALS:
    void changed();
    void accepted(const std::vector<norvane::InstalledApplication>& applications);

private:
    void takeKnown();
    void show();

    InstalledApplications& applications_;
    bool open_ = false;
    QString search_;
    QSet<QString> chosen_; // ids
    std::vector<InstalledApplication> all_;
    RowList found_{{"appId", "name", "icon", "chosen"}};
    const Lifetime lifetime_;
};

} // namespace norvane

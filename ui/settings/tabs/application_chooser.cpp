#include "ui/settings/tabs/application_chooser.h"

#include <algorithm>

#include "ui/kit/view_values.h"

namespace norvane {

namespace {

/// By name as the user's language sorts, capitals or not.
bool comesBefore(const InstalledApplication& left, const InstalledApplication& right) {
    const int order =
        QString::localeAwareCompare(viewText(left.name).toCaseFolded(), viewText(right.name).toCaseFolded());
    return order != 0 ? order < 0 : left.id < right.id;
}

} // namespace

void ApplicationChooser::setSearch(const QString& search) {
    search_ = search;
    show();
}

void ApplicationChooser::begin() {
    search_.clear();
    chosen_.clear();
    open_ = true;
    takeKnown();
    // The user may just have installed what is to be chosen.
    applications_.refresh([this, owner = lifetime_.watch()] {
        if (owner.lock() && open_)
            takeKnown();
    });
}

void ApplicationChooser::takeKnown() {
    all_ = applications_.known();
    std::sort(all_.begin(), all_.end(), comesBefore);
    show();
}

void ApplicationChooser::toggle(const QString& appId) {
    if (!chosen_.remove(appId))
        chosen_.insert(appId);
    show();
}

void ApplicationChooser::cancel() {
    open_ = false;
    Q_EMIT changed();
}

void ApplicationChooser::accept() {
    std::vector<InstalledApplication> chosen;
    std::copy_if(all_.begin(), all_.end(), std::back_inserter(chosen),
                 [this](const InstalledApplication& application) {
                     return chosen_.contains(viewText(application.id));
                 });
    open_ = false;
    Q_EMIT changed();
    Q_EMIT accepted(chosen);
}

void ApplicationChooser::show() {
    QList<QVariantMap> rows;
    const QString wanted = search_.trimmed();
    for (const InstalledApplication& application : all_) {
        const QString id = viewText(application.id);
        const QString name = viewText(application.name);
        if (name.contains(wanted, Qt::CaseInsensitive) || id.contains(wanted, Qt::CaseInsensitive))
            rows.append({{"appId", id},
                         {"name", name},
                         {"icon", viewText(application.icon)},
                         {"chosen", chosen_.contains(id)}});
    }
    found_.set(rows);
    Q_EMIT changed();
}

} // namespace norvane

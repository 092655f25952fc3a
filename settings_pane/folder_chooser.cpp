#include "settings_pane/folder_chooser.h"

#include <algorithm>
#include <utility>

#include "settings_pane/pane_content.h"
#include "ui/kit/view_values.h"

namespace norvane {

FolderChooser::FolderChooser(const BackupSettings& settings, Background& background, const Translator& texts)
    : settings_(settings), background_(background), texts_(texts) {}

void FolderChooser::begin(const QString& title, const std::string& folder, Chosen chosen) {
    title_ = title;
    chosen_ = std::move(chosen);
    open_ = true;
    goTo(folder);
}

QString FolderChooser::shownFolder() const { return shownPath(folder_); }

void FolderChooser::enter(int row) {
    if (row >= 0 && static_cast<std::size_t>(row) < names_.size())
        goTo((folder_ == "/" ? "" : folder_) + "/" + names_[static_cast<std::size_t>(row)]);
}

void FolderChooser::up() {
    const std::size_t slash = folder_.rfind('/');
    goTo(slash == 0 || slash == std::string::npos ? "/" : folder_.substr(0, slash));
}

void FolderChooser::cancel() {
    open_ = false;
    Q_EMIT changed();
}

void FolderChooser::accept() {
    cancel();
    chosen_(folder_);
}

void FolderChooser::goTo(const std::string& folder) {
    folder_ = folder;
    names_.clear();
    rows_.set({});
    note_.clear();
    Q_EMIT changed();
    runInBackground(
        background_, lifetime_, [&settings = settings_, folder] { return settings.foldersIn(folder); },
        [this, folder](std::optional<std::vector<std::string>> names) {
            if (folder == folder_)
                show(std::move(names));
        });
}

void FolderChooser::show(std::optional<std::vector<std::string>> names) {
    if (!names)
        note_ = viewText(texts_.translate("This folder cannot be read."));
    else if (names->empty())
        note_ = viewText(texts_.translate("There are no folders in it."));
    names_ = names.value_or(std::vector<std::string>());
    std::sort(names_.begin(), names_.end(), [](const std::string& one, const std::string& other) {
        const int order =
            QString::localeAwareCompare(shownPath(one).toCaseFolded(), shownPath(other).toCaseFolded());
        return order != 0 ? order < 0 : one < other;
    });
    QList<QVariantMap> rows;
    for (const std::string& name : names_)
        rows.append({{"name", shownPath(name)}});
    rows_.set(rows);
    Q_EMIT changed();
}

} // namespace norvane

// Choosing a folder by walking there.
#pragma once

#include <QObject>
#include <QtQmlIntegration>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/background.h"
#include "platform/translator.h"
#include "timemachine_linux/settings/backup_settings.h"
#include "ui/kit/row_list.h"

namespace norvane {

/// Main thread only. Paths are plain bytes: any folder can be reached, whatever its name.
class FolderChooser : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(bool open READ open NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString folder READ shownFolder NOTIFY changed)
    Q_PROPERTY(bool canGoUp READ canGoUp NOTIFY changed)
    Q_PROPERTY(QString note READ note NOTIFY changed) ///< In place of the list.
    Q_PROPERTY(QObject* rows READ rows CONSTANT)      ///< "name".

public:
    using Chosen = std::function<void(const std::string& folder)>;

    FolderChooser(const BackupSettings& settings, Background& background, const Translator& texts);

    /// Starts in the folder. `title` is in the user's language.
    void begin(const QString& title, const std::string& folder, Chosen chosen);

    [[nodiscard]] bool open() const { return open_; }
    [[nodiscard]] const QString& title() const { return title_; }
    [[nodiscard]] QString shownFolder() const;
    [[nodiscard]] bool canGoUp() const { return folder_ != "/"; }
    [[nodiscard]] const QString& note() const { return note_; }
    [[nodiscard]] QAbstractItemModel* rows() { return &rows_; }

    Q_INVOKABLE void enter(int row);
    Q_INVOKABLE void up();
    Q_INVOKABLE void cancel();
    /// The folder that is shown.
    Q_INVOKABLE void accept();

Q_SIGNALS:
    void changed();

private:
    void goTo(const std::string& folder);
    void show(std::optional<std::vector<std::string>> names);

    const BackupSettings& settings_;
    Background& background_;
    const Translator& texts_;
    bool open_ = false;
    QString title_;
    std::string folder_ = "/";
    Chosen chosen_;
    std::vector<std::string> names_;
    QString note_;
    RowList rows_{{"name"}};
    Lifetime lifetime_;
};

} // namespace norvane

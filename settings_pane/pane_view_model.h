// The Time Machine pane without its view.
#pragma once

#include <QObject>
#include <QtQmlIntegration>
#include <deque>
#include <memory>

#include "platform/time/timers.h"
#include "platform/workspace.h"
#include "settings_pane/folder_chooser.h"
#include "settings_pane/pane_content.h"

namespace norvane {

/// What it works with; all of it must outlive the view-model and all background work.
struct PaneServices {
    BackupSettings& settings;
    Timers& timers;
    Background& background;
    Workspace& workspace;
    const Formats& formats;
    const Translator& translator;
    std::string home;
};

/// Main thread only. While shown it looks every 3 seconds: drives come and go, and other programs change the
/// settings, too. Changes are made one after another, in the user's order, and show at once as they will be.
class PaneViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(norvane::PaneContent content READ content NOTIFY changed)
    Q_PROPERTY(bool known READ known NOTIFY changed)        ///< False until everything was read once.
    Q_PROPERTY(bool busy READ busy NOTIFY changed)          ///< What shows is not yet known to be so.
    Q_PROPERTY(QString trouble READ trouble NOTIFY changed) ///< Why the last change was not made.
    Q_PROPERTY(QVariantList frequencies READ frequencies CONSTANT)
    Q_PROPERTY(QObject* sources READ sources CONSTANT)       ///< "path", "removable".
    Q_PROPERTY(QObject* exclusions READ exclusions CONSTANT) ///< The same.
    // Choosing the backup disk.
    Q_PROPERTY(bool choosingDisk READ choosingDisk NOTIFY changed)
    /// "name", "details", "network", "usable", "chosen".
    Q_PROPERTY(QObject* offers READ offers CONSTANT)
    Q_PROPERTY(QString offersNote READ offersNote NOTIFY changed) ///< In place of offers.
    Q_PROPERTY(bool canUseDisk READ canUseDisk NOTIFY changed)
    Q_PROPERTY(QStringList diskNotices READ diskNotices NOTIFY changed) ///< About the chosen one.
    // The options.
    Q_PROPERTY(bool showsOptions READ showsOptions NOTIFY changed)
    Q_PROPERTY(norvane::FolderChooser* folderChooser READ folderChooser CONSTANT)

public:
    explicit PaneViewModel(const PaneServices& services);
    ~PaneViewModel() override;

    void opened();
    /// What was changed is still made.
    void closed();
    /// A change is not made yet.
    [[nodiscard]] bool changing() const { return !changes_.empty(); }

    [[nodiscard]] const PaneContent& content() const { return content_; }
    [[nodiscard]] bool known() const { return known_; }
    [[nodiscard]] bool busy() const { return busy_; }
    [[nodiscard]] const QString& trouble() const { return trouble_; }
    [[nodiscard]] QVariantList frequencies() const;
    [[nodiscard]] QAbstractItemModel* sources() { return &sources_; }
    [[nodiscard]] QAbstractItemModel* exclusions() { return &exclusions_; }
    [[nodiscard]] bool choosingDisk() const { return choosingDisk_; }
    [[nodiscard]] QAbstractItemModel* offers() { return &offers_; }
    [[nodiscard]] QString offersNote() const;
    [[nodiscard]] bool canUseDisk() const;
    [[nodiscard]] QStringList diskNotices() const;
    [[nodiscard]] bool showsOptions() const { return showsOptions_; }
    [[nodiscard]] FolderChooser* folderChooser() { return &folderChooser_; }

    Q_INVOKABLE void browseBackups();
    Q_INVOKABLE void setFrequency(int frequency); ///< PaneContent::Frequency.
    Q_INVOKABLE void showOptions(bool show);

    Q_INVOKABLE void chooseDisk();
    Q_INVOKABLE void selectOffer(int row);
    Q_INVOKABLE void chooseDiskFolder();
    Q_INVOKABLE void useDisk();
    Q_INVOKABLE void cancelDisk();

    Q_INVOKABLE void addSource();
    Q_INVOKABLE void removeSource(int row);
    Q_INVOKABLE void addExclusion();
    Q_INVOKABLE void removeExclusion(int row);

Q_SIGNALS:
    void changed();

private:
    struct Change {
        enum Subject { disk, frequency, folders } subject;
        const char* complaint; ///< To be filled in with what went wrong.
        std::function<std::optional<Failure>(BackupSettings&)> make; ///< Off the main thread.
    };

    void look();
    void read();
    void take(BackupSettingsState state);
    void lookForDrives();
    /// Makes the change when those before it are made, then reads anew.
    void change(Change change);
    void makeNextChange();
    void changeMade(const std::optional<Failure>& failure);
    [[nodiscard]] bool hasLaterChoice(const Change& change) const;
    void showState();
    void showOffers();
    [[nodiscard]] const DestinationOffer* chosenOffer() const;
    [[nodiscard]] QString text(const char* english) const;

    const PaneServices services_;
    BackupSettingsState state_;
    PaneContent content_;
    bool known_ = false;
    bool busy_ = false;
    std::deque<Change> changes_; // the first one is being made
    QString trouble_;
    int readings_ = 0; // begun; only the last one counts, and none that began before a change was made
    bool reading_ = false;
    RowList sources_{{"path", "removable"}};
    RowList exclusions_{{"path", "removable"}};
    bool choosingDisk_ = false;
    bool offersKnown_ = false;
    int looks_ = 0; // for drives; only the last one counts
    bool looking_ = false;
    std::vector<DestinationOffer> drives_;
    std::optional<DestinationOffer> folderOffer_; // a folder that the user went to
    std::optional<std::string> chosenFolder_;
    RowList offers_{{"name", "details", "network", "usable", "chosen"}};
    bool showsOptions_ = false;
    FolderChooser folderChooser_;
    std::unique_ptr<Timer> ticker_; // runs while the window is shown
    Lifetime lifetime_;
};

} // namespace norvane

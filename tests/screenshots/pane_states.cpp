#include "tests/screenshots/pane_states.h"

namespace norvane::screenshots {

namespace {

constexpr Instant morning = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{9};

void useDisk(PaneScene& scene) {
    scene.settings.state.disk = BackupDisk{"Backup Disk",
                                           "/media/anna/Backup Disk",
                                           "/media/anna/Backup Disk/desk",
                                           true,
                                           612'400'000'000,
                                           plusSeconds(morning, -3600),
                                           {}};
    scene.settings.state.frequency = BackupFrequency::manual;
    scene.settings.state.exclusions = {"/home/anna/Downloads", "/home/anna/Videos/Raw footage"};
}

void offerDrives(PaneScene& scene) {
    scene.settings.mounted = {
        {"/media/anna/Backup Disk", false, 612'400'000'000, {}},
        {"/media/anna/HOLIDAY", false, 31'200'000'000, {DestinationProblem::noHardLinks, "exfat", "", ""}},
        {"/mnt/nas", true, {}, {}},
        {"/srv/archive", false, 84'000'000'000, {DestinationProblem::none, "ext4", "", "/home/anna"}}};
}

void chooseDisk(PaneScene& scene) {
    scene.model.chooseDisk();
    scene.settle();
}

} // namespace

PaneScene::PaneScene() : time(morning) {
    settings.state.sources = {"/home/anna"};
    settings.folders["/home/anna"] = {"Documents", "Downloads", "Music",  "Pictures",
                                      "Projects",  "Templates", "Videos", "caf\xe9 (Latin 1)",
                                      "Public",    "Games",     "Mail",   "Sheets"};
}

const std::vector<PaneState>& paneStates() {
    static const std::vector<PaneState> states = {
        {"empty", [](PaneScene&) {}},
        {"disk", useDisk},
        {"disk-new",
         [](PaneScene& scene) {
             useDisk(scene);
             scene.settings.state.disk->latestBackup.reset();
             scene.settings.state.disk->backupsFolder.clear();
         }},
        {"disk-away",
         [](PaneScene& scene) {
             useDisk(scene);
             scene.settings.state.disk->connected = false;
             scene.settings.state.disk->backupsFolder.clear();
         }},
        {"notices",
         [](PaneScene& scene) {
             useDisk(scene);
             scene.settings.state.disk->name = "Backups of the large desk in the very long room upstairs";
             scene.settings.state.disk->folder =
                 "/home/anna/Backups of the large desk in the very long room upstairs";
             scene.settings.state.disk->verdict = {DestinationProblem::none, "ext4", "/home/anna",
                                                   "/home/anna"};
             scene.settings.state.frequency = BackupFrequency::hourlyWithoutTimer;
         }},
        {"disks", offerDrives,
         [](PaneScene& scene) {
             chooseDisk(scene);
             scene.model.selectOffer(3);
         }},
        {"disks-none", [](PaneScene&) {}, chooseDisk},
        {"folders", [](PaneScene&) {},
         [](PaneScene& scene) {
             chooseDisk(scene);
             scene.model.chooseDiskFolder();
             scene.settle();
         }},
        {"options", useDisk, [](PaneScene& scene) { scene.model.showOptions(true); }},
        {"options-new", [](PaneScene&) {}, [](PaneScene& scene) { scene.model.showOptions(true); }},
        {"options-saving", useDisk,
         [](PaneScene& scene) {
             scene.model.showOptions(true);
             scene.model.setFrequency(PaneContent::everyHour);
         }},
        {"saving", offerDrives,
         [](PaneScene& scene) {
             chooseDisk(scene);
             scene.model.selectOffer(0);
             scene.model.useDisk();
         }},
        {"options-trouble", useDisk,
         [](PaneScene& scene) {
             scene.model.showOptions(true);
             scene.settings.trouble = "Failed to connect to bus: No medium found";
             scene.model.setFrequency(PaneContent::everyHour);
             scene.settle();
         }},
    };
    return states;
}

} // namespace norvane::screenshots

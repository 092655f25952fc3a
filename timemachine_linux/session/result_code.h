// How a backup attempt ended: the RESULT of the preferences, and the worker's exit status.
#pragma once

#include <string>

namespace norvane {

/// Stored in people's preferences and shown to them as a number: values never change their meaning.
enum class ResultCode : int {
    success = 0,
    failed = 1,                 ///< Something outside the other cases; the message says what.
    noDestination = 2,          ///< No destination is configured.
    destinationUnavailable = 3, ///< The destination's folder or its marker is not there.
    destinationFull = 4,        ///< No space, or no quota, left on the destination.
    destinationFailing = 5,     ///< The destination refuses or loses data (I/O error, read-only).
    copyFailed = 6,             ///< rsync ended with an error that leaves the copy incomplete.
    stopped = 7,                ///< Stopped on request; nothing is wrong.
    rsyncMissing = 8,           ///< rsync is not installed.
    nothingToBackUp = 9,        ///< No source folder exists, or all are excluded.
};

/// Why a backup failed. None where a backup may have failed: it succeeded.
struct BackupFailure {
    ResultCode code = ResultCode::failed;
    std::string text; ///< For a person.
};

} // namespace norvane

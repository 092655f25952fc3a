#!/usr/bin/env bash
# What the idle program costs: its memory, its threads and its wake-ups in a minute, on a session bus and in a home
# folder of its own. Give QT_QPA_PLATFORM=xcb to see it on the running X server instead of without a display. Rss
# bounds Pss from above: other programs that have the same libraries loaded make Pss smaller. The pooled threads
# work for the polls, and wait for the child processes; those have no share in the figures.
#
# Usage: idle_program.sh NORVANE [settling seconds]
set -euo pipefail

norvane=$(realpath "$1")
settling=${2:-70} # past the checks of the start and the launch grace
minute=60

if [ -z "${IDLE_PROFILE:-}" ]; then
    IDLE_PROFILE=$(mktemp -d)
    export IDLE_PROFILE
    trap 'rm -rf "$IDLE_PROFILE"' EXIT
    mkdir -p "$IDLE_PROFILE"/{home/Documents,disk,runtime}
    chmod 700 "$IDLE_PROFILE/runtime"
    export HOME=$IDLE_PROFILE/home XDG_RUNTIME_DIR=$IDLE_PROFILE/runtime QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
    unset XDG_CONFIG_HOME XDG_STATE_HOME XDG_CACHE_HOME XDG_DATA_HOME
    tmutil=${norvane%/*}/../libexec/norvane/tmutil
    "$tmutil" setdestination "$IDLE_PROFILE/disk"
    "$tmutil" disable
    "${tmutil%tmutil}defaults" write org.norvane.Norvane onboardingDone.v1 -bool true
    dbus-run-session -- "$0" "$norvane" "$settling"
    exit
fi

"$norvane" &
process=$!
trap 'kill "$process"' EXIT
sleep "$settling"

declare -A name first last
# Threads that work for a poll outlive it by a second, so that none is missed. A thread's count starts at what it
# had when the minute began, or at 0 when it came later.
sample() {
    local folder thread count
    for folder in "/proc/$process/task"/*; do
        thread=${folder##*/}
        count=$(awk '/^voluntary/ { print $2 }' "$folder/status" 2>/dev/null) || continue
        [ -n "$count" ] || continue
        name[$thread]=${name[$thread]:-$(cat "$folder/comm" 2>/dev/null || true)}
        first[$thread]=${first[$thread]:-$1}
        [ "${first[$thread]}" != now ] || first[$thread]=$count
        last[$thread]=$count
    done
}

end=$((SECONDS + minute))
sample now
threads=${#last[@]}
while [ "$SECONDS" -lt "$end" ]; do
    sleep 0.3
    sample 0
done

awk '/^(Rss|Pss|Private_Dirty):/ { printf "%-14s %.1f MB\n", $1, $2 / 1024 }' "/proc/$process/smaps_rollup"
echo "Threads:       $threads"
total=0
for thread in "${!last[@]}"; do
    wakeUps=$((last[$thread] - first[$thread]))
    total=$((total + wakeUps))
    [ "$thread" != "$process" ] || name[$thread]="(main)"
    echo "Wake-ups:      $wakeUps in a minute, thread ${name[$thread]}"
done
echo "Wake-ups:      $total in a minute, all threads"

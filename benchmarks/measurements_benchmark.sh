#!/usr/bin/env bash
# How long the condition probes hold the program: with every service well, and with every one of them frozen. The
# services are real ones on a bus of their own, the destination lies on a FUSE mount, and a plain file stands for a
# camera that nobody uses.
#
# Usage: measurements_benchmark.sh MEASUREMENTS_BENCHMARK [processes] [entries]
set -euo pipefail

benchmark=$(realpath "$1")
processes=${2:-200}
entries=${3:-200}

if [ -z "${MEASURING_FOLDER:-}" ]; then
    MEASURING_FOLDER=$(mktemp -d)
    export MEASURING_FOLDER
    trap 'umount "$MEASURING_FOLDER/disk" 2>/dev/null || true; rm -rf "$MEASURING_FOLDER"' EXIT
    mkdir -p "$MEASURING_FOLDER"/{runtime,data/applications,bin,disk,dev}
    chmod 700 "$MEASURING_FOLDER/runtime"
    touch "$MEASURING_FOLDER/dev/video0"
    export XDG_RUNTIME_DIR=$MEASURING_FOLDER/runtime HOME=$MEASURING_FOLDER XDG_DATA_HOME=$MEASURING_FOLDER/data
    dbus-run-session -- "$0" "$benchmark" "$processes" "$entries" 2>/dev/null
    exit
fi

export DBUS_SYSTEM_BUS_ADDRESS=$DBUS_SESSION_BUS_ADDRESS
for i in $(seq "$entries"); do
    printf '[Desktop Entry]\nType=Application\nName=Application %d\nName[fr]=Programme %d\nComment=x\nExec=sleep %%u\n' \
        "$i" "$i" >"$XDG_DATA_HOME/applications/org.example.App$i.desktop"
done

services=()
start() {
    "$@" >/dev/null &
    services+=($!)
}
trap 'kill -CONT "${services[@]}"; kill "${services[@]}"' EXIT
start /usr/libexec/upowerd
start /usr/bin/python3 -m dbusmock --system --template power_profiles_daemon
start pipewire
start /usr/bin/python3 -c 'import sys; from fusepy import FUSE, Operations
FUSE(Operations(), sys.argv[1], foreground=True, attr_timeout=0, entry_timeout=0)' "$MEASURING_FOLDER/disk"
sleep 0.5
start wireplumber
start pipewire-pulse
frozen=("${services[@]}")
for ((i = 0; i < processes; i++)); do
    start sleep 1000
done
sleep 2

echo "Well, $(ls -d /proc/[1-9]* | wc -l) processes, $entries applications:"
"$benchmark" "$MEASURING_FOLDER/dev" "$MEASURING_FOLDER/disk/backups"
echo "Frozen:"
kill -STOP "${frozen[@]}"
"$benchmark" "$MEASURING_FOLDER/dev" "$MEASURING_FOLDER/disk/backups"

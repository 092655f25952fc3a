#!/usr/bin/env bash
# What the age of the event log costs the Activity tab: the same measurements over logs of three sizes, on an X
# server of its own and with software rendering.
#
# Usage: activity_benchmark.sh ACTIVITY_BENCHMARK
set -euo pipefail

benchmark=$(realpath "$1")
[ -n "${ACTIVITY_DISPLAY:-}" ] || exec env ACTIVITY_DISPLAY=1 QT_QPA_PLATFORM=xcb xvfb-run -a "$0" "$benchmark"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
for megabytes in 1 100 1000; do
    echo "$megabytes MB: $("$benchmark" "$log" "$megabytes" 2>/dev/null)"
done
echo "Load: $(cut -d' ' -f1-3 /proc/loadavg)"

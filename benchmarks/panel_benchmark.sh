#!/usr/bin/env bash
# How long the panel takes to open, on an X server of its own and with software rendering: the median of several
# programs that open it for the first time, and of many later openings.
#
# Usage: panel_benchmark.sh PANEL_BENCHMARK [programs]
set -euo pipefail

benchmark=$(realpath "$1")
programs=${2:-11}
[ -n "${PANEL_DISPLAY:-}" ] || exec env PANEL_DISPLAY=1 QT_QPA_PLATFORM=xcb xvfb-run -a "$0" "$benchmark" "$programs"

middle() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)], "ms, from", v[1], "to", v[NR] }'; }
lines=$(for ((i = 0; i < programs; ++i)); do "$benchmark" 20 2>/dev/null; done)
echo "First opening: $(awk '/^first/ { print $2 }' <<<"$lines" | middle)"
echo "Later ones:    $(awk '/^later/ { print $2 }' <<<"$lines" | middle)"
echo "Load:          $(cut -d' ' -f1-3 /proc/loadavg)"

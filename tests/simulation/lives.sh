#!/usr/bin/env bash
# Many lives of a year each, on all cores, a process each: lives.sh SIMULATE COUNT [FIRST_SEED]
set -euo pipefail
export simulate=$1
first=${3:-1}

live() { # SEED
    timeout 300 "$simulate" 1 "$1" && return # some hundred times what one takes
    printf '\nThe life of seed %s failed (%s). Repeat it: scripts/simulate --years 1 --seed %s --one\n' "$1" $? "$1"
    return 1
}
export -f live

seq "$first" $((first + $2 - 1)) | xargs -P "$(nproc)" -I SEED bash -c 'live SEED' ||
    { echo "Some of $2 lives broke a rule."; exit 1; }
echo "$2 lives from seed $first on: no rule was broken."

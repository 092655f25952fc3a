# Shared by the scripts: installing what is missing, and building a preset. Sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '\n==> %s\n' "$*"; }

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# install_packages KIND…: the Debian packages of these kinds that are not there yet.
install_packages() {
    local kinds missing=() package
    kinds=$(IFS='|'; echo "$*")
    for package in $(sed -nE "s/^($kinds) (.*)/\2/p" "$root/scripts/packages.txt"); do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    say "Installing ${#missing[@]} packages: ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# The tracked files of these patterns, one a line. Also where the checkout belongs to somebody else than root.
tracked_files() {
    local files
    files=$(git -C "$root" -c safe.directory="$root" ls-files "$@")
    [ -n "$files" ] || { echo "no files found: $*" >&2; return 1; }
    printf '%s\n' "$files"
}

# build PRESET [TARGET…]
build() {
    local preset=$1
    shift
    say "Building Norvane (preset $preset; the first time takes a few minutes)"
    (cd "$root" && cmake --preset "$preset" >"$root/build-$preset.log" 2>&1) ||
        { cat "$root/build-$preset.log"; exit 1; }
    rm -f "$root/build-$preset.log"
    cmake --build "$root/build/$preset" --parallel "$(nproc)" ${1:+--target "$@"}
}

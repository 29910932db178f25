#!/usr/bin/env bash
# tools/fresh.sh [CTEST-ARGUMENT...]: the two commands of the README as on a machine that was only just set up: a
# minimal Debian 12 with the packages that install.sh names and nothing else, no network, a clean checkout. What a
# developer's machine has by chance (a library's development files, a tool, a font) is not there. Needs root.
set -euo pipefail

# Second part, in name spaces of its own: no network, and the mounts are gone with the last process.
if [[ ${1:-} == --inside ]]; then
  root=$2 cache=$3
  shift 3
  mount -t proc proc "$root/proc"
  mount --rbind /dev "$root/dev"
  mount -t tmpfs tmpfs "$root/tmp"
  if [[ $cache ]]; then mount --bind "$cache" "$root/mnt"; fi
  exec chroot "$root" env -i PATH=/usr/bin:/bin HOME=/root CCACHE_DIR=/mnt ${TV_WERROR:+TV_WERROR="$TV_WERROR"} \
    bash -euo pipefail -c '
      cd "$0"
      ./run.sh | tee /tmp/shown
      grep -q "^Muzzle velocity" /tmp/shown
      echo "run.sh: $SECONDS s"
      ./test.sh "$@"
      echo "run.sh and test.sh: $SECONDS s"' "$PWD" "$@"
fi

cd "$(dirname "$0")/.."
[[ $(id -u) == 0 ]] || { echo "fresh.sh: only root can make a system in a folder" >&2; exit 1; }
tools/install.sh fresh

root=$(mktemp -d -t ternovale-fresh.XXXXXX)
trap 'rm -rf --one-file-system "$root"' EXIT
include=$(tools/install.sh --list build test | paste -sd,)
cache=
if command -v ccache >/dev/null; then  # what was compiled here before need not be again: it only saves time
  include+=,ccache
  cache=$(ccache --get-config cache_dir)
  mkdir -p "$cache"
fi
# The mirror that this machine uses itself, if it is a Debian 12.
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Codename: bookworm' 'Component: main' | head -1)
mmdebstrap --quiet --variant=essential --include="$include" --dpkgopt=force-unsafe-io \
  bookworm "$root" ${mirror:+"$mirror"}
echo "a minimal system: $SECONDS s, $(du -sm "$root" | cut -f1) MB"
# The checkout stands at its own path, so that the compiler is called with the same words as here.
mkdir -p "$root$PWD"
git -c safe.directory="$PWD" ls-files -z | tar --create --null --files-from=- | tar --extract --directory="$root$PWD"
unshare --mount --net --pid --fork --kill-child bash tools/fresh.sh --inside "$root" "$cache" "$@"

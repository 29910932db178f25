#!/usr/bin/env bash
# tools/install.sh [--list] GROUP...: installs from Debian's packages what is missing of the groups build, test, ci,
# fresh and portable; with --list it names their packages instead. Nothing missing: no call of apt-get, no rights needed.
set -euo pipefail

declare -A packages=(
  [build]="g++ cmake ninja-build pkg-config qt6-base-dev qt6-svg-dev libxlsxwriter-dev zlib1g-dev libcli11-dev
           nlohmann-json3-dev libfmt-dev libgtest-dev libbenchmark-dev qt6-qpa-plugins
           qt6-translations-l10n libminizip-dev libpugixml-dev"
  [test]="clang fonts-dejavu-core poppler-utils unzip"
  [ci]="git clang-format libclang-rt-14-dev dpkg-dev lintian desktop-file-utils appstream
        shared-mime-info libglib2.0-bin"
  [fresh]="mmdebstrap util-linux"
  [portable]="patchelf xz-utils"
)

list=
if [[ ${1:-} == --list ]]; then
  list=yes
  shift
fi
missing=()
for group in "$@"; do
  [[ -n ${packages[$group]:-} ]] || { echo "install.sh: no such group: $group" >&2; exit 2; }
  for package in ${packages[$group]}; do
    [[ $list ]] && echo "$package" && continue
    dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
  done
done
((${#missing[@]})) || exit 0

echo "Installing from Debian's packages: ${missing[*]}"
root=()
if [[ $(id -u) != 0 ]]; then
  if ! command -v sudo >/dev/null; then
    echo "These packages are missing and need an administrator:" >&2
    echo "    apt-get install --no-install-recommends ${missing[*]}" >&2
    exit 1
  fi
  root=(sudo)
fi
"${root[@]}" apt-get update -q
"${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -yq --no-install-recommends "${missing[@]}"

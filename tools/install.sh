#!/usr/bin/env bash
# tools/install.sh GROUP...: installs from Debian's packages what is missing of the groups build, test and ci.
# Nothing missing: no call of apt-get, no rights needed. PROGRAM=PACKAGE is there when the program is, from whatever
# package: the office program without windows would drive out one with windows.
set -euo pipefail

declare -A packages=(
  [build]="g++ cmake ninja-build pkg-config qt6-base-dev qt6-svg-dev libxlsxwriter-dev libcli11-dev
           nlohmann-json3-dev libfmt-dev libgtest-dev libbenchmark-dev qt6-qpa-plugins
           qt6-translations-l10n"
  [test]="clang fonts-dejavu-core soffice=libreoffice-calc-nogui poppler-utils unzip"
  [ci]="git clang-format libclang-rt-14-dev dpkg-dev lintian desktop-file-utils appstream shared-mime-info
        libglib2.0-bin"
)

missing=()
for group in "$@"; do
  [[ -n ${packages[$group]:-} ]] || { echo "install.sh: no such group: $group" >&2; exit 2; }
  for package in ${packages[$group]}; do
    if [[ $package == *=* ]]; then
      command -v "${package%%=*}" >/dev/null || missing+=("${package#*=}")
    else
      dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
    fi
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

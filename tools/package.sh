#!/usr/bin/env bash
# tools/package.sh [BUILD]: builds the Debian package (preset package), checks it, unpacks it into a scratch folder and
# lets the installed programs find their data there. The package stays in BUILD (build/package).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/package}
share=usr/share
id=org.ternovale.Ternovale
load=data/loads/308_winchester_168.dat
fail() { echo "package: $*" >&2; exit 1; }

cmake --preset package -B "$build"
cmake --build "$build"
rm -f "$build"/*.deb
(umask 022 && cd "$build" && cpack)
deb=$(echo "$build"/*.deb)
dpkg-deb --info "$deb"

echo "checking $deb"
# The manual is read by the program where it lies; the third tag takes a plural for a mistake.
lintian --allow-root --display-info --fail-on error,warning,info --suppress-tags \
  package-contains-documentation-outside-usr-share-doc,binary-has-unneeded-section,spelling-error-in-binary "$deb"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
root=$scratch/root
dpkg-deb -x "$deb" "$root"

desktop-file-validate "$root/$share/applications/$id.desktop"
appstreamcli validate --no-net "$root/$share/metainfo/$id.metainfo.xml"
for page in ternovale ternovale-cli; do
  gzip -t "$root/$share/man/man1/$page.1.gz" || fail "man page of $page"
done
# The file manager tells a load by what stands in it, and leaves other .dat files alone.
update-mime-database "$root/$share/mime" >/dev/null
type_of() { XDG_DATA_HOME=$scratch XDG_DATA_DIRS="$root/$share:/usr/share" gio info -a standard::content-type "$1"; }
if command -v gio >/dev/null; then
  for file in "$root/$share/ternovale"/data/loads/*.dat; do
    type_of "$file" | grep -q application/x-ternovale-load || fail "not taken for a load: $(basename "$file")"
  done
  printf 'x=1\n[startup]\n' >"$scratch/other.dat"
  if type_of "$scratch/other.dat" | grep -q ternovale; then fail "takes any .dat for a load"; fi
fi
if grep -rqaF "$PWD" "$root"; then fail "the package names the folder it was built in"; fi

# Neither needs a display.
for option in --version --help; do
  env -i PATH=/usr/bin:/bin "$root/usr/bin/ternovale" $option | grep -qi ternovale || fail "ternovale $option"
done
[[ $("$root/usr/bin/ternovale" --version) == "$("$root/usr/bin/ternovale-cli" --version)" ]] || fail "two versions"

# The same figures from the installed program, in an empty home, as from the build tree.
mkdir "$scratch/home"
shot() { env -i HOME="$scratch/home" PATH=/usr/bin:/bin LC_ALL=C.UTF-8 "$1/ternovale-cli" --language english shot "$2" --format json; }
shot "$root/usr/bin" "$root/$share/ternovale/$load" >"$scratch/installed.json"
shot "$PWD/$build/bin" "share/$load" >"$scratch/built.json"
cmp "$scratch/installed.json" "$scratch/built.json" || fail "the installed program gives other figures"
grep -q '"pMax"' "$scratch/installed.json" || fail "no result from the installed program"
if [[ -n $(find "$scratch/home" -type f) ]]; then fail "a shot wrote into the home folder"; fi
echo "$deb is good: $(du -k "$deb" | cut -f1) KB"

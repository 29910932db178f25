#!/usr/bin/env bash
# tools/portable.sh [BUILD]: packs both programs with the libraries of Qt and all that these need into one archive that
# runs from a folder or a stick: an x86-64 desktop with Debian 12's C library or newer, nothing to install. The programs
# stand in the archive's folder itself, with lan/ and data/ beside them, so that they keep their files there. As root the
# archive is tried in a system without Qt. The programs are those of the package (BUILD, build/package).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/package}
qt=/usr/lib/x86_64-linux-gnu/qt6/plugins
fail() { echo "portable: $*" >&2; exit 1; }
tools/install.sh build portable

cmake --preset package -B "$build"
cmake --build "$build"
work=$(mktemp -d -t ternovale-portable.XXXXXX)
trap 'rm -rf --one-file-system "$work"' EXIT
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
name=ternovale-$version-x86_64
top=$work/$name
mkdir -p "$top/lib" "$top/translations" "$top/licences"

DESTDIR=$work/installed cmake --install "$build" --strip >/dev/null
mv "$work/installed/usr/share/ternovale"/* "$work/installed/usr/bin"/* "$top/"
cp share/icons/*.svg LICENSE docs/licences.md "$top/licences/"
cp /usr/share/qt6/translations/qtbase_{de,fr,ru}.qm "$top/translations/"
printf '[Paths]\nPrefix=.\nPlugins=plugins\nTranslations=translations\n' >"$top/qt.conf"
for plugin in platforms/libqxcb platforms/libqoffscreen iconengines/libqsvgicon imageformats/libqjpeg \
    imageformats/libqsvg platforminputcontexts/libcomposeplatforminputcontextplugin \
    platforminputcontexts/libibusplatforminputcontextplugin printsupport/libcupsprintersupport; do
  install -D "$qt/$plugin.so" "$top/plugins/$plugin.so"
done

# Everything that is linked, but for the C and C++ libraries that every system has and that must be the newest.
mapfile -t linked < <(find "$top" -maxdepth 1 -type f -perm -u+x; find "$top/plugins" -name '*.so')
ldd "${linked[@]}" | sed -n 's/.*=> \(\/.*\) (0x.*/\1/p' | sort -u |
  grep -Ev '/(libc|libm|libdl|librt|libpthread|libresolv|libstdc\+\+|libgcc_s)\.so' >"$work/libraries"
while read -r library; do
  cp -L "$library" "$top/lib/"
  package=$(dpkg -S "*/${library##*/}" | sed -n '1s/:.*//p')
  cp "/usr/share/doc/$package/copyright" "$top/licences/$package.txt"
done <"$work/libraries"
# The old kind of search path holds for the libraries of libraries and for what is loaded later.
patchelf --force-rpath --set-rpath '$ORIGIN/lib' "$top/ternovale" "$top/ternovale-cli"

tar --create --sort=name --owner=0 --group=0 --numeric-owner --mtime=@0 --directory="$work" "$name" |
  xz -T0 >"$build/$name.tar.xz"
echo "$build/$name.tar.xz: $(du -m "$build/$name.tar.xz" | cut -f1) MB, $(wc -l <"$work/libraries") libraries"

[[ $(id -u) == 0 ]] || { echo "Not root: not tried in a system without Qt"; exit 0; }
tools/install.sh fresh
root=$work/root
mmdebstrap --quiet --variant=essential --include=libstdc++6,fonts-dejavu-core --dpkgopt=force-unsafe-io bookworm "$root"
tar --extract --file="$build/$name.tar.xz" --directory="$root/opt"
mkdir -p "$root/root/Documents"
try() {
  unshare --mount --net bash -c 'mount -t proc proc "$0/proc" && exec chroot "$0" env -i HOME=/root LC_ALL=C.UTF-8 \
    QT_QPA_PLATFORM=offscreen bash -c "cd /opt/$1 && $2"' "$root" "$name" "$1"
}
try 'ls -d /usr/lib/*/libQt* 2>/dev/null' && fail "a system with Qt is no trial"
load=data/loads/308_winchester_168.dat
try "./ternovale-cli --language english shot $load" | grep -q '^Muzzle velocity' || fail "no shot"
missing=$(try 'LD_LIBRARY_PATH=lib ldd $(find plugins -name "*.so") | grep "not found"') && fail "missing: $missing"
# The window program starts, reads the load and ends only when it is told to.
touch "$work/before"
status=0
try "timeout 5 ./ternovale $load 2>/dev/null" || status=$?
[[ $status == 124 ]] || fail "the window program ended with $status"
try "printf 'open load %s\nmenu rech\nanswer ok\nmenu Ende\n' $load | ./ternovale-cli play -" >/dev/null || fail "play"
find "$root/root" "$root/home" -type f -newer "$work/before" | grep . && fail "files outside the folder"
find "$root/opt/$name" -name ternofw.set | grep -q . || fail "no settings in the folder"
echo "tried in a system without Qt"

#!/usr/bin/env bash
# Builds the Debian package build/package/tarvix_VERSION_amd64.deb from the
# default build and checks what it holds: the desktop entry and the AppStream
# metainfo validate, the file type compiles and its magic is what a dump
# starts with, the man pages format without warnings, and the dependencies
# were computed.
#
# With --install it then installs the package with apt-get (again, when it is
# there already) and runs both programs from their installed paths without a
# display. That changes the system, so it is asked for, not the default.
set -euo pipefail
cd "$(dirname "$0")/.."

install=false
case "${1:-}" in
    --install) install=true ;;
    "") ;;
    *) echo "usage: scripts/package.sh [--install]" >&2; exit 2 ;;
esac

scripts/setup.sh

echo "== package: build"
cmake --preset default
cmake --build --preset default --target tarvix tarvix-cli tarvix_packaging
rm -rf build/package
# cpack builds nothing: it installs what was built above into its staging
# tree and strips the copies there.
cpack --config build/default/CPackConfig.cmake -B build/package

version=$(sed -n 's/^set(CPACK_PACKAGE_VERSION "\(.*\)")$/\1/p' build/default/CPackConfig.cmake)
deb=build/package/tarvix_${version}_amd64.deb
[ -f "$deb" ] || { echo "package: $deb was not made" >&2; exit 1; }

fail() { echo "package: $*" >&2; exit 1; }

echo "== package: check $deb"
contents=$(mktemp -d)
trap 'rm -rf "$contents"' EXIT
dpkg-deb -x "$deb" "$contents/root"
share=$contents/root/usr/share
for file in usr/bin/tarvix usr/bin/tarvix-cli \
    usr/share/applications/example.quillon.Tarvix.desktop \
    usr/share/metainfo/example.quillon.Tarvix.metainfo.xml \
    usr/share/mime/packages/tarvix.xml \
    usr/share/icons/hicolor/scalable/apps/tarvix.svg \
    usr/share/icons/hicolor/{16x16,24x24,32x32,48x48,64x64,128x128,256x256}/apps/tarvix.png \
    usr/share/man/man1/tarvix.1.gz usr/share/man/man1/tarvix-cli.1.gz; do
    [ -s "$contents/root/$file" ] || fail "$file is missing"
done
file "$share/icons/hicolor/256x256/apps/tarvix.png" | grep -q "256 x 256" || fail "the 256 px icon is not 256 px"

# desktop-file-validate exits 0 on some errors ("will be fatal in the
# future"), so anything it says fails the check.
status=0
said=$(desktop-file-validate "$share/applications/example.quillon.Tarvix.desktop" 2>&1) || status=$?
[ "$status" -eq 0 ] && [ -z "$said" ] || fail "desktop-file-validate: $said"
appstreamcli validate --no-net "$share/metainfo/example.quillon.Tarvix.metainfo.xml"

for page in tarvix tarvix-cli; do
    # -ww turns on every troff warning; any output fails.
    warnings=$(zcat "$share/man/man1/$page.1.gz" | LC_ALL=C.UTF-8 groff -man -ww -z 2>&1)
    [ -z "$warnings" ] || fail "$page.1: $warnings"
done

# The type compiles into a MIME database, and its magic is how a dump the
# program writes really starts.
mkdir -p "$contents/mime/packages"
cp "$share/mime/packages/tarvix.xml" "$contents/mime/packages/"
XDG_DATA_HOME=$contents update-mime-database "$contents/mime"
grep -qx '50:application/x-mmt8-sysex:\*\.syx' "$contents/mime/globs2" || fail "the .syx glob did not compile"
grep -aq '^\[60:application/x-mmt8-sysex\]' "$contents/mime/magic" || fail "the dump magic did not compile"
"$contents/root/usr/bin/tarvix-cli" new -o "$contents/blank.syx" >/dev/null
magic=$(sed -n 's/.*<match .*value="\([^"]*\)".*/\1/p' "$share/mime/packages/tarvix.xml" | tr -d '\\x')
[ -n "$magic" ] || fail "the MIME type has no magic"
[ "$(head -c $((${#magic} / 2)) "$contents/blank.syx" | od -An -tx1 | tr -d ' \n')" = "$magic" ] \
    || fail "a dump does not start with the MIME type's magic $magic"

depends=$(dpkg-deb -f "$deb" Depends)
echo "package: Depends: $depends"
for library in libc6 libstdc++6 libqt6widgets6 libqt6svg6 libasound2; do
    [[ "$depends" == *"$library"* ]] || fail "Depends lacks $library"
done

if $install; then
    echo "== package: install and run"
    as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    # --reinstall: a second run replaces the same version instead of skipping it.
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --reinstall "./$deb"
    for program in tarvix tarvix-cli; do
        line=$(env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "/usr/bin/$program" --version)
        [ "$line" = "$program $version" ] || fail "/usr/bin/$program --version said '$line'"
        echo "package: /usr/bin/$program --version: $line"
    done
fi
echo "package: $deb is good"

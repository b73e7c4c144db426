#!/usr/bin/env bash
# package.sh <build tree> <product id>: packs the program that was built there, and looks into the
# package.
set -euo pipefail

build=$1
id=$2
export LC_ALL=C.UTF-8
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Packed under a umask that hides everything, it is open to everyone all the same.
(umask 077 && cd "$build" && cpack -G DEB -B "$scratch/made")
package=$(echo "$scratch"/made/mivora_*.deb)
lintian --allow-root --fail-on error,warning "$package"

root=$scratch/root
dpkg-deb -x "$package" "$root"
entry=$root/usr/share/applications/$id.desktop
value() { sed -n "s/^$1=//p" "$entry"; }
{
  printf '%s\n' "bin/$(value Exec)" share/applications/"$id".desktop share/man/man1/mivora.1.gz \
    share/metainfo/"$id".metainfo.xml share/doc/mivora/{changelog.gz,copyright} \
    share/icons/hicolor/scalable/apps/"$(value Icon)".svg
  printf "share/icons/hicolor/%s/apps/$(value Icon).png\n" \
    {16x16,22x22,24x24,32x32,48x48,64x64,128x128,256x256,512x512}
} | sort >"$scratch/expected"
find "$root/usr" ! -type d -printf '%P\n' | sort | diff "$scratch/expected" -
# The class of the windows is the name of the program's file.
diff <(value StartupWMClass) <(value Exec)

appstreamcli validate --no-net "$root/usr/share/metainfo/$id.metainfo.xml"
{
  # The validator of Debian 12 does not know version 1.5 yet, which brought this key.
  sed '/^SingleMainWindow=/d; s/^Version=1.5/Version=1.4/' "$entry" >"$scratch/$id.desktop"
  desktop-file-validate "$scratch/$id.desktop"
  man --warnings -E UTF-8 -l -Tutf8 -Z "$root/usr/share/man/man1/mivora.1.gz" >/dev/null
} 2>&1 | (! grep .)

DESTDIR=$scratch/installed cmake --install "$build" --prefix /usr --strip >/dev/null
diff -r "$root" "$scratch/installed"

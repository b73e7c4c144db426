#!/bin/bash
# Renders svg/<folder>/<name>.svg to <folder>/<name>.png and <folder>/<name>@2x.png,
# and the application icon in the sizes only the desktop asks for to ../packaging/icons.
# Needs rsvg-convert (Debian: librsvg2-bin).
set -euo pipefail
export LC_ALL=C

cd "$(dirname "${BASH_SOURCE[0]}")"
tmp=$(mktemp)
trap 'rm -f "$tmp"' EXIT
status=0

render() { # source, target, zoom
    rsvg-convert --format=png --zoom="$3" --output="$tmp" "$1"
    mkdir -p "$(dirname "$2")"
    # An unchanged picture keeps its time stamp.
    cmp -s "$tmp" "$2" || install -m 644 "$tmp" "$2"
}

resource() { # source, target, zoom
    render "$@"
    if ! grep -qF ">$2</file>" mvr.qrc; then
        echo "mvr.qrc does not list $2" >&2
        status=1
    fi
}

desktop() { # source, size, zoom
    render "$1" "../packaging/icons/mivora_$2.png" "$3"
}

while IFS= read -r source; do
    name=${source#svg/}
    name=${name%.svg}
    resource "$source" "$name.png" 1
    resource "$source" "$name@2x.png" 2
done < <(find svg -path svg/desktop -prune -o -name '*.svg' -print | sort)

desktop svg/desktop/one_22.svg 22 1
desktop svg/desktop/one_24.svg 24 1
desktop svg/icons/one_256.svg 64 0.25
desktop svg/icons/one_256.svg 128 0.5
desktop svg/icons/one_256.svg 512 2

exit "$status"

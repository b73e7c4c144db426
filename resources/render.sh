#!/bin/bash
# Renders svg/<folder>/<name>.svg to <folder>/<name>.png and <folder>/<name>@2x.png.
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
    if ! grep -qF ">$2</file>" mvr.qrc; then
        echo "mvr.qrc does not list $2" >&2
        status=1
    fi
}

while IFS= read -r source; do
    name=${source#svg/}
    name=${name%.svg}
    render "$source" "$name.png" 1
    render "$source" "$name@2x.png" 2
done < <(find svg -name '*.svg' | sort)

exit "$status"

#!/usr/bin/env bash
# Draws resources/wallpapers/*.jpg and resources/varnelo.ico from the drawings in this folder. The results are committed;
# run it after changing a drawing. Needs the Debian packages librsvg2-bin and imagemagick.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
resources=$here/../../resources
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
magick=/usr/bin/convert
mkdir -p "$resources/wallpapers"

python3 "$here/busy.py" >"$work/busy.svg"
cp "$here/dark.svg" "$here/light.svg" "$work/"
for name in dark light busy; do
    # The drawings have a margin of 100 pixels, since a blur fades at the edge of what is drawn.
    rsvg-convert "$work/$name.svg" -o "$work/$name.png"
    # A trace of noise hides the steps of a gradient; the seed keeps the file the same.
    "$magick" "$work/$name.png" -crop 1920x1200+100+100 +repage -seed 7 -attenuate 0.06 +noise Gaussian -sampling-factor 4:2:0 -quality 88 -strip \
        -define jpeg:extent=290kb "$resources/wallpapers/$name.jpg"
    echo "wallpapers/$name.jpg: $(stat -c %s "$resources/wallpapers/$name.jpg") bytes"
done

# Small sizes are drawn from a drawing of their own: fewer, bolder parts.
for size in 16 24 32 48 64 256; do
    drawing=icon.svg
    ((size > 32)) || drawing=icon_small.svg
    rsvg-convert -w "$size" -h "$size" "$here/$drawing" -o "$work/icon_$size.png"
done
"$magick" "$work"/icon_{16,24,32,48,64,256}.png "$resources/varnelo.ico"
echo "varnelo.ico: $(stat -c %s "$resources/varnelo.ico") bytes"

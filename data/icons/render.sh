#!/usr/bin/env bash
# Renders the application icon's PNG sizes from the two drawings, for the
# hicolor theme: lexsmith-16.svg is drawn pixel by pixel for 16 pixels, where
# the scalable lexsmith.svg would blur; 32 pixels and up come from lexsmith.svg,
# whose edges sit on whole pixels at 32 and its multiples.
# The PNGs are kept in the repository, so a build needs no SVG renderer; run
# this (needs rsvg-convert, Debian package librsvg2-bin) after changing a drawing.
set -euo pipefail
cd "$(dirname "$0")"
rsvg-convert -w 16 -h 16 lexsmith-16.svg -o 16.png
for size in 32 48 64 128 256; do
  rsvg-convert -w "$size" -h "$size" lexsmith.svg -o "$size.png"
done

#!/usr/bin/env bash
# Regenerates resources/skins/*.skn: draws the two skin folders and packs
# them with our skinpack (build it first, or point SKINPACK at it).
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
skinpack=${SKINPACK:-$root/build/tools/skinpack/skinpack}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 "$root/scripts/skins/make_skins.py" "$work" ${PREVIEW:+--preview}
mkdir -p "$root/resources/skins"
"$skinpack" pack "$work/light" "$root/resources/skins/Lexsmith Light.skn"
"$skinpack" pack "$work/dark" "$root/resources/skins/Lexsmith Dark.skn"
if [ -n "${PREVIEW:-}" ]; then cp "$work"/*-preview.png "$root/resources/skins/"; fi

#!/usr/bin/env bash
# Builds Lexsmith and starts the editor on the bundled Lua example, with the
# bundled application data folder (examples/appdata: syntax/, skins/,
# Scribex.ini). Installs what it needs first. LEXSMITH_APPDATA names another
# data folder: examples/appdata-skinned starts with the Light skin.
#
# With a display the window opens as usual. Without one the editor runs under
# xvfb-run, writes a picture of its main window and says where.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)" --target lexsmith
export LEXSMITH_APPDATA="${LEXSMITH_APPDATA:-$PWD/examples/appdata}"
example="examples/lua.syx"
if [[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]]; then
    exec build/lexsmith "$example"
fi
shot="$PWD/build/lexsmith-main-window.png"
echo "No display: running the editor under xvfb-run to take a picture of it."
LEXSMITH_SCREENSHOT="$shot" xvfb-run -a -s "-screen 0 1024x768x24" build/lexsmith "$example"
echo "The main window with $example open: $shot"

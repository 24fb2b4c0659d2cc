#!/usr/bin/env bash
# Builds Lexsmith and shows the bundled Lua example. Installs what it needs first.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)" --target syxtool
example="examples/lua.syx"
echo "== $example as the editor reads it"
build/tools/syxtool/syxtool dump "$example"
echo "== $example as the editor writes it back"
out="$(mktemp --suffix=.syx)"
build/tools/syxtool/syxtool normalize "$example" "$out"
cat "$out"
rm -f "$out"

#!/usr/bin/env bash
# Runs the Windows build (scripts/build-windows.sh) under Wine: the core
# tests (one run of the whole test program), the syxtool and skinpack
# end-to-end scripts, and syxtool.exe against the Linux syxtool on every
# example and test document, byte for byte.
#
#   scripts/test-windows.sh [BUILD_DIR]
#
# The Linux syxtool is LINUX_SYXTOOL, else build/tools/syxtool/syxtool, else
# one built here (in BUILD_DIR/host). Wine runs in a prefix of its own under
# BUILD_DIR, with Windows-1252 as its ANSI code page and no display.
set -euo pipefail
cd "$(dirname "$0")/.."
build="${1:-build-windows}"
root="$PWD"

wine=""
for w in /usr/lib/wine/wine64 "$(command -v wine64 || true)" "$(command -v wine || true)"; do
  if [ -n "$w" ] && [ -x "$w" ]; then wine="$w"; break; fi
done
[ -n "$wine" ] || { echo "test-windows: wine64 is not installed (scripts/build-windows.sh installs it)" >&2; exit 1; }
wineserver="$(dirname "$wine")/wineserver"
[ -x "$wineserver" ] || wineserver="$(command -v wineserver)"

unset DISPLAY WAYLAND_DISPLAY
export WINEDEBUG=-all WINEPREFIX="$root/$build/wineprefix" WINEDLLOVERRIDES="mscoree,mshtml="
# Wine takes the ANSI code page from the locale's language: the C locale is
# US English, Windows-1252. The UTF-8 charset makes Windows names UTF-8 names
# on the Linux side. The core tests check the code page they get.
export LC_ALL=C.UTF-8 LEXSMITH_WINDOWS_ACP=1252
unset LEXSMITH_CODEPAGE LEXSMITH_APPDATA

mkdir -p "$WINEPREFIX"
# One server for the whole run, so that each program starts quickly (it may
# be running already); it ends with the run.
"$wineserver" -p 2>/dev/null || true
trap '"$wineserver" -k 2>/dev/null || true' EXIT
# Booting the prefix (created the first time) starts Wine's background
# services here, with their output going to the log: started by the first
# test instead, they would keep that test's output pipe open and ctest would
# wait for it until the time limit.
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  "$wine" wineboot.exe --init > "$build/wineboot.log" 2>&1 < /dev/null || { cat "$build/wineboot.log"; exit 1; }
else
  "$wine" wineboot.exe > "$build/wineboot.log" 2>&1 < /dev/null || { cat "$build/wineboot.log"; exit 1; }
fi

echo "== ctest under Wine"
ctest --test-dir "$build" --output-on-failure -j2 --timeout 600

# ---- syxtool.exe writes what the Linux syxtool writes

linux_syxtool="${LINUX_SYXTOOL:-$root/build/tools/syxtool/syxtool}"
if [ ! -x "$linux_syxtool" ]; then
  cmake -S . -B "$build/host" -G Ninja -DCMAKE_BUILD_TYPE=Release -DLEXSMITH_BUILD_UI=OFF \
        -DLEXSMITH_BUILD_TESTS=OFF -DLEXSMITH_BUILD_BENCH=OFF > /dev/null
  cmake --build "$build/host" -j"${JOBS:-$(nproc)}" --target syxtool > /dev/null
  linux_syxtool="$root/$build/host/tools/syxtool/syxtool"
fi
win_syxtool="$root/$build/tools/syxtool/syxtool.exe"

echo "== syxtool.exe against $linux_syxtool"
work="$root/$build/same-bytes"
rm -rf "$work"
mkdir -p "$work/linux" "$work/windows"
failures=0
compared=0
# Runs one command with both programs; the exit codes, the output and any
# written file must be the same bytes.
both() {
  local tag="$1" out="$2"; shift 2
  local lrc=0 wrc=0
  (cd "$work/linux" && env LEXSMITH_CODEPAGE= "$linux_syxtool" "${@//@OUT@/$out}" > "$tag.stdout" 2> /dev/null) || lrc=$?
  (cd "$work/windows" && "$wine" "$win_syxtool" "${@//@OUT@/$out}" > "$tag.stdout" 2> /dev/null) || wrc=$?
  compared=$((compared + 1))
  if [ "$lrc" != "$wrc" ]; then
    echo "DIFFERS $tag: exit $lrc on Linux, $wrc on Windows"; failures=$((failures + 1)); return
  fi
  if ! cmp -s "$work/linux/$tag.stdout" "$work/windows/$tag.stdout"; then
    echo "DIFFERS $tag: output"; failures=$((failures + 1)); return
  fi
  if [ -n "$out" ] && ! cmp "$work/linux/$out" "$work/windows/$out"; then
    echo "DIFFERS $tag: $out"; failures=$((failures + 1))
  fi
}
for f in examples/*.syx tests/data/document/*.syx; do
  name="$(basename "$f" .syx)"
  both "$name.normalize" "$name.out.syx" normalize "$root/$f" @OUT@
  both "$name.dump" "" dump "$root/$f"
  both "$name.check" "" check "$root/$f"
  both "$name.html" "" highlight "$root/$f"
  both "$name.ansi" "" highlight "$root/$f" --format ansi
done

# File names are narrow, in the ANSI code page: a name of Windows-1252
# characters (the euro sign is the byte 0x80) reaches its file both ways...
cp examples/lua.syx "$work/café €.syx"
both "ansi-name" "sortie é€.syx" normalize "$work/café €.syx" @OUT@
[ -f "$work/windows/sortie é€.syx" ] || { echo "DIFFERS ansi-name: no file 'sortie é€.syx'"; failures=$((failures + 1)); }
# ...and one outside the code page cannot be named: the program says so.
cp examples/lua.syx "$work/кот.syx"
rc=0
(cd "$work/windows" && "$wine" "$win_syxtool" dump "$work/кот.syx" > /dev/null 2> err.txt) || rc=$?
if [ "$rc" != 1 ] || ! grep -q "Cannot open file" "$work/windows/err.txt"; then
  echo "UNEXPECTED: a name outside Windows-1252 gave exit $rc: $(cat "$work/windows/err.txt")"
  failures=$((failures + 1))
fi

echo "syxtool.exe and syxtool: $compared runs compared, $failures differ"
[ "$failures" -eq 0 ]

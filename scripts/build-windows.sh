#!/usr/bin/env bash
# Cross-builds the core, syxtool.exe, skinpack.exe and the core tests for
# 64-bit Windows into build-windows/ with Debian's MinGW-w64 compilers,
# linked statically. Installs what it needs from the Debian archive first.
#
#   scripts/build-windows.sh [BUILD_DIR]
#
# JOBS sets the number of compile jobs (default: the number of processors).
# ccache is used when installed; CCACHE_DIR chooses its cache as usual.
set -euo pipefail
cd "$(dirname "$0")/.."
build="${1:-build-windows}"

# g++-mingw-w64-x86-64-posix: the compiler flavour with std::thread;
# wine64 runs the tests (scripts/test-windows.sh); googletest: its sources.
packages=(g++-mingw-w64-x86-64-posix wine64 googletest cmake ninja-build ccache)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$PWD}" CCACHE_NOHASHDIR=1
cmake -S . -B "$build" -G Ninja \
      -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-w64-x86_64.cmake" \
      -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" \
      -DLEXSMITH_BUILD_UI=OFF -DLEXSMITH_BUILD_BENCH=OFF -DLEXSMITH_BUILD_TESTS=ON \
      -DLEXSMITH_GTEST_SOURCE_DIR=/usr/src/googletest
cmake --build "$build" -j"${JOBS:-$(nproc)}" --target syxtool skinpack lexsmith_core_tests

for exe in "$build/tools/syxtool/syxtool.exe" "$build/tools/skinpack/skinpack.exe" \
           "$build/tests/lexsmith_core_tests.exe"; do
  # Statically linked: no DLL of the compiler's run-time may be needed.
  if x86_64-w64-mingw32-objdump -p "$exe" | grep -iE "DLL Name: (libstdc|libgcc|libwinpthread)"; then
    echo "build-windows: $exe needs a run-time DLL" >&2
    exit 1
  fi
done
echo "build-windows: $build/tools/syxtool/syxtool.exe $build/tools/skinpack/skinpack.exe"

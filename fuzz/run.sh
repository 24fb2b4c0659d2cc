#!/usr/bin/env bash
# Builds the fuzzing harnesses with clang and runs each for SECONDS seconds,
# one after the other, on a copy of its seed corpus (fuzz/corpus/<target>),
# so the tree's corpus is never written. A crash, leak, timeout, sanitizer
# report or an allocation beyond what the input justifies fails the run; its
# reproducer is kept in the work folder and its path printed.
#
#   fuzz/run.sh SECONDS [BUILD_DIR]       (default build-fuzz)
#
# CXX names the compiler (default clang++-14, else clang++); JOBS the
# build's parallel jobs (default: the number of processors).
set -uo pipefail

if [ $# -lt 1 ] || ! [[ "$1" =~ ^[0-9]+$ ]] || [ "$1" -lt 1 ]; then
  echo "usage: $0 SECONDS [BUILD_DIR]" >&2
  exit 2
fi
seconds="$1"
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${2:-$root/build-fuzz}"
case "$build" in /*) ;; *) build="$PWD/$build" ;; esac
work="$build/fuzz-run"

cxx="${CXX:-}"
if [ -z "$cxx" ]; then
  if command -v clang++-14 > /dev/null; then cxx=clang++-14; else cxx=clang++; fi
fi

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DLEXSMITH_FUZZ=ON \
      -DLEXSMITH_BUILD_UI=OFF -DLEXSMITH_BUILD_TESTS=OFF -DLEXSMITH_BUILD_BENCH=OFF > /dev/null ||
  exit 1
cmake --build "$build" --target fuzz_all -j"${JOBS:-$(nproc)}" || exit 1

# Input caps: the syntax and skin files are often larger than the rest.
# The largest allocation allowed for one input (fuzz/FuzzHarness.h) is 64
# bytes for each input byte plus at most 64 MiB, so 128 MiB at 1 MiB of
# input; a single allocation over 256 MiB is reported by libFuzzer itself
# even if that check were missing.
declare -A max_len=([syx]=1048576 [skin_reader]=1048576 [skin_data]=1048576)
targets=(syx skin_reader skin_data bmp lzh quickini html ini_text ini_binary tree_items
         header_sections)

symbolizer="$(command -v llvm-symbolizer || true)"
for candidate in /usr/lib/llvm-14/bin/llvm-symbolizer /usr/bin/llvm-symbolizer-14; do
  [ -z "$symbolizer" ] && [ -x "$candidate" ] && symbolizer="$candidate"
done
export ASAN_OPTIONS="detect_leaks=1:allocator_may_return_null=0${symbolizer:+:external_symbolizer_path=$symbolizer}"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"

rm -rf "$work"
failed=()
printf '%-16s %12s %10s  %s\n' target executions exec/s result
for t in "${targets[@]}"; do
  dir="$work/$t"
  mkdir -p "$dir/corpus" "$dir/artifacts"
  cp "$root/fuzz/corpus/$t/"* "$dir/corpus/"
  "$build/fuzz/fuzz_$t" "$dir/corpus" -max_total_time="$seconds" -timeout=10 \
    -rss_limit_mb=2048 -malloc_limit_mb=256 -max_len="${max_len[$t]:-65536}" \
    -print_final_stats=1 -artifact_prefix="$dir/artifacts/" > "$dir/log.txt" 2>&1
  rc=$?
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$dir/log.txt" | tail -1)
  speed=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$dir/log.txt" | tail -1)
  result=ok
  if [ $rc -ne 0 ] || [ -n "$(ls -A "$dir/artifacts")" ] ||
     grep -qE '^==[0-9]+==ERROR|runtime error:|==lexsmith-fuzz==|ERROR: libFuzzer' "$dir/log.txt"; then
    result="FAILED (exit $rc)"
    failed+=("$t")
  fi
  printf '%-16s %12s %10s  %s\n' "$t" "${runs:-?}" "${speed:-?}" "$result"
  if [ "$result" != ok ]; then
    grep -E 'ERROR|runtime error|==lexsmith-fuzz==|SUMMARY' "$dir/log.txt" | head -5 | sed 's/^/    /'
    for f in "$dir/artifacts/"*; do [ -e "$f" ] && echo "    reproducer: $f"; done
    echo "    log: $dir/log.txt"
  fi
done

if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: ${#failed[@]} target(s) failed: ${failed[*]}" >&2
  exit 1
fi
echo "fuzz: every target ran ${seconds}s without a finding"

#!/usr/bin/env bash
# Feeds syxtool truncated, binary, huge-line and random files. Every run must
# end with status 0 or 1 (a clear error), within the time limit, and without
# a sanitizer report when the tool is built with sanitizers.
set -u
syxtool="$1"; examples="$2"; work="$3"
rm -rf "$work"; mkdir -p "$work"
export ASAN_OPTIONS=exitcode=90 UBSAN_OPTIONS=halt_on_error=1:exitcode=91

n=0
for f in "$examples"/*.syx; do
  size=$(stat -c %s "$f")
  for cut in 1 2 3 7 $((size / 3)) $((size / 2)) $((size - 1)); do
    # The counter goes up here, not in the redirection: that runs in the
    # child of the external command.
    head -c "$cut" "$f" > "$work/cut$n.syx"
    n=$((n + 1))
  done
done
cp "$syxtool" "$work/binary.syx"
head -c 300000 /dev/urandom > "$work/random.syx"
for seed in 1 2 3 4 5; do
  head -c $((seed * 7919)) /dev/urandom | tr -c '[]{}"\\|+>=;/\n\r\t#12a-z' 'p' > "$work/symbols$seed.syx"
done
{ printf '[AutoComplete]\r\n"t"\r\n->"'; head -c 2000000 /dev/zero | tr '\0' '\\'; printf '"\r\n'; } > "$work/hugeline.syx"
{ printf '[Tags]\n'; head -c 3000000 /dev/zero | tr '\0' '{'; } > "$work/braces.syx"
printf '\xff\xfe' > "$work/mark.syx"; head -c 4001 /dev/urandom >> "$work/mark.syx"
printf '\xfe\xff' > "$work/markbe.syx"; head -c 4000 /dev/urandom >> "$work/markbe.syx"
printf '\xef\xbb\xbf' > "$work/utf8.syx"; head -c 4000 /dev/urandom >> "$work/utf8.syx"

status=0
for f in "$work"/*.syx; do
  for cmd in dump normalize; do
    if [ $cmd = dump ]; then args=("$f"); else args=("$f" "$work/out.tmp"); fi
    timeout 60 "$syxtool" $cmd "${args[@]}" > /dev/null 2> "$work/err.txt"
    rc=$?
    if [ $rc -ne 0 ] && [ $rc -ne 1 ]; then
      echo "syxtool $cmd $(basename "$f"): exit $rc"; cat "$work/err.txt"; status=1
    fi
  done
done
exit $status

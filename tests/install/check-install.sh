#!/usr/bin/env bash
# Installs the build into a fresh prefix, compares the files there with the
# expected list, and runs the installed programs from that prefix with the
# current folder at / and no resource folder given: they must need nothing of
# the source or build tree.
#
#   check-install.sh BUILD_DIR WORK_DIR EXPECTED_LIST APP_ID VERSION
set -euo pipefail
build=$1 work=$2 expected=$3 id=$4 version=$5

fail() { echo "check-install: $*" >&2; exit 1; }

rm -rf "$work"
mkdir -p "$work/appdata"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >"$work/install.log" ||
  { cat "$work/install.log" >&2; fail "cmake --install failed"; }

(cd "$prefix" && find . -mindepth 1 ! -type d | sed 's|^\./||' | LC_ALL=C sort) >"$work/actual.txt"
grep -v '^#' "$expected" | sed "s/@ID@/$id/g" | LC_ALL=C sort >"$work/expected.txt"
diff -u "$work/expected.txt" "$work/actual.txt" >&2 || fail "the installed files differ from $expected"

for program in lexsmith syxtool skinpack; do
  [ -x "$prefix/bin/$program" ] || fail "bin/$program is not executable"
  # A run path into the build tree would hide a missing library.
  if command -v readelf >/dev/null && readelf -d "$prefix/bin/$program" | grep -Eq 'R(UN)?PATH'; then
    fail "bin/$program keeps a run path: $(readelf -d "$prefix/bin/$program" | grep -E 'R(UN)?PATH')"
  fi
done

cd /
unset LEXSMITH_RESOURCES
for tool in syxtool skinpack; do
  out=$("$prefix/bin/$tool" --version) || fail "$tool --version failed"
  [ "$out" = "$tool $version" ] || fail "$tool --version printed '$out', not '$tool $version'"
done
"$prefix/bin/syxtool" dump "$prefix/share/lexsmith/examples/lua.syx" >/dev/null ||
  fail "syxtool cannot read the installed example"
"$prefix/bin/skinpack" list "$prefix/share/lexsmith/skins/Lexsmith Dark.skn" >/dev/null ||
  fail "skinpack cannot read the installed skin"

# The editor opens the installed example, paints its window with the images and
# form data built into it, writes a picture and quits.
QT_QPA_PLATFORM=offscreen LEXSMITH_APPDATA=$work/appdata LEXSMITH_SCREENSHOT=$work/window.png \
  timeout 60 "$prefix/bin/lexsmith" "$prefix/share/lexsmith/examples/lua.syx" >"$work/lexsmith.log" 2>&1 ||
  { cat "$work/lexsmith.log" >&2; fail "the installed lexsmith did not start"; }
[ -s "$work/window.png" ] || fail "the installed lexsmith wrote no picture"
# Bash completion of the installed tools, where bash-completion is installed:
# the commands of syxtool come from its usage text, files are filtered by type.
completion=/usr/share/bash-completion/bash_completion
if [ -r "$completion" ]; then
  mkdir -p "$work/files/folder"
  touch "$work/files/a.syx" "$work/files/b.txt" "$work/files/c.skn"
  got=$(cd "$work/files" && PATH=$prefix/bin:$PATH bash -c '
    source "$1"
    source "$2/syxtool"
    source "$2/skinpack"
    candidates() { # the completions of a line, the cursor at its end
      COMP_LINE=$1 COMP_POINT=${#1}
      read -ra COMP_WORDS <<<"$1"
      [[ $1 == *" " ]] && COMP_WORDS+=("")
      COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
      COMPREPLY=()
      "_${COMP_WORDS[0]}" "${COMP_WORDS[0]}" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
      echo "$1|$(printf "%s\n" "${COMPREPLY[@]}" | LC_ALL=C sort | tr "\n" " ")"
    }
    candidates "syxtool "
    candidates "syxtool dump "
    candidates "syxtool normalize a.syx "
    candidates "skinpack "
    candidates "skinpack unpack c.skn "
    candidates "skinpack info "
  ' - "$completion" "$prefix/share/bash-completion/completions")
  expect() {
    grep -qxF -- "$1|$2" <<<"$got" ||
      fail "completing '$1' gave '$(grep -F -- "$1|" <<<"$got" | cut -d'|' -f2-)', not '$2'"
  }
  for word in --help --version dump normalize; do
    grep -q -- "^syxtool |\(.* \)\{0,1\}$word " <<<"$got" ||
      fail "completing 'syxtool ' gave '$(grep '^syxtool |' <<<"$got" | cut -d'|' -f2-)', without $word"
  done
  expect "syxtool dump " "a.syx folder "
  expect "syxtool normalize a.syx " "a.syx b.txt c.skn folder "
  expect "skinpack " "--help --version expand info list pack unpack "
  expect "skinpack unpack c.skn " "folder "
  expect "skinpack info " "c.skn folder "
fi

echo "check-install: $(wc -l <"$work/actual.txt") files installed as expected; the programs run from $prefix"

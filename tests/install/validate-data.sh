#!/usr/bin/env bash
# Checks the configured desktop files with the desktop's own tools: the
# desktop entry (desktop-file-validate), the AppStream record (appstreamcli),
# the file type (update-mime-database must map *.syx to it, and the desktop
# entry must name it) and the manual pages (man's warnings). A check whose
# tool is missing is passed over with a message; with none of them the test
# is skipped (exit status 77).
#
#   validate-data.sh DATA_BUILD_DIR APP_ID MIME_TYPE
set -uo pipefail
data=$1 id=$2 mime=$3

ran=0 failed=0
missing() { echo "validate-data: $1 not found, $2 not checked"; }
bad() { echo "validate-data: $*" >&2; failed=1; }

# Errors and warnings fail, hints do not: one suggests Utility beside
# TextEditor, and the program belongs under Development.
if command -v desktop-file-validate >/dev/null; then
  ran=1
  if ! out=$(desktop-file-validate "$data/$id.desktop" 2>&1) || grep -v ': hint: ' <<<"$out" | grep -q .; then
    bad "desktop-file-validate: $out"
  fi
else
  missing desktop-file-validate "the desktop entry"
fi

if command -v appstreamcli >/dev/null; then
  ran=1
  # Errors and warnings fail; notes do not (newer AppStream versions note
  # tags they have renamed), nor do pedantic hints (the id's capital letter).
  if ! out=$(appstreamcli validate --no-net --no-color "$data/$id.metainfo.xml" 2>&1) ||
    grep -q '^[EW]: ' <<<"$out"; then
    bad "appstreamcli validate: $out"
  fi
else
  missing appstreamcli "the AppStream record"
fi

if command -v update-mime-database >/dev/null; then
  ran=1
  tmp=$(mktemp -d)
  mkdir -p "$tmp/mime/packages"
  cp "$data/mime/$id.xml" "$tmp/mime/packages/"
  if out=$(XDG_DATA_HOME=$tmp update-mime-database "$tmp/mime" 2>&1) && [ -z "$out" ]; then
    grep -qx "[0-9]*:$mime:\*\.syx" "$tmp/mime/globs2" ||
      bad "the MIME database does not map *.syx to $mime"
  else
    bad "update-mime-database: $out"
  fi
  rm -rf "$tmp"
else
  missing update-mime-database "the file type"
fi
grep -qx "MimeType=$mime;" "$data/$id.desktop" || bad "the desktop entry does not name $mime"

if command -v man >/dev/null; then
  ran=1
  for page in "$data"/man/*.1; do
    out=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l "$page" 2>&1 >/dev/null) ||
      bad "man failed on $page"
    [ -z "$out" ] || bad "man: $page: $out"
  done
else
  missing man "the manual pages"
fi

[ "$failed" -eq 0 ] || exit 1
[ "$ran" -eq 1 ] || { echo "validate-data: no checker installed, skipped"; exit 77; }
echo "validate-data: all checks passed"

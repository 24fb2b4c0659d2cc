# shellcheck shell=bash
# Helpers for the end-to-end run: the X server and window manager, the
# editor's process and windows, keys and clicks, files on disk. Sourced by
# run.sh, which sets LEXSMITH, SYXTOOL, EXAMPLES and WORK first.
#
# Every wait here ends after a few seconds at most: a program that never shows
# a window or never writes a file fails its case instead of hanging the run.

E2E_WAIT=${E2E_WAIT:-4}         # seconds to wait for a window, a file, an exit
E2E_POPUP_WAIT=${E2E_POPUP_WAIT:-2} # menus appear at once when they appear at all

XVFB_PID=
WM_PID=
APP_PID=
APP_WIN=
APP_PIDS=()
# Set by window_geometry, frame_extents and min_size_hint.
WX='' WY='' WW='' WH=''
FL=0 FR=0 FT=0 FB=0
MINW='' MINH=''

# --- bookkeeping of a case -----------------------------------------------------

CASE_DIR=
CASE_FAILED=0
CASE_NOTES=()

note() { CASE_NOTES+=("$*"); }

# check DESCRIPTION COMMAND...: runs the command; when it fails, the case is
# marked failed and the description goes into its report. Returns the
# command's status, so a step that later steps depend on can stop the case:
#   check "the dialog appeared" wait_window ... || return 1
check() {
    local what=$1
    shift
    if "$@"; then return 0; fi
    note "$what"
    CASE_FAILED=1
    return 1
}

# --- polling ------------------------------------------------------------------

# wait_until SECONDS COMMAND...: true as soon as the command succeeds.
wait_until() {
    local tenths=$(($1 * 10))
    shift
    local i
    for ((i = 0; i <= tenths; i++)); do
        if "$@"; then return 0; fi
        sleep 0.1
    done
    return 1
}

# --- X server and window manager ----------------------------------------------

start_display() {
    local fdfile=$WORK/.display
    : >"$fdfile"
    # -displayfd takes the first free display number and tells us which.
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset \
        3>"$fdfile" >"$WORK/xvfb.log" 2>&1 &
    XVFB_PID=$!
    if ! wait_until 15 grep -q '^[0-9][0-9]*$' "$fdfile"; then
        echo "Xvfb did not start:" >&2
        cat "$WORK/xvfb.log" >&2
        return 1
    fi
    DISPLAY=":$(head -n1 "$fdfile")"
    export DISPLAY
    wait_until 5 xdpyinfo >/dev/null 2>&1
}

wm_running() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }

start_wm() {
    openbox --sm-disable --config-file "$E2E_DIR/openbox-rc.xml" >"$WORK/openbox.log" 2>&1 &
    WM_PID=$!
    if ! wait_until 10 wm_running; then
        echo "openbox did not start:" >&2
        cat "$WORK/openbox.log" >&2
        return 1
    fi
}

# Stops a process we started: politely, then for good.
stop_pid() {
    local pid=$1
    [ -n "$pid" ] || return 0
    if pid_alive "$pid"; then
        kill "$pid" 2>/dev/null || true
        wait_until 3 pid_gone "$pid" || kill -KILL "$pid" 2>/dev/null || true
    fi
    wait "$pid" 2>/dev/null || true
}

# --- processes ------------------------------------------------------------------

# A child that has exited stays a zombie until it is reaped: that counts as gone.
pid_alive() {
    local state
    state=$(ps -o stat= -p "$1" 2>/dev/null) || return 1
    [ -n "$state" ] && [ "${state:0:1}" != Z ]
}
pid_gone() { ! pid_alive "$1"; }

wait_exit() { wait_until "${2:-$E2E_WAIT}" pid_gone "$1"; }

# --- windows ------------------------------------------------------------------

# Visible windows whose name matches REGEX, of process PID when given.
find_windows() {
    local re=$1 pid=${2:-}
    if [ -n "$pid" ]; then
        xdotool search --all --onlyvisible --pid "$pid" --name "$re" 2>/dev/null
    else
        xdotool search --onlyvisible --name "$re" 2>/dev/null
    fi
}

# wait_window REGEX [PID] [SECONDS]: prints the id of the first match. Polls
# rather than xdotool search --sync, so that it gives up at once when the
# process has died and notices a window sooner than --sync's half second.
wait_window() {
    local re=$1 pid=${2:-} t=${3:-$E2E_WAIT} ids i
    for ((i = 0; i <= t * 10; i++)); do
        ids=$(find_windows "$re" "$pid")
        if [ -n "$ids" ]; then
            head -n1 <<<"$ids"
            return 0
        fi
        if [ -n "$pid" ] && pid_gone "$pid"; then return 1; fi
        sleep 0.1
    done
    return 1
}

no_window() { [ -z "$(find_windows "$@")" ]; }

# wait_no_window REGEX [PID] [SECONDS]
wait_no_window() { wait_until "${3:-$E2E_WAIT}" no_window "$1" "${2:-}"; }

window_viewable() { xwininfo -id "$1" 2>/dev/null | grep -q 'Map State: IsViewable'; }
window_gone() { ! window_viewable "$1"; }
wait_window_gone() { wait_until "${2:-$E2E_WAIT}" window_gone "$1"; }

# The names of all visible windows of a process, for the reports.
window_names() {
    local w names=()
    for w in $(find_windows '.' "${1:-}"); do
        names+=("\"$(xdotool getwindowname "$w" 2>/dev/null)\"")
    done
    echo "${names[*]:-none}"
}

# Sets WX WY WW WH: the client area of a window in root coordinates. Not
# xdotool getwindowgeometry: under a reparenting window manager it adds the
# frame offset a second time.
window_geometry() {
    local info
    info=$(xwininfo -id "$1" 2>/dev/null) || return 1
    WX=$(awk '/Absolute upper-left X:/ {print $4}' <<<"$info")
    WY=$(awk '/Absolute upper-left Y:/ {print $4}' <<<"$info")
    WW=$(awk '/^ *Width:/ {print $2}' <<<"$info")
    WH=$(awk '/^ *Height:/ {print $2}' <<<"$info")
    [ -n "$WX" ] && [ -n "$WY" ] && [ -n "$WW" ] && [ -n "$WH" ]
}

# Sets FL FR FT FB: the frame the window manager put around a window.
frame_extents() {
    local v
    v=$(xprop -id "$1" _NET_FRAME_EXTENTS 2>/dev/null | sed -n 's/.*= *//p' | tr -d ' ')
    [ -n "$v" ] || return 1
    IFS=, read -r FL FR FT FB <<<"$v"
}

# Sets MINW MINH from the program's own size hints; fails without them.
min_size_hint() {
    local line
    line=$(xprop -id "$1" WM_NORMAL_HINTS 2>/dev/null | grep 'minimum size:') || return 1
    MINW=$(sed -n 's/.*size: *\([0-9]*\) by \([0-9]*\).*/\1/p' <<<"$line")
    MINH=$(sed -n 's/.*size: *\([0-9]*\) by \([0-9]*\).*/\2/p' <<<"$line")
    [ -n "$MINW" ] && [ -n "$MINH" ]
}

focused_on() { [ "$(xdotool getwindowfocus 2>/dev/null)" = "$1" ]; }

# Keys go to whatever has the focus, so every case first makes sure that is
# the window it means to type into.
focus_window() {
    timeout "$E2E_WAIT" xdotool windowactivate --sync "$1" >/dev/null 2>&1 || true
    wait_until "$E2E_WAIT" focused_on "$1" || return 1
    # Qt hands the focus to a widget once its FocusIn has come round.
    sleep 0.2
}

# --- input --------------------------------------------------------------------

pointer_at() { [ "$(xdotool getmouselocation 2>/dev/null | cut -d' ' -f1-2)" = "x:$1 y:$2" ]; }

# move_pointer X Y: moves the pointer and waits until it is there. Not
# mousemove --sync, which waits for a motion that never comes when the
# pointer is already in place.
move_pointer() {
    xdotool mousemove "$1" "$2" >/dev/null 2>&1 || return 1
    wait_until 2 pointer_at "$1" "$2"
}

# The pointer stays off the editor's window unless a case clicks: resting on
# the menu bar it would leave a menu hot, and the keys would go to the menu.
park_pointer() { move_pointer 1279 1023 || true; }

keys() { xdotool key --clearmodifiers --delay 60 "$@"; }

# Types TEXT as keystrokes. Through stdin, because xdotool takes a text that
# starts with "-" for an option.
type_text() { printf '%s' "$1" | xdotool type --clearmodifiers --delay 25 --file -; }

# click_at WINDOW X Y: a left click at a point of the window's client area.
click_at() {
    window_geometry "$1" || return 1
    move_pointer $((WX + $2)) $((WY + $3)) || return 1
    xdotool click 1
}

# Saves a picture of the area X Y W H of a window's client area to FILE.
grab_area() {
    local win=$1 x=$2 y=$3 w=$4 h=$5 file=$6
    window_geometry "$win" || return 1
    import -silent -window root -crop "${w}x${h}+$((WX + x))+$((WY + y))" +repage "$file" 2>/dev/null
}

# The number of pixels in which two pictures of the same size differ.
pixel_diff() {
    local n
    n=$(compare -metric AE -fuzz 10% "$1" "$2" null: 2>&1 >/dev/null) || true
    n=${n%% *}
    [[ "$n" =~ ^[0-9.e+]+$ ]] || n=999999999
    printf '%.0f\n' "$n"
}

# --- the editor ---------------------------------------------------------------

# The editor may be in the middle of a rebuild: ready once it is there and
# has not been touched for two seconds.
binary_ready() {
    [ -x "$1" ] || return 1
    local mtime
    mtime=$(stat -L -c %Y "$1" 2>/dev/null) || return 1
    [ $(($(date +%s) - mtime)) -ge 2 ]
}

# app_start [VAR=VALUE ...] [-- FILE ...]: starts the editor with the given
# environment additions and files, waits for its main window and focuses it.
# Sets APP_PID and APP_WIN.
app_start() {
    local extra=()
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        extra+=("$1")
        shift
    done
    [ "${1:-}" = -- ] && shift
    if ! wait_until 60 binary_ready "$LEXSMITH"; then
        note "$LEXSMITH is missing or still being written"
        CASE_FAILED=1
        return 1
    fi
    park_pointer
    env QT_QPA_PLATFORM=xcb LEXSMITH_APPDATA="$CASE_DIR/appdata" LEXSMITH_CODEPAGE= \
        ${extra[@]+"${extra[@]}"} "$LEXSMITH" "$@" >>"$CASE_DIR/lexsmith.log" 2>&1 &
    APP_PID=$!
    APP_PIDS+=("$APP_PID")
    APP_WIN=
    if ! APP_WIN=$(wait_window '^KV Lexsmith$' "$APP_PID" 8); then
        note "the main window \"KV Lexsmith\" did not appear (process $(pid_alive "$APP_PID" && echo running || echo gone))"
        CASE_FAILED=1
        return 1
    fi
    if ! focus_window "$APP_WIN"; then
        note "the main window did not get the keyboard focus"
        CASE_FAILED=1
        return 1
    fi
}

app_stop() {
    stop_pid "$APP_PID"
    APP_PID=
    APP_WIN=
}

app_stop_all() {
    local pid
    for pid in ${APP_PIDS[@]+"${APP_PIDS[@]}"}; do stop_pid "$pid"; done
    APP_PIDS=()
    APP_PID=
    APP_WIN=
}

# --- files --------------------------------------------------------------------

file_sum() { sha256sum "$1" 2>/dev/null | cut -d' ' -f1 || true; }

sum_differs() { [ "$(file_sum "$1")" != "$2" ]; }

# wait_file_change FILE OLD_SUM: true once the file's bytes differ from the
# old sum and have stopped changing.
wait_file_change() {
    local file=$1 old=$2 a b
    wait_until "${3:-$E2E_WAIT}" sum_differs "$file" "$old" || return 1
    for _ in 1 2 3 4 5 6 7 8 9 10; do
        a=$(file_sum "$file")
        sleep 0.15
        b=$(file_sum "$file")
        [ "$a" = "$b" ] && return 0
    done
    return 0
}

# A fresh copy of the examples for a case: the .syx files and the per-user folder.
copy_examples() {
    cp "$EXAMPLES"/*.syx "$CASE_DIR/"
    cp -rL "$EXAMPLES/appdata" "$CASE_DIR/appdata"
}

dump() { "$SYXTOOL" dump "$1"; }

# The option rows in the order the options tree shows them and syxtool dump
# lists them.
OPTION_NAMES=(LineCommentA LineCommentB CommentStartA CommentEndA CommentStartB CommentEndB
    Char String StringOnLine HexIdentifier Escape Symbols Numbers CaseSensitive
    TagsCaseSensitive NoTagsStart NoTagsEnd HighlightUrl BlockEsc CommentEsc
    FoldOpt_AsBegin FoldOpt_Separators Foldopt_Sections Foldopt_AutoIdExcludes FoldOpt_Case
    FoldOpt_FoldAllTags Rgn_Start Rgn_End Rgn_CommentStart AutoCompleteTags)

option_index() {
    local i
    for i in "${!OPTION_NAMES[@]}"; do
        if [ "${OPTION_NAMES[$i]}" = "$1" ]; then
            echo "$i"
            return 0
        fi
    done
    return 1
}

# Where the options tree stands in the main window at its first size, taken
# from a picture of the window: the value column, and the middle of the
# first row with the row pitch. The rows start below the menu bar, the
# section caption, the sheet tabs and the column header, none of which
# change with the window's size.
OPT_VALUE_X=370
OPT_ROW0_Y=98
OPT_ROW_PITCH=15

option_row_y() { echo $((OPT_ROW0_Y + OPT_ROW_PITCH * $(option_index "$1"))); }

# expect_options ORIGINAL SAVED NAME=VALUE...: the saved file holds the given
# option values, written as Name = "Value" lines, and every other option as
# in the original.
expect_options() {
    local original=$1 saved=$2
    shift 2
    local before after
    before=$(dump "$original" | jq -c '.Options') || {
        note "syxtool dump failed on $original"
        return 1
    }
    after=$(dump "$saved" | jq -c '.Options') || {
        note "syxtool dump failed on $saved"
        return 1
    }
    local ok=0 pair name value i want got
    local -A changed=()
    for pair in "$@"; do
        name=${pair%%=*}
        value=${pair#*=}
        i=$(option_index "$name")
        changed[$i]=1
        got=$(jq -r ".[$i]" <<<"$after")
        if [ "$got" != "$value" ]; then
            note "$name is \"$got\" in the saved file, expected \"$value\""
            ok=1
        fi
        if ! tr -d '\r' <"$saved" | sed 's/^[[:space:]]*//; s/[[:space:]]*$//' |
            grep -xF -- "$name = \"$value\"" >/dev/null; then
            note "no line $name = \"$value\" in the saved file"
            ok=1
        fi
    done
    for i in "${!OPTION_NAMES[@]}"; do
        [ -n "${changed[$i]:-}" ] && continue
        want=$(jq -r ".[$i]" <<<"$before")
        got=$(jq -r ".[$i]" <<<"$after")
        if [ "$want" != "$got" ]; then
            note "${OPTION_NAMES[$i]} changed from \"$want\" to \"$got\", though nothing was typed into it"
            ok=1
        fi
    done
    return $ok
}

# same_dump_except ORIGINAL SAVED KEY...: both documents agree in everything
# but the given top-level parts of the dump.
same_dump_except() {
    local original=$1 saved=$2 filter='.'
    shift 2
    local key
    for key in "$@"; do filter+=" | del(.$key)"; done
    [ "$(dump "$original" | jq -S "$filter")" = "$(dump "$saved" | jq -S "$filter")" ]
}

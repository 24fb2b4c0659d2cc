#!/usr/bin/env bash
# End-to-end run of the editor on a private X server: real keys and clicks
# through the window manager, then the bytes the editor wrote and the windows
# it shows are checked.
#
#   tests/e2e/run.sh LEXSMITH SYXTOOL EXAMPLES_DIR WORK_DIR
#
# E2E_CASES="open_save close_prompt" runs only those cases.
set -euo pipefail

if [ $# -ne 4 ]; then
    echo "usage: $0 LEXSMITH SYXTOOL EXAMPLES_DIR WORK_DIR" >&2
    exit 2
fi

E2E_DIR=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
LEXSMITH=$(realpath -ms "$1")
SYXTOOL=$(realpath -ms "$2")
EXAMPLES=$(realpath -ms "$3")
WORK=$(realpath -ms "$4")

# ctest runs everything with the offscreen platform; this run needs the X server.
unset QT_QPA_PLATFORM

# shellcheck source=lib.sh
source "$E2E_DIR/lib.sh"

for tool in Xvfb openbox xdotool wmctrl xprop xwininfo xdpyinfo import compare jq; do
    if ! command -v "$tool" >/dev/null; then
        echo "missing tool: $tool" >&2
        exit 2
    fi
done

for bin in "$LEXSMITH" "$SYXTOOL"; do
    if ! wait_until 60 binary_ready "$bin"; then
        echo "not found or still changing: $bin" >&2
        exit 2
    fi
done
if [ ! -d "$EXAMPLES/appdata" ]; then
    echo "no appdata folder in $EXAMPLES" >&2
    exit 2
fi

rm -rf "$WORK"
mkdir -p "$WORK"
# Private settings and caches: the file dialog's history and openbox's state
# stay out of the user's home, and every run starts from the same state.
export XDG_CONFIG_HOME=$WORK/xdg/config XDG_CACHE_HOME=$WORK/xdg/cache XDG_DATA_HOME=$WORK/xdg/data
export XDG_RUNTIME_DIR=$WORK/xdg/runtime
mkdir -p "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"

cleanup() {
    app_stop_all
    stop_pid "$WM_PID"
    stop_pid "$XVFB_PID"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

start_display
start_wm

# ------------------------------------------------------------------ the cases
#
# Each case starts its own editor on its own copies of the examples (copied
# into $CASE_DIR by run_case) and returns non-zero when a check failed; the
# notes say which.

# File > Open by Ctrl+O and its dialog, then Ctrl+S: the editor writes what
# syxtool normalize writes. Once from the options page, then with the focus
# in the sample memo and in the author memo, so that the shortcuts are seen
# to work wherever the focus is; one file per encoding of the examples.
case_open_save() {
    app_start || return 1
    local round file expected section
    for round in "lua.syx -" "sql-utf8.syx ctrl+8" "xml-utf16.syx ctrl+9"; do
        read -r file section <<<"$round"
        if [ "$section" != - ]; then
            # The memo gets the focus by a click, so that only the shortcut is tested here.
            keys "$section"
            click_at "$APP_WIN" 420 300
            park_pointer
        fi
        expected=$CASE_DIR/$file.expected
        "$SYXTOOL" normalize "$CASE_DIR/$file" "$expected"
        if cmp -s "$expected" "$CASE_DIR/$file"; then
            note "harness: normalizing $file changes nothing, so a save would not show"
            return 1
        fi
        local before dialog
        before=$(file_sum "$CASE_DIR/$file")
        keys ctrl+o
        if ! dialog=$(wait_window "Open" "$APP_PID"); then
            note "Ctrl+O (for $file, focus after '$section') showed no Open dialog; windows: $(window_names "$APP_PID")"
            return 1
        fi
        focus_window "$dialog" || true
        type_text "$CASE_DIR/$file"
        keys Return
        check "the Open dialog stayed after Enter on the file name ($file)" \
            wait_window_gone "$dialog" || return 1
        focus_window "$APP_WIN" || true
        keys ctrl+s
        # The XML example has characters that Windows-1252 lacks: the save
        # says so first, and Yes saves anyway.
        if [ "$file" = xml-utf16.syx ]; then
            local question
            if ! question=$(wait_window '^Save$' "$APP_PID"); then
                note "saving $file, which loses characters, asked nothing"
                CASE_FAILED=1
                continue
            fi
            focus_window "$question" || true
            keys alt+y
            check "Yes did not close the question about $file" wait_window_gone "$question"
        fi
        if ! wait_file_change "$CASE_DIR/$file" "$before"; then
            note "Ctrl+S did not write $file"
            CASE_FAILED=1
            continue
        fi
        check "the saved $file differs from syxtool normalize of the original" \
            cmp -s "$expected" "$CASE_DIR/$file"
    done
    return $CASE_FAILED
}

# An option's value edited with the mouse: a click on its Value cell, the
# text, Enter. The second cell gets its text right after the click, before
# the editor has had time to open: none of it may be lost.
case_mouse_edit() {
    local file=$CASE_DIR/lua.syx
    cp "$file" "$CASE_DIR/original.syx"
    app_start -- "$file" || return 1
    local before
    before=$(file_sum "$file")

    # The pointer stays on the cell until the edit is over.
    click_at "$APP_WIN" $OPT_VALUE_X "$(option_row_y LineCommentB)"
    sleep 1 # the in-place editor opens after a short pause
    type_text "#"
    keys Return

    click_at "$APP_WIN" $OPT_VALUE_X "$(option_row_y CommentStartB)"
    type_text "until"
    sleep 1
    keys Return
    park_pointer

    keys ctrl+s
    check "Ctrl+S did not write the file" wait_file_change "$file" "$before" || return 1
    check "the saved options are not the edited ones" \
        expect_options "$CASE_DIR/original.syx" "$file" "LineCommentB=#" "CommentStartB=until"
    check "more than the options changed in the saved file" \
        same_dump_except "$CASE_DIR/original.syx" "$file" Options
    return $CASE_FAILED
}

# The same with the keyboard alone. The focus starts in the sample memo, so
# Ctrl+1 has to move it into the options tree; F2 and Enter both open the
# editor of the focused row.
case_keyboard_edit() {
    local file=$CASE_DIR/lua.syx
    cp "$file" "$CASE_DIR/original.syx"
    app_start -- "$file" || return 1
    local before
    before=$(file_sum "$file")
    keys ctrl+8
    keys ctrl+1
    # Down first, in case no row has the focus yet; then up to the first row,
    # wherever the focus started.
    keys Down
    local ups=() i
    for ((i = 0; i < ${#OPTION_NAMES[@]}; i++)); do ups+=(Up); done
    xdotool key --clearmodifiers --delay 20 "${ups[@]}"
    keys Down Down Down Down # CommentStartB
    keys F2
    sleep 0.5
    type_text "(*"
    keys Return
    keys Down # CommentEndB
    keys Return
    sleep 0.5
    type_text "*)"
    keys Return
    keys ctrl+s
    check "Ctrl+S did not write the file" wait_file_change "$file" "$before" || return 1
    check "the saved options are not the edited ones" \
        expect_options "$CASE_DIR/original.syx" "$file" "CommentStartB=(*" "CommentEndB=*)"
    check "more than the options changed in the saved file" \
        same_dump_except "$CASE_DIR/original.syx" "$file" Options
    return $CASE_FAILED
}

sample_has_line() {
    sed -n '/^\[BeginSample\]/,/^\[EndSample\]/p' "$1" | tr -d '\r' | grep -xF -- "$2" >/dev/null
}
# The banner: the comment box of "{ ... }" lines the file starts with.
banner_has_line() {
    tr -d '\r' <"$1" | sed -n '/^{/!q;p' | grep -F -- "{ $2" >/dev/null
}

# Typing into the memos right after Ctrl+8 and Ctrl+9, and saving with
# Ctrl+S while the focus is still in the memo.
case_memo_typing() {
    local file=$CASE_DIR/lua.syx
    cp "$file" "$CASE_DIR/original.syx"
    app_start -- "$file" || return 1
    local before want line="print('typed into the sample')"

    before=$(file_sum "$file")
    keys ctrl+8
    # A new first line: the memo's end may or may not hold an empty line.
    keys ctrl+Home
    type_text "$line"
    keys Return ctrl+s
    if check "Ctrl+S in the sample memo did not write the file" wait_file_change "$file" "$before"; then
        want=$(dump "$CASE_DIR/original.syx" | jq -c --arg l "$line" '[$l] + .Sample')
        check "the sample in the saved file is not the typed line and the old sample: $(dump "$file" | jq -c .Sample)" \
            test "$(dump "$file" | jq -c .Sample)" = "$want"
        check "the typed line is not between [BeginSample] and [EndSample]" \
            sample_has_line "$file" "$line"
        check "more than the sample changed in the saved file" \
            same_dump_except "$CASE_DIR/original.syx" "$file" Sample
    fi

    line="<b>Checked:</b> by the end-to-end run"
    before=$(file_sum "$file")
    keys ctrl+9
    keys ctrl+Home
    type_text "$line"
    keys Return ctrl+s
    if check "Ctrl+S in the author memo did not write the file" wait_file_change "$file" "$before"; then
        want=$(dump "$CASE_DIR/original.syx" | jq -c --arg l "$line" '[$l] + .Header')
        check "the banner in the saved file is not the typed line and the old banner: $(dump "$file" | jq -c .Header)" \
            test "$(dump "$file" | jq -c .Header)" = "$want"
        check "the typed line is not in the banner at the top of the file" \
            banner_has_line "$file" "$line"
    fi
    return $CASE_FAILED
}

# popup_opens WHAT MENU KEYS...: pressing the keys shows the menu's popup,
# and Escape closes it again.
popup_opens() {
    local what=$1 menu=$2
    shift 2
    local k
    for k in "$@"; do keys "$k"; done
    if ! wait_window "^$menu\$" "$APP_PID" "$E2E_POPUP_WAIT" >/dev/null; then
        note "$what did not open the $menu menu; windows: $(window_names "$APP_PID")"
        CASE_FAILED=1
        # Leave any half-open menu state before the next try.
        keys Escape Escape
        return 1
    fi
    keys Escape
    if ! wait_no_window "^$menu\$" "$APP_PID" "$E2E_POPUP_WAIT"; then
        note "Escape did not close the $menu menu opened by $what"
        CASE_FAILED=1
    fi
    # The first Escape leaves the menu bar hot; this one leaves it.
    keys Escape
    return 0
}

# The menus from the keyboard: Alt+letter, F10 and Alt alone followed by
# Down; with the focus where the program puts it, and in a memo.
case_menu_keys() {
    app_start -- "$CASE_DIR/lua.syx" || return 1
    popup_opens "Alt+F" File alt+f
    popup_opens "F10 then Down" File F10 Down
    popup_opens "Alt alone then Down" File alt Down
    popup_opens "Alt+H" Help alt+h
    # The focus in the sample memo, put there by a click.
    keys ctrl+8
    click_at "$APP_WIN" 420 300
    park_pointer
    popup_opens "Alt+F in the sample memo" File alt+f
    popup_opens "F10 then Down in the sample memo" File F10 Down
    popup_opens "Alt alone then Down in the sample memo" File alt Down
    check "a window other than the main window is left open: $(window_names "$APP_PID")" \
        test "$(find_windows '.' "$APP_PID" | wc -l)" -eq 1
    return $CASE_FAILED
}

# A menu command from the keyboard: File > Save As... shows the save dialog,
# and Escape cancels it without writing anything.
case_menu_save_as() {
    local file=$CASE_DIR/lua.syx
    cp "$file" "$CASE_DIR/original.syx"
    app_start -- "$file" || return 1
    local files_before dialog
    files_before=$(ls "$CASE_DIR")
    keys alt+f
    check "Alt+F did not open the File menu" wait_window '^File$' "$APP_PID" "$E2E_POPUP_WAIT" >/dev/null || return 1
    # From the last item (Exit) up over the separator.
    keys End Up Return
    check "the File menu stayed open after Enter" wait_no_window '^File$' "$APP_PID"
    if ! dialog=$(wait_window "Save" "$APP_PID"); then
        note "File > Save As... showed no save dialog; windows: $(window_names "$APP_PID")"
        return 1
    fi
    check "the dialog that appeared is the Open dialog" \
        test -z "$(xdotool getwindowname "$dialog" | grep Open)"
    focus_window "$dialog" || true
    keys Escape
    check "Escape did not close the save dialog" wait_window_gone "$dialog" || return 1
    check "the editor is gone after the save dialog was cancelled" pid_alive "$APP_PID"
    check "the main window is gone after the save dialog was cancelled" window_viewable "$APP_WIN"
    check "cancelling Save As changed the file" cmp -s "$CASE_DIR/original.syx" "$file"
    check "cancelling Save As wrote a file: $(diff <(echo "$files_before") <(ls "$CASE_DIR") | tr '\n' ' ')" \
        test "$files_before" = "$(ls "$CASE_DIR")"
    return $CASE_FAILED
}

# A change to the document that does not depend on keyboard shortcuts: a
# line typed into the sample memo after a click into it.
make_change() {
    keys ctrl+8
    click_at "$APP_WIN" 420 300
    park_pointer
    keys ctrl+Home
    type_text "$1"
    keys Return
}

# request_close WHEN: the window manager's close (WM_DELETE_WINDOW), as the
# title bar's close button sends it. Sets PROMPT to the question's window.
request_close() {
    wmctrl -i -c "$APP_WIN"
    if ! PROMPT=$(wait_window '^KV Scribex Message$' "$APP_PID"); then
        note "closing the changed document $1 asked nothing; windows: $(window_names "$APP_PID"), program $(pid_alive "$APP_PID" && echo running || echo ended)"
        CASE_FAILED=1
        return 1
    fi
    focus_window "$PROMPT" || true
}

# Closing a changed document: Cancel keeps everything as it is, No closes
# without writing, Yes writes and closes.
case_close_prompt() {
    local file=$CASE_DIR/lua.syx line="-- written when closing"
    cp "$file" "$CASE_DIR/original.syx"
    app_start -- "$file" || return 1
    make_change "$line"
    request_close "(first time)" || return 1
    keys Escape
    check "Escape (Cancel) did not close the prompt" wait_window_gone "$PROMPT" || return 1
    check "Cancel ended the program" pid_alive "$APP_PID" || return 1
    check "Cancel closed the main window" window_viewable "$APP_WIN"
    check "Cancel wrote the file" cmp -s "$CASE_DIR/original.syx" "$file"

    request_close "after Cancel" || return 1
    keys alt+n
    check "No did not end the program" wait_exit "$APP_PID"
    check "No wrote the file" cmp -s "$CASE_DIR/original.syx" "$file"
    app_stop

    app_start -- "$file" || return 1
    make_change "$line"
    request_close "(second run)" || return 1
    keys alt+y
    check "Yes did not end the program" wait_exit "$APP_PID"
    check "Yes did not write the typed line into the sample" \
        test "$(dump "$file" | jq -r '.Sample[0]')" = "$line"
    check "Yes changed more than the sample" same_dump_except "$CASE_DIR/original.syx" "$file" Sample
    return $CASE_FAILED
}

# The side panel is a fixed list of sections; a window too short to show the
# last of them hides sections from the mouse. Its last label ends this far
# below the client area's top (menu bar and panel).
SIDE_LIST_BOTTOM=381

# The window keeps a minimum size: it says so in its size hints, a resize
# below it does not take, and at that size the whole section list shows.
case_min_size() {
    app_start -- "$CASE_DIR/lua.syx" || return 1
    check "the main window declares no minimum size in WM_NORMAL_HINTS" \
        min_size_hint "$APP_WIN" || return 1
    check "the minimum size ${MINW}x${MINH} is too short for the section list (${SIDE_LIST_BOTTOM} px)" \
        test "$MINH" -ge "$SIDE_LIST_BOTTOM"
    # The resize ends in whatever size the window manager and the program
    # agree on: wait for a change (a refusal keeps the size), then for calm.
    local start now last='' i
    window_geometry "$APP_WIN"
    start="${WW}x${WH}"
    xdotool windowsize "$APP_WIN" 100 100
    for ((i = 0; i < 15; i++)); do
        sleep 0.1
        window_geometry "$APP_WIN" && [ "${WW}x${WH}" != "$start" ] && break
    done
    for ((i = 0; i < 10; i++)); do
        window_geometry "$APP_WIN" || break
        now="${WW}x${WH}"
        [ "$now" = "$last" ] && break
        last=$now
        sleep 0.15
    done
    window_geometry "$APP_WIN"
    check "after a resize to 100x100 the window is ${WW}x${WH}, below its minimum ${MINW}x${MINH}" \
        test "$WW" -ge "$MINW" -a "$WH" -ge "$MINH"
    check "the editor did not survive the resize" pid_alive "$APP_PID"
    return $CASE_FAILED
}

# At twice the size the window still fits the 1280x1024 screen, frame and all.
case_scaled_fits() {
    app_start QT_SCALE_FACTOR=2 -- "$CASE_DIR/lua.syx" || return 1
    sleep 0.3
    window_geometry "$APP_WIN" || return 1
    FL=0 FR=0 FT=0 FB=0
    frame_extents "$APP_WIN" || true
    local left=$((WX - FL)) top=$((WY - FT)) right=$((WX + WW + FR)) bottom=$((WY + WH + FB))
    check "at QT_SCALE_FACTOR=2 the window spans ${left},${top} to ${right},${bottom} (client ${WW}x${WH}), beyond the 1280x1024 screen" \
        test "$left" -ge 0 -a "$top" -ge 0 -a "$right" -le 1280 -a "$bottom" -le 1024
    if min_size_hint "$APP_WIN"; then
        check "at QT_SCALE_FACTOR=2 the minimum size ${MINW}x${MINH} does not fit the screen" \
            test $((MINW + FL + FR)) -le 1280 -a $((MINH + FT + FB)) -le 1024
    fi
    return $CASE_FAILED
}

# The two sheets of the options page from the keyboard. Which sheet shows is
# judged from pictures: each sheet is first shown by a click on its tab, and
# after every key the page must look like the sheet the key should show.
SHEET_AREA=(180 50 500 420) # x y w h of the sheet, tabs included, in the window
shows_sheet() {
    local want=$1 other=$2 now=$CASE_DIR/sheet-now.png
    grab_area "$APP_WIN" "${SHEET_AREA[@]}" "$now" || return 1
    [ "$(pixel_diff "$now" "$want")" -lt "$(pixel_diff "$now" "$other")" ]
}
case_sheet_keys() {
    app_start -- "$CASE_DIR/lua.syx" || return 1
    local syntax=$CASE_DIR/sheet-syntax.png block=$CASE_DIR/sheet-block.png
    click_at "$APP_WIN" 275 62 # the "Block & folding " tab
    park_pointer
    sleep 0.4
    grab_area "$APP_WIN" "${SHEET_AREA[@]}" "$block"
    click_at "$APP_WIN" 205 62 # the "Syntax " tab
    park_pointer
    sleep 0.4
    grab_area "$APP_WIN" "${SHEET_AREA[@]}" "$syntax"
    if [ "$(pixel_diff "$syntax" "$block")" -lt 1000 ]; then
        note "harness: the two sheets look alike after clicks on their tabs"
        return 1
    fi
    keys ctrl+1
    local step key want other
    for step in "ctrl+Tab block syntax" "ctrl+Page_Up syntax block" "ctrl+Page_Down block syntax" "ctrl+Page_Up syntax block"; do
        read -r key want other <<<"$step"
        keys "$key"
        local wantf=$CASE_DIR/sheet-$want.png otherf=$CASE_DIR/sheet-$other.png
        check "after $key the $want sheet does not show" wait_until 2 shows_sheet "$wantf" "$otherf" || return 1
    done
    return $CASE_FAILED
}

# --- the skinned window ---------------------------------------------------------
#
# With a skin the window has no frame of the window manager: the program
# draws title, borders and title buttons itself. The title buttons of our
# skins are 28x20, right-aligned: close 34, maximize and restore 64,
# minimize 94 pixels from the right edge, 5 from the top.

use_skin() {
    printf '[Customize]\nSkinEnabled=1\nDontSkinCaption=0\nSkin=%s\n' "$1" \
        >"$CASE_DIR/appdata/Scribex.ini"
}

# The pixel at X Y of the screen as "r,g,b".
screen_pixel() {
    import -silent -window root -crop "1x1+$1+$2" +repage txt:- 2>/dev/null |
        sed -n '2s/.*(\([0-9]*\),\([0-9]*\),\([0-9]*\).*/\1,\2,\3/p'
}

# settle WINDOW: waits until the window's geometry stops changing.
settle() {
    local last='' now i
    for ((i = 0; i < 15; i++)); do
        window_geometry "$1" || return 1
        now="$WX,$WY,${WW}x$WH"
        [ "$now" = "$last" ] && return 0
        last=$now
        sleep 0.15
    done
}

# drag X0 Y0 X1 Y1: a press, a move in two steps, a release, in screen points.
drag() {
    move_pointer "$1" "$2" || return 1
    xdotool mousedown 1
    sleep 0.15
    xdotool mousemove $((($1 + $3) / 2)) $((($2 + $4) / 2))
    sleep 0.15
    xdotool mousemove "$3" "$4"
    sleep 0.2
    xdotool mouseup 1
}

# The frame is the skin's: no frame of the window manager, the title bar's
# corners cut out of the window, the title's colour from the skin; the
# title moves the window, the right border resizes it, the maximize button
# maximizes and the same place then restores.
case_skin_frame() {
    use_skin "Lexsmith Light.skn"
    app_start -- "$CASE_DIR/lua.syx" || return 1
    settle "$APP_WIN"
    FL=0 FR=0 FT=0 FB=0
    frame_extents "$APP_WIN" || true
    check "the window manager framed the skinned window (${FL},${FR},${FT},${FB})" \
        test "$FL$FR$FT$FB" = 0000
    window_geometry "$APP_WIN" || return 1
    local x=$WX y=$WY w=$WW h=$WH corner title
    corner=$(screen_pixel "$x" "$y")
    title=$(screen_pixel $((x + w / 2)) $((y + 3)))
    check "the top-left corner is not cut out of the window (root shows 0,0,0; got $corner)" \
        test "$corner" = "0,0,0"
    check "the title bar is not the skin's blue (got $title)" \
        awk -F, -v c="$title" 'BEGIN { split(c, p, ","); exit !(p[3] > p[1] + 60) }'

    drag $((x + 200)) $((y + 12)) $((x + 260)) $((y + 52))
    settle "$APP_WIN"
    check "dragging the title did not move the window down and right (from $x,$y to $WX,$WY)" \
        test "$WX" -gt $((x + 10)) -a "$WY" -gt $((y + 10)) -a "$WW" = "$w"
    x=$WX y=$WY
    drag $((x + w - 2)) $((y + h / 2)) $((x + w + 48)) $((y + h / 2))
    settle "$APP_WIN"
    check "dragging the right border did not widen the window by 50 (${w} to ${WW})" \
        test "$WW" = $((w + 50)) -a "$WX" = "$x"
    w=$WW

    click_at "$APP_WIN" $((w - 50)) 15
    settle "$APP_WIN"
    check "the maximize button did not fill the screen (${WX},${WY} ${WW}x${WH})" \
        test "$WX,$WY,${WW}x$WH" = "0,0,1280x1024"
    click_at "$APP_WIN" $((1280 - 50)) 15
    settle "$APP_WIN"
    check "the restore button did not give the window its size back (${WW}x${WH}, was ${w}x${h})" \
        test "${WW}x$WH" = "${w}x$h"
    check "the editor did not survive" pid_alive "$APP_PID"
    return $CASE_FAILED
}

# The skin's close button goes the way of the window's own close: with a
# changed document it asks first, and Cancel keeps the window.
case_skin_close() {
    use_skin "Lexsmith Dark.skn"
    local file=$CASE_DIR/lua.syx
    cp "$file" "$CASE_DIR/original.syx"
    app_start -- "$file" || return 1
    settle "$APP_WIN"
    make_change "-- typed under a skin"
    window_geometry "$APP_WIN" || return 1
    click_at "$APP_WIN" $((WW - 20)) 15
    if ! PROMPT=$(wait_window '^KV Scribex Message$' "$APP_PID"); then
        note "the close button of the skin asked nothing; windows: $(window_names "$APP_PID")"
        return 1
    fi
    FL=0 FR=0 FT=0 FB=0
    frame_extents "$PROMPT" || true
    check "the question is not skinned: the window manager framed it" test "$FL$FR$FT$FB" = 0000
    focus_window "$PROMPT" || true
    keys Escape
    check "Cancel did not close the question" wait_window_gone "$PROMPT" || return 1
    check "Cancel closed the main window" window_viewable "$APP_WIN"
    check "Cancel wrote the file" cmp -s "$CASE_DIR/original.syx" "$file"
    return $CASE_FAILED
}

# A definition with a misspelt option and a repeated keyword: the problems
# list shows both, F8 walks to them, and Ctrl+S first asks whether to lose
# the misspelt line: No keeps the file, Yes writes it without that line.
case_problems() {
    local file=$CASE_DIR/faulty.syx
    printf '[Options]\r\n  CaseSensitve = Yes\r\n[End]\r\n[Keywords]\r\n>Flow\r\nif\r\nthen\r\nif\r\n[End]\r\n' >"$file"
    cp "$file" "$CASE_DIR/original.syx"
    app_start -- "$file" || return 1
    settle "$APP_WIN"
    sleep 0.5
    import -window "$APP_WIN" "$CASE_DIR/problems.png" 2>/dev/null || true
    keys F8 F8
    keys ctrl+s
    local question
    if ! question=$(wait_window '^Save$' "$APP_PID"); then
        note "Ctrl+S on a file that loses a line asked nothing; windows: $(window_names "$APP_PID")"
        return 1
    fi
    focus_window "$question" || true
    keys alt+n
    check "No did not close the question" wait_window_gone "$question" || return 1
    check "No wrote the file" cmp -s "$CASE_DIR/original.syx" "$file"
    focus_window "$APP_WIN" || true
    keys ctrl+s
    if ! question=$(wait_window '^Save$' "$APP_PID"); then
        note "the second Ctrl+S asked nothing"
        return 1
    fi
    focus_window "$question" || true
    keys alt+y
    check "Yes did not close the question" wait_window_gone "$question" || return 1
    check "Yes did not write the file" wait_file_change "$file" "$(file_sum "$CASE_DIR/original.syx")"
    check "the saved file still has the misspelt line" \
        test -z "$(grep -a CaseSensitve "$file")"
    check "the saved file lost the keywords" \
        test "$(dump "$file" | jq -r '.Keywords[0].items | length')" = 3
    return $CASE_FAILED
}

# Under a skin the File and Help menus are drawn from it (the top-left pixel
# of the File menu is the skin's menu frame, not the plain menu's), and the
# keyboard drives them as it drives plain ones: Alt+F, Right across to Help
# and Left back, Escape, then the first letter twice and Enter for
# Save As..., whose dialog Escape cancels without writing anything.
case_skin_menu_keys() {
    use_skin "Lexsmith Light.skn"
    local file=$CASE_DIR/lua.syx popup corner
    cp "$file" "$CASE_DIR/original.syx"
    app_start -- "$file" || return 1
    settle "$APP_WIN"
    keys alt+f
    if ! popup=$(wait_window '^File$' "$APP_PID" "$E2E_POPUP_WAIT"); then
        note "Alt+F did not open the File menu under a skin; windows: $(window_names "$APP_PID")"
        return 1
    fi
    sleep 0.3
    window_geometry "$popup" || return 1
    corner=$(screen_pixel "$WX" "$WY")
    check "the File menu's frame is not the skin's (got $corner, want 120,128,142)" \
        test "$corner" = "120,128,142"
    import -window root "$CASE_DIR/skinned-file-menu.png" 2>/dev/null || true
    keys Right
    check "Right did not walk from File to Help" \
        wait_window '^Help$' "$APP_PID" "$E2E_POPUP_WAIT" >/dev/null
    check "the File menu stayed open after Right" wait_no_window '^File$' "$APP_PID"
    keys Left
    check "Left did not walk back from Help to File" \
        wait_window '^File$' "$APP_PID" "$E2E_POPUP_WAIT" >/dev/null
    keys Escape
    check "Escape did not close the File menu" wait_no_window '^File$' "$APP_PID"
    keys alt+f
    check "Alt+F did not open the File menu again" \
        wait_window '^File$' "$APP_PID" "$E2E_POPUP_WAIT" >/dev/null || return 1
    keys s s Return
    local dialog
    if ! dialog=$(wait_window "Save" "$APP_PID"); then
        note "S, S, Enter in the skinned File menu showed no save dialog; windows: $(window_names "$APP_PID")"
        return 1
    fi
    focus_window "$dialog" || true
    keys Escape
    check "Escape did not close the save dialog" wait_window_gone "$dialog" || return 1
    check "cancelling Save As changed the file" cmp -s "$CASE_DIR/original.syx" "$file"
    check "the editor did not survive" pid_alive "$APP_PID"
    return $CASE_FAILED
}

# Under the dark skin the controls are the skin's too: the status bar's
# panels and the option tree's scroll bar are dark where plain ones are light.
# Both spots are measured from the window's bottom right corner.
case_skin_controls() {
    use_skin "Lexsmith Dark.skn"
    app_start -- "$CASE_DIR/lua.syx" || return 1
    settle "$APP_WIN"
    sleep 0.5
    window_geometry "$APP_WIN" || return 1
    import -window root "$CASE_DIR/skinned-controls.png" 2>/dev/null || true
    local panel track
    panel=$(screen_pixel $((WX + 68)) $((WY + WH - 16)))
    track=$(screen_pixel $((WX + WW - 16)) $((WY + WH - 90)))
    check "the status bar panel is not the dark skin's (got $panel)" dark_pixel "$panel"
    check "the option tree's scroll bar is not the dark skin's (got $track)" dark_pixel "$track"
    return $CASE_FAILED
}

# dark_pixel R,G,B: every channel below 100.
dark_pixel() {
    local r g b
    IFS=, read -r r g b <<<"$1"
    [ -n "$b" ] && [ "$r" -lt 100 ] && [ "$g" -lt 100 ] && [ "$b" -lt 100 ]
}

ALL_CASES=(open_save mouse_edit keyboard_edit memo_typing menu_keys menu_save_as
    close_prompt min_size scaled_fits sheet_keys skin_frame skin_close problems
    skin_menu_keys skin_controls)

# ------------------------------------------------------------------ the runner

FAILED=()
PASSED=0
run_case() {
    CASE_DIR=$WORK/$1
    CASE_FAILED=0
    CASE_NOTES=()
    mkdir -p "$CASE_DIR"
    copy_examples
    local started=$SECONDS
    "case_$1" || CASE_FAILED=1
    local took=$((SECONDS - started))
    if [ "$CASE_FAILED" -eq 0 ]; then
        printf 'PASS %-14s (%ss)\n' "$1" "$took"
        PASSED=$((PASSED + 1))
    else
        import -window root "$WORK/$1.png" 2>/dev/null || true
        printf 'FAIL %-14s (%ss)\n' "$1" "$took"
        local n
        for n in ${CASE_NOTES[@]+"${CASE_NOTES[@]}"}; do printf '     %s\n' "$n"; done
        printf '     screenshot: %s\n' "$WORK/$1.png"
        if [ -s "$CASE_DIR/lexsmith.log" ]; then
            printf '     program output: %s\n' "$CASE_DIR/lexsmith.log"
        fi
        FAILED+=("$1")
    fi
    app_stop_all
    park_pointer
}

SUITE_START=$SECONDS
read -r -a CASES <<<"${E2E_CASES:-${ALL_CASES[*]}}"
for c in "${CASES[@]}"; do
    if ! declare -F "case_$c" >/dev/null; then
        echo "no such case: $c" >&2
        exit 2
    fi
done
for c in "${CASES[@]}"; do run_case "$c"; done

echo "${PASSED} passed, ${#FAILED[@]} failed, $((SECONDS - SUITE_START))s${FAILED[*]:+ (failed: ${FAILED[*]})}"
[ ${#FAILED[@]} -eq 0 ]

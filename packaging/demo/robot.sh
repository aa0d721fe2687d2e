# shellcheck shell=bash
# A user made of ready tools: a virtual display with a window manager, eyes, keyboard and mouse. It finds windows by
# their titles and controls by their colours, so that a change of layout does not break it. To be sourced.

# shellcheck source=packaging/demo/headset.sh
source "$(dirname "${BASH_SOURCE[0]}")/headset.sh"

# start_display WIDTHxHEIGHT
start_display() {
  local display_file="$stage/display"
  Xvfb -displayfd 3 -screen 0 "${1}x24" -nolisten tcp -noreset 3>"$display_file" >"$stage/display.log" 2>&1 &
  started+=("$!")
  wait_for 20 "the virtual display" test -s "$display_file"
  DISPLAY=:$(<"$display_file")
  export DISPLAY
  export QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR="$stage/runtime"
  mkdir -m 700 "$XDG_RUNTIME_DIR"
  unset WAYLAND_DISPLAY QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE
  # With a face given, the very first start does not ask for one.
  export ORVANTA_LANGUAGE=${ORVANTA_LANGUAGE-original}
  # Without a session there is no bus, and looking for one would start a daemon that nobody ends.
  export DBUS_SESSION_BUS_ADDRESS=disabled: NO_AT_BRIDGE=1
  openbox >"$stage/openbox.log" 2>&1 &
  started+=("$!")
  wait_for 20 "the window manager" has_window_manager
  # Moves the pointer away, so that no button looks hovered.
  xdotool mousemove 0 0
}

has_window_manager() {
  xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'
}

# find_window TITLE: the number of the visible window with this title (a regular expression), in $window.
find_window() {
  window=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1)
  [[ -n $window ]]
}

# title_of WINDOW: the beginning of its title in the face of ORVANTA_LANGUAGE, as a regular expression.
title_of() {
  case ${ORVANTA_LANGUAGE-original}:$1 in
    *:main) echo '^Orvanta [0-9.]+ - ' ;;
    zh:help) echo '^帮助$' ;;
    *:help) echo '^Help$' ;;
    zh:manifest) echo '^清单中的权限$' ;;
    *:manifest) echo '^Permissions in Manifest$' ;;
    zh:list) echo '^已安装的应用' ;;
    *:list) echo '^Installed Apps' ;;
    zh:manage) echo '^管理权限$' ;;
    *:manage) echo '^Manage permissions$' ;;
    zh:files) echo '^找到的 OBB 文件' ;;
    *:files) echo '^Found OBB Files' ;;
    zh:tip) echo '^提示$' ;;
    *:tip) echo '^Tip$' ;;
    zh:chooser) echo '^选择设备$' ;;
    en:chooser) echo '^Headsets$' ;;
    *:chooser) echo '^选择设备 ' ;;
    zh:queue) echo '^安装队列$' ;;
    en:queue) echo '^Queue$' ;;
    *:queue) echo '^安装队列 ' ;;
  esac
}

no_window() {
  ! find_window "$1"
}

# await_window TITLE: waits for it and gives it the keyboard; its number is in $window.
await_window() {
  wait_for 30 "the window \"$1\"" find_window "$1"
  xdotool windowactivate --sync "$window" 2>/dev/null || true
}

press() {
  xdotool key --clearmodifiers "$1"
}

# shot FILE WINDOW: a picture of the window as it is on the screen, once it has been painted.
shot() {
  local tries
  for ((tries = 0; tries < 50; tries++)); do
    import -window "$2" "png:$1" 2>/dev/null && (($(identify -format '%k' "$1") > 8)) && return 0
    sleep 0.1
  done
  fail "No picture could be taken of the window for ${1##*/}."
}

# patches COLOUR WINDOW: the centres of all patches of this colour in the window, "X Y" a line, from the top down.
patches() {
  import -window "$2" "png:$stage/look.png" 2>/dev/null || return 0
  convert "$stage/look.png" -fuzz 2% -fill black +opaque "$1" -fuzz 0 -fill white +opaque black \
    -define connected-components:verbose=true -define connected-components:area-threshold=150 \
    -connected-components 4 null: |
    awk '$NF ~ /255|white/ { split($3, centre, ","); printf "%d %d\n", centre[1], centre[2] }' | sort -n -k2
}

has_patches() {
  (($(patches "$2" "$3" | wc -l) == $1))
}

# click_patch COLOUR NUMBER WINDOW: a click into the middle of the NUMBERth patch of the colour.
click_patch() {
  local x y
  read -r x y < <(patches "$1" "$3" | sed -n "${2}p") || fail "There is nothing of colour $1 to click on."
  xdotool mousemove --window "$3" "$x" "$y" click 1
}

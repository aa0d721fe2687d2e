# shellcheck shell=bash
# The program for Windows under Wine instead of the one for this system: how it is started and where it keeps its
# settings. It reaches the real adb through a relay. Sourced by make, which has the variables that are not
# set here.
# shellcheck disable=SC2154

# shellcheck source=packaging/windows/wine.sh
source "$project_root/packaging/windows/wine.sh"

windows_folder=""  # of the program, with its tools beside it

prepare_wine() {
  ORVANTA_WINDOWS_KIT=$("$project_root/packaging/windows/build-kit") || fail "The libraries for Windows are missing."
  export ORVANTA_WINDOWS_KIT
  build windows orvanta relay_adb
}

# start_wine: a Wine home, the program with the relayed tools beside it, and the relay's other half.
start_wine() {
  windows_folder="$stage/Orvanta"
  mkdir "$windows_folder"
  cp "$project_root/build/windows/bin/"{orvanta,aapt}.exe "$project_root/build/windows/packaging/windows/relay/adb.exe" \
    "$project_root/build/dev/bin/aapt-arm-pie" "$windows_folder/"
  ORVANTA_RELAY_PORT=$(free_port)
  export ORVANTA_RELAY_PORT
  "$project_root/packaging/windows/relay/relay-server" "$ORVANTA_RELAY_PORT" >"$stage/relay.log" 2>&1 &
  started+=("$!")
  start_wine_home
}

# The whole text after the program's name is the path, as the file manager gives it: without quotes.
start_orvanta() {
  local words=()
  (($# == 0)) || read -ra words <<<"Z:${1//\//\\}"
  set_in_wine 'HKCU\Software\Microsoft\Windows\CurrentVersion\Themes\Personalize' AppsUseLightTheme \
    "$([[ $ORVANTA_COLOR_SCHEME == light ]] && echo 1 || echo 0)" REG_DWORD
  # Wine does not hand down variables that begin with QT_.
  set_in_wine 'HKCU\Environment' QT_SCALE_FACTOR "$QT_SCALE_FACTOR"
  start_in_wine "$windows_folder/orvanta.exe" "${words[@]}"
}

remember() {
  local pair
  forget
  for pair in "$@"; do set_in_wine "HKCU\\Software\\Orvanta\\Orvanta\\${pair%=*}" Value "${pair#*=}"; done
}

forget() {
  in_wine reg delete 'HKCU\Software\Orvanta' /f >/dev/null 2>&1 || true
}

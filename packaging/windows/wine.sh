# shellcheck shell=bash
# Wine in its own home, apart from the user's. To be sourced; other variables belong to the sourcing script.
# shellcheck disable=SC2154,SC2034

wine_home=""  # the folder; set it before anything else

readonly wine=/usr/lib/wine/wine64

in_wine() {
  # Neither the browser nor the other runtime that a new home would offer to fetch, nor entries in the user's menus.
  WINEPREFIX=$wine_home WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d" \
    "$wine" "$@"
}

# set_in_wine KEY NAME VALUE [TYPE]: a value in Wine's registry.
set_in_wine() {
  in_wine reg add "$1" /f /v "$2" /d "$3" ${4:+/t "$4"} >/dev/null 2>&1
}

# start_in_wine PROGRAM [WORD...]: in the background, as the program of this run (see packaging/demo/headset.sh).
start_in_wine() {
  env -u ORVANTA_COLOR_SCHEME WINEPREFIX="$wine_home" WINEDEBUG=-all "$wine" "$@" >"$stage/orvanta.log" 2>&1 \
    </dev/null &
  orvanta_pid=$!
}

# start_wine_home: makes a Wine home in the folder of this run, which ends with it.
start_wine_home() {
  say "Making a Wine home"
  wine_home=$stage/wine
  mkdir "$wine_home"
  at_end+=(end_wine_home)
  in_wine wineboot --init >"$stage/wine.log" 2>&1
}

# Ends everything that runs in it, including Wine's services.
end_wine_home() {
  local server=${wine%64}server64
  WINEPREFIX=$wine_home "$server" --kill
  WINEPREFIX=$wine_home "$server" --wait
}

# shellcheck shell=bash
# A run of Orvanta against the virtual headset that does not touch the user's files: own home, own state folder, own
# adb server. Sourced by the demo and by the screenshots.

# shellcheck source=packaging/setup/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../setup/setup.sh"

stage=""             # temporary folder of this run
headset_log=""       # every service that was opened on the headset
orvanta_pid=""
on_failure=""          # called first when the script ends in failure
declare -a started=()  # processes to end, in the order of their start
declare -a at_end=()   # commands that end something else
readonly demo_package=com.example.lighthouse

# open_stage: makes the folder and points the environment at it. However the script ends, it ends what the run has
# started and removes the folder.
open_stage() {
  stage=$(mktemp -d "${TMPDIR:-/tmp}/orvanta-demo.XXXXXX")
  trap close_stage EXIT
  trap 'interrupted 130' INT
  trap 'interrupted 143' TERM HUP
  # The user's display must stay reachable from the other home.
  export XAUTHORITY="${XAUTHORITY:-${HOME-}/.Xauthority}"
  # adb's server writes its log into the folder for temporary files; the user's own server has one there too.
  export HOME="$stage/home" TMPDIR="$stage/tmp"
  mkdir "$HOME" "$TMPDIR"
  unset XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME XDG_STATE_HOME
  unset ANDROID_SERIAL ADB_SERVER_SOCKET ANDROID_ADB_SERVER_ADDRESS ADB_VENDOR_KEYS
  ANDROID_ADB_SERVER_PORT=$(free_port)
  export ANDROID_ADB_SERVER_PORT
  # This server looks for no devices of its own: a headset on the USB cable stays with the user's server.
  export ADB_USB=0 ADB_EMU=0 ADB_MDNS=0
}

interrupted() {
  on_failure=""
  say "Interrupted; ending what was started"
  exit "$1"
}

close_stage() {
  local code=$? i command
  set +e
  trap - EXIT
  trap '' INT TERM HUP
  ((code == 0)) || [[ -z $on_failure ]] || "$on_failure"
  [[ -z $orvanta_pid ]] || end_process "$orvanta_pid"
  timeout 10 adb kill-server >/dev/null 2>&1
  for ((i = ${#started[@]} - 1; i >= 0; i--)); do end_process "${started[i]}"; done
  for command in "${at_end[@]}"; do "$command"; done
  # Some of the headset's folders may lack the permission to remove them.
  chmod -R u+rwX "$stage" 2>/dev/null
  rm -rf "$stage"
  exit "$code"
}

end_process() {
  local pid=$1 tries
  kill "$pid" 2>/dev/null || return 0
  for ((tries = 0; tries < 50; tries++)); do
    kill -0 "$pid" 2>/dev/null || return 0
    sleep 0.1
  done
  kill -KILL "$pid" 2>/dev/null || true
}

free_port() {
  local port
  while true; do
    port=$((20000 + RANDOM % 20000))
    (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null || break
  done
  echo "$port"
}

# wait_for SECONDS WHAT COMMAND...: waits until the command succeeds; fails with a plain message if it does not.
wait_for() {
  local seconds=$1 what=$2 end
  shift 2
  end=$((SECONDS + seconds))
  until "$@"; do
    ((SECONDS < end)) || fail "Waited $seconds seconds in vain for $what."
    [[ -z $orvanta_pid ]] || kill -0 "$orvanta_pid" 2>/dev/null || fail "Orvanta ended while $what was awaited."
    sleep 0.1
  done
}

# start_headset [OPTION...]: the adb server and the virtual headset, connected.
start_headset() {
  local bin="$project_root/build/dev/headset" pid
  headset_log="$stage/device-services.log"
  adb start-server >"$stage/adb.log" 2>&1 || {
    cat "$stage/adb.log" >&2
    fail "The adb server could not be started."
  }
  "$bin/virtual-headset" --state "$stage/headset" --ready-file "$stage/ready" --log "$headset_log" \
    --adb-server "$ANDROID_ADB_SERVER_PORT" --exit-with-parent "$@" >"$stage/headset.log" 2>&1 &
  pid=$!
  started+=("$pid")
  local end=$((SECONDS + 60))
  until [[ -s $stage/ready ]]; do
    if ! kill -0 "$pid" 2>/dev/null || ((SECONDS >= end)); then
      cat "$stage/headset.log" >&2
      fail "The virtual headset did not start."
    fi
    sleep 0.1
  done
  wait_for 30 "the headset at the adb server" device_is_there
}

device_is_there() {
  [[ $(adb get-state 2>/dev/null) == device ]]
}

# set_faults [KEY=VALUE...]: what goes wrong on the headset from now on; nothing without arguments.
set_faults() {
  printf '%s\n' "$@" >"$stage/headset/faults.new"
  mv "$stage/headset/faults.new" "$stage/headset/faults"
}

# How often a service whose name holds the text was opened.
services() {
  grep -cF -- "$1" "$headset_log" || true
}

# make_demo_package: a package and three expansion files in the folder of its name; prints the package's path.
make_demo_package() {
  local folder="$stage/Downloads" name version=412
  local package="$folder/Lighthouse Keeper 1.4.2.apk"
  mkdir -p "$folder/$demo_package"
  "$project_root/build/dev/headset/make-sample-package" --out "$package" --package "$demo_package" --icon \
    --version-code "$version" --version-name 1.4.2 --label "Lighthouse Keeper" --padding 3000000 \
    --permission android.permission.INTERNET --permission android.permission.RECORD_AUDIO \
    --permission android.permission.READ_EXTERNAL_STORAGE --feature android.hardware.vr.headtracking >&2 ||
    fail "The sample package could not be made."
  for name in main patch voices; do
    head -c 6000000 /dev/urandom >"$folder/$demo_package/$name.$version.$demo_package.obb"
  done
  echo "$package"
}

# start_orvanta [WORD...]
start_orvanta() {
  "$project_root/build/dev/bin/orvanta" "$@" >"$stage/orvanta.log" 2>&1 </dev/null &
  orvanta_pid=$!
}

# Waits until Orvanta has ended by itself; gives its exit code.
orvanta_end() {
  local code=0
  wait "$orvanta_pid" || code=$?
  orvanta_pid=""
  return "$code"
}

# Sourced by demo.sh and soak.sh: the pieces of a session that runs kestrum against the game simulator in
# a private profile. The caller sets `rig_name` (the word its messages start with) and `out` (the folder
# everything stays in) before sourcing; servers and programs started here are ended on exit.

started_pids=()

say() { printf '\033[1m%s:\033[0m %s\n' "$rig_name" "$*"; }
rig_cleanup() {
    local pid
    for pid in "${started_pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
}
trap rig_cleanup EXIT

# Settings, caches, the capture log, the single instance's socket and the recordings all under $out.
rig_private_profile() {
    rm -rf "$out"
    mkdir -p "$out"/{config,cache,state,data,Videos,runtime}
    chmod 700 "$out/runtime"
    export XDG_CONFIG_HOME="$out/config" XDG_CACHE_HOME="$out/cache" XDG_STATE_HOME="$out/state" \
           XDG_DATA_HOME="$out/data" XDG_RUNTIME_DIR="$out/runtime"
    printf 'XDG_VIDEOS_DIR="%s"\n' "$out/Videos" >"$XDG_CONFIG_HOME/user-dirs.dirs"
}

# A private 1920x1080 Xvfb, its extra arguments given; exports DISPLAY.
rig_start_xvfb() {
    local number
    exec 3< <(Xvfb -displayfd 1 -screen 0 1920x1080x24 -nolisten tcp -noreset "$@" 2>"$out/xvfb.log")
    started_pids+=($!)
    read -r -t 15 number <&3 || { echo "$rig_name: Xvfb did not start (see $out/xvfb.log)" >&2; exit 1; }
    export DISPLAY=":$number"
}

# A private PulseAudio with a null sink (the default) and a null source; exports PULSE_SERVER.
rig_start_pulseaudio() {
    pulseaudio --daemonize=no --exit-idle-time=-1 -n \
        --load="module-native-protocol-unix auth-anonymous=1 socket=$out/runtime/pulse-native" \
        --load="module-null-sink sink_name=${rig_name}_null rate=48000" \
        --load="module-null-source source_name=${rig_name}_microphone rate=48000" >"$out/pulse.log" 2>&1 &
    started_pids+=($!)
    export PULSE_SERVER="unix:$out/runtime/pulse-native"
    for _ in $(seq 50); do pactl info >/dev/null 2>&1 && break; sleep 0.2; done
    pactl set-default-sink "${rig_name}_null" >/dev/null 2>&1 || true
}

# kestrum of the build folder $1, logging to $out/kestrum.log; sets kestrum_pid once it says it runs.
rig_start_kestrum() {
    "$1/src/app/kestrum" >"$out/kestrum.log" 2>&1 &
    kestrum_pid=$!
    started_pids+=("$kestrum_pid")
    for _ in $(seq 100); do grep -q "Kestrum is running" "$out/kestrum.log" 2>/dev/null && break; sleep 0.2; done
    grep -q "Kestrum is running" "$out/kestrum.log" \
        || { cat "$out/kestrum.log"; echo "$rig_name: kestrum did not start" >&2; exit 1; }
}

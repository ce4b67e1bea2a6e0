#!/usr/bin/env bash
# Records a simulated game end to end: builds kestrum and the game simulator, uses the desktop when there
# is one (else a private Xvfb and, when no sound server answers, a private PulseAudio with a null sink),
# keeps the whole profile under ./demo-output/, prints what was saved, and then opens the review window
# on it (with no desktop, writes its screenshots under ./demo-output/ instead).
set -euo pipefail
cd "$(dirname "$0")/.."

out="$PWD/demo-output"
build=build/debug
script=${KESTRUM_DEMO_SCRIPT:-tools/game-simulator/scripts/demo.json}
rig_name=demo
source scripts/session-rig.sh

say "building kestrum and the game simulator"
cmake --preset debug >/dev/null
cmake --build --preset debug -j "$(nproc)" --target kestrum kestrum-game-simulator kestrum-telemetry >/dev/null

rig_private_profile

has_desktop=0
if [[ -n "${DISPLAY:-}" ]] && xdpyinfo >/dev/null 2>&1; then
    has_desktop=1
    say "using the desktop on $DISPLAY"
else
    rig_start_xvfb
    say "no desktop: started Xvfb on $DISPLAY"
fi

if pactl info >/dev/null 2>&1; then
    say "using the running sound server"
else
    rig_start_pulseaudio
    say "no sound server: started PulseAudio with a null sink"
fi

rig_start_kestrum "$build"
say "kestrum runs (log: $out/kestrum.log); starting a simulated game from $script"

"$build/tools/game-simulator/run-game.sh" --script "$script" >"$out/simulator.log" 2>&1 || true
say "the game ended; waiting for the recording to be saved"
movie=""
for _ in $(seq 300); do
    movie=$(find "$out/Videos" -name '*.mov' 2>/dev/null | head -n 1)
    [[ -n "$movie" && -f "${movie%.mov}.json" ]] && break
    sleep 0.2
done
kill -TERM "$kestrum_pid" 2>/dev/null || true
wait "$kestrum_pid" 2>/dev/null || true

if [[ -z "$movie" || ! -f "${movie%.mov}.json" ]]; then
    echo "demo: no recording was saved; kestrum said:" >&2
    tail -n 30 "$out/kestrum.log" >&2
    exit 1
fi

echo
say "movie:    $movie"
say "document: ${movie%.mov}.json"
echo
ffprobe -v error -show_entries format=duration:stream=index,codec_type,codec_name,width,height,sample_rate,channels \
    -of compact=nokey=0 "$movie"
echo
say "first events of the document:"
"$build/tools/kestrum-telemetry/kestrum-telemetry" events "${movie%.mov}.json" | head -n 8
echo
say "capture log: $XDG_STATE_HOME/Kestrum/Logs/kestrum_system.log"

# The review window on the recorded game, its game art from the simulator's stand-in of the art host.
exec 4< <("$build/tools/game-simulator/kestrum-game-simulator" --art-host 0 2>&1)
started_pids+=($!)
art_host=""
while read -r -t 30 line <&4; do
    if [[ "$line" =~ art\ host\ on\ (http://[0-9.:]+) ]]; then art_host=${BASH_REMATCH[1]}; break; fi
done
art_options=()
[[ -n "$art_host" ]] && art_options=(--art-host "$art_host") || say "no art host: the cards show placeholders"
echo
if (( has_desktop )); then
    say "opening the review window on the recording (Ctrl-C here to quit)"
    "$build/src/app/kestrum" --dashboard --select 0 "${art_options[@]}" >>"$out/kestrum.log" 2>&1 || true
else
    for look in light dark; do
        "$build/src/app/kestrum" --dashboard --select 0 --at 30 --appearance "$look" "${art_options[@]}" \
            --screenshot "$out/review-window-$look.png" >>"$out/kestrum.log" 2>&1 \
            && say "review window: $out/review-window-$look.png" \
            || say "the review window's screenshot failed (see $out/kestrum.log)"
    done
fi

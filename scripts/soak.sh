#!/usr/bin/env bash
# Soak: records one long simulated game at 720p30 (60 minutes unless SOAK_MINUTES says otherwise) on a
# private Xvfb with openbox and a private PulseAudio null sink, moving the focus to another window and
# back every 30 seconds, then reports kestrum's resident memory over time, its CPU, the frames the
# stop's tally says were not written, the movie's duration against the game's, and whether every event
# of the game is in the saved document. Not part of CI: run it on a quiet machine and note the load.
#
#   scripts/soak.sh                       # 60 minutes, the release build
#   SOAK_MINUTES=2 SOAK_PRESET=debug scripts/soak.sh
#
# Everything stays under ./soak-output/ (profile, logs, memory.csv, the recording).
set -euo pipefail
cd "$(dirname "$0")/.."

minutes=${SOAK_MINUTES:-60}
preset=${SOAK_PRESET:-release}
build=build/$preset
out="$PWD/soak-output"
loading_seconds=5
rig_name=soak
source scripts/session-rig.sh

say "building kestrum and the game simulator ($preset)"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j 2 --target kestrum kestrum-game-simulator >/dev/null

rig_private_profile
unset QT_QPA_PLATFORM

# The game: the short end-to-end game's players, lasting the soak, with a kill by the local player every
# minute and a dragon every 90 seconds.
python3 - "$minutes" "$loading_seconds" tests/e2e/scripts/short.json "$out/game.json" <<'EOF'
import json, sys
minutes, loading, source, target = float(sys.argv[1]), float(sys.argv[2]), sys.argv[3], sys.argv[4]
game = json.load(open(source))
duration = minutes * 60
game["durationSeconds"] = duration
game["loadingSeconds"] = loading
events = [{"EventName": "GameStart", "EventTime": 1.0}]
t, victims = 30.0, ["Rook", "Sable"]
while t < duration - 5:
    events.append({"EventName": "ChampionKill", "EventTime": t, "KillerName": "Kestrel",
                   "VictimName": victims[len(events) % 2], "Assisters": []})
    t += 60.0
t = 45.0
while t < duration - 5:
    events.append({"EventName": "DragonKill", "EventTime": t, "DragonType": "Fire", "Stolen": "False",
                   "KillerName": "Marlow", "Assisters": []})
    t += 90.0
game["events"] = sorted(events, key=lambda e: e["EventTime"])
for player in game["players"]:
    player["timeline"] = [step for step in player["timeline"] if step["time"] < duration]
json.dump(game, open(target, "w"), indent=1)
EOF

rig_start_xvfb +extension Composite
openbox --sm-disable >"$out/openbox.log" 2>&1 &
started_pids+=($!)
rig_start_pulseaudio

rig_start_kestrum "$build"

say "recording a ${minutes}-minute game; load now: $(cut -d' ' -f1-3 /proc/loadavg)"
"$build/tools/game-simulator/run-game.sh" --script "$out/game.json" >"$out/simulator.log" 2>&1 &
game_pid=$!
started_pids+=("$game_pid")
for _ in $(seq 300); do grep -q "timeline starting" "$out/kestrum.log" && break; sleep 0.2; done
grep -q "timeline starting" "$out/kestrum.log" || { echo "soak: the recording did not start" >&2; exit 1; }

clock_ticks=$(getconf CLK_TCK)
cpu_ticks() { awk '{print $14 + $15}' "/proc/$kestrum_pid/stat"; }
ticks_at_start=$(cpu_ticks)
seconds_at_start=$(date +%s.%N)

# The focus leaves the game for another window and comes back, every 30 seconds.
xmessage -name soak-other "Another application" >/dev/null 2>&1 &
started_pids+=($!)
# A new window takes the focus: give it back to the game before the cycle starts.
for _ in $(seq 50); do xdotool search --class Xmessage >/dev/null 2>&1 && break; sleep 0.2; done
sleep 1
xdotool search --onlyvisible --name 'League of Legends' | head -1 | xargs -r xdotool windowactivate
(
    away=false
    while kill -0 "$game_pid" 2>/dev/null; do
        sleep 30
        if $away; then
            xdotool search --onlyvisible --name 'League of Legends' | head -1 | xargs -r xdotool windowactivate
            away=false
        else
            xdotool search --class Xmessage | head -1 | xargs -r xdotool windowactivate
            away=true
        fi
    done
) >/dev/null 2>&1 &
started_pids+=($!)

echo "seconds,rss_kib" >"$out/memory.csv"
while kill -0 "$game_pid" 2>/dev/null; do
    elapsed=$(awk -v now="$(date +%s.%N)" -v start="$seconds_at_start" 'BEGIN {printf "%.0f", now - start}')
    echo "$elapsed,$(awk '/^VmRSS/ {print $2}' "/proc/$kestrum_pid/status")" >>"$out/memory.csv"
    sleep 10
done
ticks_at_end=$(cpu_ticks)
seconds_at_end=$(date +%s.%N)

movie=""
for _ in $(seq 600); do
    movie=$(find "$out/Videos" -name '*.mov' 2>/dev/null | head -n 1)
    [[ -n "$movie" && -f "${movie%.mov}.json" ]] && break
    sleep 0.5
done
kill -TERM "$kestrum_pid" 2>/dev/null || true
wait "$kestrum_pid" 2>/dev/null || true
[[ -n "$movie" && -f "${movie%.mov}.json" ]] || { echo "soak: no recording was saved" >&2; tail -n 30 "$out/kestrum.log" >&2; exit 1; }

log="$out/state/Kestrum/Logs/kestrum_system.log"
movie_seconds=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$movie")
python3 - "$out/memory.csv" "$out/game.json" "${movie%.mov}.json" "$movie_seconds" "$minutes" \
    "$ticks_at_start" "$ticks_at_end" "$clock_ticks" "$seconds_at_start" "$seconds_at_end" "$log" <<'EOF'
import csv, json, sys
memory, game, document, movie_seconds, minutes = sys.argv[1:6]
ticks_start, ticks_end, clock_ticks, wall_start, wall_end, log = sys.argv[6:12]
rows = [(int(r["seconds"]), int(r["rss_kib"])) for r in csv.DictReader(open(memory)) if r["rss_kib"]]
step = max(1, len(rows) // 12)
print("resident memory (MiB) over time: " + ", ".join(f"{s}s {k / 1024:.0f}" for s, k in rows[::step]))
if rows:
    print(f"figure soak_rss_first {rows[0][1] / 1024:.1f} MiB")
    print(f"figure soak_rss_last {rows[-1][1] / 1024:.1f} MiB")
    print(f"figure soak_rss_max {max(k for _, k in rows) / 1024:.1f} MiB")
wall = float(wall_end) - float(wall_start)
print(f"figure soak_cpu {100 * (int(ticks_end) - int(ticks_start)) / int(clock_ticks) / wall:.1f} % of one core")
lines = open(log, encoding="utf-8", errors="replace").read().splitlines()
video = [l.split("[Capture] ", 1)[-1] for l in lines if "[Capture] video: " in l]
print("stop's video line: " + (video[-1] if video else "missing"))
script = json.load(open(game))
game_seconds = script["durationSeconds"]
print(f"figure soak_movie_duration {float(movie_seconds):.1f} s (game clock ran {game_seconds:.0f} s after "
      f"{script['loadingSeconds']:.0f} s of loading)")
kept = [e for e in script["events"] if e["EventName"] in ("ChampionKill", "DragonKill", "GameStart")]
saved = json.load(open(document)).get("events", [])
names = {}
for e in saved:
    names[e["name"]] = names.get(e["name"], 0) + 1
scripted = {}
for e in kept:
    name = "ChampionKill" if e["EventName"] == "ChampionKill" else e["EventName"]
    scripted[name] = scripted.get(name, 0) + 1
# The first kill of a game is stored as "FirstBlood".
names["ChampionKill"] = names.get("ChampionKill", 0) + names.pop("FirstBlood", 0)
print(f"events: scripted {scripted}, saved {names}")
print("every event present: " + ("yes" if all(names.get(k, 0) >= v for k, v in scripted.items()) else "NO"))
EOF
say "output in $out (memory.csv, kestrum.log, the recording)"

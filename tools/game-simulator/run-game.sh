#!/usr/bin/env bash
# Starts kestrum-game-simulator (beside this script) under the process name that the recorder watches for:
# "League of Legends.exe" for the game, "LeagueClient.exe" with --client. exec keeps the process id, so
# whoever started this script holds the game's process.
name="League of Legends.exe"
for argument in "$@"; do
    [[ "$argument" == "--client" ]] && name="LeagueClient.exe"
done
exec -a "$name" "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/kestrum-game-simulator" "$@"

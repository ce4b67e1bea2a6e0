#!/usr/bin/env bash
# Kestrum's one entry point for developers and CI.
#   ./kestrum.sh test [--quick]   install what is missing, build, run every test
#                                 (qmllint and the debug suite, then the unit tests built in Release, then
#                                 the core under ASan+UBSan, then 60 s of fuzzing; --quick runs qmllint and
#                                 the debug suite only)
#   ./kestrum.sh bench [area]     build the release benchmarks and run them (all, or kestrum-bench-<area>)
#   ./kestrum.sh demo             record a simulated game and show the result
#   ./kestrum.sh run [args]       build Kestrum (Release), install it under build/installed, and start it
set -euo pipefail
cd "$(dirname "$0")"

jobs=$(nproc 2>/dev/null || echo 2)
FUZZ_SECONDS=${KESTRUM_FUZZ_SECONDS:-60}
passed=0
failed=0
# Names of what failed, repeated under the totals: CI keeps only the tail of a long log.
failed_names=()
# In CI every real component is installed, so a test that would skip for a missing encoder or tool fails.
[[ "${CI:-}" == "true" ]] && export KESTRUM_REQUIRE_MEDIA=1

log() { printf '\033[1m==> %s\033[0m\n' "$*"; }

install_dependencies() { ./scripts/install-deps.sh; }

configure_and_build() {  # $1: preset
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" -j "$jobs"
}

# Runs ctest with the given arguments and adds its counts to the totals.
run_ctest() {
    local output status=0
    output=$(mktemp)
    ctest "$@" -j "$jobs" --output-on-failure 2>&1 | tee "$output" || status=$?
    local line
    line=$(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$output" | tail -n 1 || true)
    local name
    while read -r name; do
        failed_names+=("$*: $name")
    done < <(sed -n '/The following tests FAILED:/,$p' "$output" | grep -E '^[[:space:]]+[0-9]+ - ' || true)
    rm -f "$output"
    if [[ -z "$line" ]]; then
        failed=$((failed + 1))
        failed_names+=("$*: ctest did not finish")
        return 1
    fi
    local failures total
    failures=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\1/' <<<"$line")
    total=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\2/' <<<"$line")
    passed=$((passed + total - failures))
    failed=$((failed + failures))
    return "$status"
}

# qmllint over every QML file of every module (the all_qmllint target); any warning fails the run.
run_qmllint() {
    log "linting the QML files"
    if cmake --build --preset debug --target all_qmllint; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        failed_names+=("qmllint")
        return 1
    fi
}

run_fuzzers() {
    local corpus target status=0
    for target in build/fuzz/fuzz/kestrum-fuzz-*; do
        [[ -f "$target" && -x "$target" ]] || continue
        local name=${target##*/kestrum-fuzz-}
        corpus=$(mktemp -d)
        cp -r "fuzz/corpus/$name/." "$corpus/"
        log "fuzzing $name for ${FUZZ_SECONDS} s"
        if "$target" -max_total_time="$FUZZ_SECONDS" -print_final_stats=1 "$corpus" >"build/fuzz/$name.log" 2>&1; then
            passed=$((passed + 1))
            grep -E 'stat::number_of_executed_units|Done [0-9]+ runs' "build/fuzz/$name.log" | tail -n 2 || true
        else
            failed=$((failed + 1))
            failed_names+=("fuzz target $name")
            status=1
            tail -n 60 "build/fuzz/$name.log"
        fi
        rm -rf "$corpus"
    done
    return "$status"
}

command_test() {
    local quick=false status=0
    [[ "${1:-}" == "--quick" ]] && quick=true
    install_dependencies
    log "building (debug)"
    configure_and_build debug
    run_qmllint || status=1
    log "running the test suite"
    run_ctest --preset debug || status=1
    if ! $quick; then
        # Optimised code is what users run, and an optimiser can expose a fault that Debug hides (an
        # overflow once did): the unit tests run again in Release, built lean (the core only).
        log "building the core and its unit tests in Release"
        configure_and_build release-unit
        log "running the unit tests in Release"
        run_ctest --preset release-unit || status=1
        log "building the core under AddressSanitizer and UBSan"
        configure_and_build asan
        log "running the core's unit and component tests under the sanitizers"
        ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 run_ctest --preset asan || status=1
        log "building the fuzz targets"
        configure_and_build fuzz
        run_fuzzers || status=1
    fi
    echo
    local name
    for name in "${failed_names[@]}"; do
        echo "failed: $name"
    done
    echo "test: ${passed} passed, ${failed} failed"
    return "$status"
}

command_bench() {
    local area=${1:-}
    install_dependencies
    cmake --preset release >/dev/null
    local target=kestrum-benchmarks
    [[ -n "$area" ]] && target="kestrum-bench-$area"
    cmake --build --preset release -j "$jobs" --target "$target"
    local found=false program
    for program in build/release/bench/kestrum-bench-*; do
        [[ -x "$program" && -f "$program" ]] || continue
        [[ -n "$area" && "${program##*/}" != "kestrum-bench-$area" ]] && continue
        found=true
        log "${program##*/}"
        "$program"
    done
    $found || { echo "bench: no benchmark program named kestrum-bench-${area:-*}" >&2; return 1; }
}

command_demo() {
    install_dependencies
    ./scripts/demo.sh "$@"
}

# The application as a user has it: built in Release, installed with its launcher entry and icon under
# build/installed (the desktop finds them there through XDG_DATA_DIRS), then started in the foreground.
command_run() {
    install_dependencies
    cmake --preset release >/dev/null
    cmake --build --preset release -j "$jobs" --target kestrum
    local prefix="$PWD/build/installed"
    cmake --install build/release --prefix "$prefix" --component Unspecified >/dev/null
    log "starting $prefix/bin/kestrum"
    XDG_DATA_DIRS="$prefix/share:${XDG_DATA_DIRS:-/usr/local/share:/usr/share}" exec "$prefix/bin/kestrum" "$@"
}

case "${1:-}" in
    test) shift; command_test "$@" ;;
    run) shift; command_run "$@" ;;
    bench) shift; command_bench "$@" ;;
    demo) shift; command_demo "$@" ;;
    *)
        echo "usage: ./kestrum.sh test [--quick] | bench [area] | demo | run [args]" >&2
        exit 2
        ;;
esac

#!/usr/bin/env bash
# Installs every Debian package that the build, the tests, the benchmarks and the demo need.
# Idempotent: when everything is present it prints nothing and installs nothing.
set -euo pipefail

packages=(
  # build
  cmake ninja-build ccache g++ pkg-config clang-14 libclang-rt-14-dev clang-format
  # Qt 6 and coroutines on its event loop
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libqt6opengl6-dev qt6-qpa-plugins libgl-dev
  qcoro-qt6-dev
  # the windows: Qt Quick and its controls, compiled ahead of time, linted, tested under Xvfb
  qt6-declarative-dev qt6-declarative-dev-tools qml6-module-qtqml qml6-module-qtquick
  qml6-module-qtquick-controls qml6-module-qtquick-layouts qml6-module-qtquick-templates
  qml6-module-qtquick-window qml6-module-qtqml-workerscript qml6-module-qtqml-models qml6-module-qttest
  libqt6quicktest6
  # movies and playback
  libavformat-dev libavcodec-dev libswscale-dev libswresample-dev libavutil-dev libmpv-dev
  libyuv-dev
  # JSON
  rapidjson-dev
  # X11 capture, focus and windows
  libxcb1-dev libxcb-composite0-dev libxcb-shm0-dev libxcb-xfixes0-dev libxcb-damage0-dev
  libxcb-randr0-dev libxcb-ewmh-dev libxcb-icccm4-dev
  # sound
  libpulse-dev
  # tests and benchmarks
  libgtest-dev libgmock-dev libbenchmark-dev
  # the real components that tests start: X server, sound server, TLS, an independent movie reader
  xvfb xauth openbox pulseaudio pulseaudio-utils ffmpeg xdotool openssl x11-utils fonts-dejavu-core
  # a private D-Bus bus for the desktop-service adapters (logind, the portal, the file manager)
  dbus-daemon
  # an X11 tray for the application's end-to-end test
  trayer
)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$p")
done
((${#missing[@]} == 0)) && exit 0

sudo=""
if [[ $(id -u) -ne 0 ]]; then
  command -v sudo >/dev/null || { echo "install-deps: need root or sudo to install: ${missing[*]}" >&2; exit 1; }
  sudo="sudo"
fi
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
echo "install-deps: done"

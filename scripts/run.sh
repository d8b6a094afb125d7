#!/usr/bin/env bash
# Installs what is missing, builds what the main job needs, and runs it:
# with a display the stand-in host velmora-host (the main window, loading
# libvelmora.so); without one, or with arguments, the headless regression
# runner velmora-test over the sample scripts (arguments go to it).
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
"$here/scripts/install-deps.sh"
build="${VELMORA_BUILD_DIR:-$here/build}"
cmake -S "$here" -B "$build" -G Ninja >/dev/null

# Only the targets the command runs: tests and benchmarks are left for test.sh.
build_target() {
  cmake --build "$build" --target "$1"
  if [ ! -x "$2" ]; then
    echo "run.sh: the build did not produce $2" >&2
    exit 2
  fi
}

host="$build/apps/host/velmora-host"
runner="$build/apps/cli/velmora-test"
if [ $# -eq 0 ] && [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  build_target velmora-host "$host"
  # The first start seeds the home folder with the sample scripts and project.
  exec "$host"
fi

build_target velmora-test "$runner"
# The first run seeds the home folder with the sample rebar scripts and their
# cases; every run tests every script and prints the summary.
status=0
"$runner" "$@" || status=$?
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo "run.sh: no display, so the window was not started. On a desktop, ./scripts/run.sh" \
       "starts velmora-host; here try: xvfb-run -a ./scripts/run.sh" >&2
fi
exit "$status"

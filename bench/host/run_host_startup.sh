#!/usr/bin/env bash
# Times velmora-host from process start to its main window on the screen
# (--exit-when-shown), RUNS times on one home: the first start seeds it.
# Without a display it runs itself under xvfb-run.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
build="${VELMORA_BUILD_DIR:-$root/build}"
host="$build/apps/host/velmora-host"
RUNS="${RUNS:-10}"
[ -x "$host" ] || { echo "missing $host: build it first (cmake --build build --target velmora-host)" >&2; exit 2; }
if [ -z "${DISPLAY:-}" ]; then
  exec xvfb-run -a -s "-screen 0 1600x1000x24" "$0" "$@"
fi
home="$(mktemp -d)"
trap 'rm -rf "$home"' EXIT
export VELMORA_HOME="$home" QT_QPA_PLATFORM=xcb
printf '%-5s %12s %14s\n' run wall_ms after_main_ms
for i in $(seq 1 "$RUNS"); do
  start=$(date +%s%N)
  line="$("$host" --exit-when-shown 2>/dev/null)"
  end=$(date +%s%N)
  printf '%-5s %12d %14s\n' "$i" $(((end - start) / 1000000)) "$(echo "$line" | sed -E 's/.* ([0-9]+) ms.*/\1/')"
done
echo "library: $( [ -e "$(dirname "$host")/libvelmora.so" ] && echo "$(dirname "$host")/libvelmora.so" || echo 'not built (the window starts without it)')"

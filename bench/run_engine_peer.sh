#!/bin/sh
# Runs the engine benchmarks and the Node.js peer on the same texts, then
# prints ours / Node per case from this one run of both.
#   bench/run_engine_peer.sh [build-dir]    (default: ./build)
set -eu
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../build}
bench="$build/bench/engine/velmora-bench-engine"
if [ ! -x "$bench" ]; then
  echo "no $bench: build the target velmora-bench-engine first" >&2
  exit 1
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$bench" --write-texts="$work/texts"
"$bench" --benchmark_filter='BM_Reset' \
  --benchmark_out="$work/ours.json" --benchmark_out_format=json
echo
node "$here/peer/engine_peer.js" "$work/texts" --ours="$work/ours.json"

#!/usr/bin/env bash
# Library benchmark: a real library (lodash 4.17.21, fetched here with npm
# into bench/library/node_modules, which git ignores) as the global
# functions of SCRIPTS scripts x CASES cases. Runs velmora-test with one job
# and the Node.js peer, which compiles the library once per run and runs it
# in a fresh vm context per case, in this one run, and prints the time per
# case of both (whole process, start included) and ours / Node.
#   bench/library/run_library_bench.sh      (VELMORA_BUILD_DIR, SCRIPTS, CASES)
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
. "$here/../bench_env.sh"
bin="$build/apps/cli/velmora-test"
seed="$build/bench/suite/velmora-suite-seed"
SCRIPTS="${SCRIPTS:-2}" CASES="${CASES:-20}"
bench_need "$bin" "$seed"
lib="$here/node_modules/lodash/lodash.js"
if [ ! -f "$lib" ]; then
  (cd "$here" && npm install --no-save --no-audit --no-fund --loglevel=error lodash@4.17.21 >/dev/null)
fi
bench_scratch
node "$here/gen_library_suite.js" "$lib" "$work/suite" "$SCRIPTS" "$CASES"
mkdir -p "$work/suite/home"
"$seed" "$work/suite/home" "$work/suite/suite.json" "$work/suite/GlobalFun.js" >/dev/null

# Prints: wall_s cpu_s
timed() {
  /usr/bin/time -f '%e %U %S' -o "$work/time" "$@" >"$work/out" 2>"$work/err" || { cat "$work/out" "$work/err" >&2; exit 1; }
  awk '{ printf "%s %.2f\n", $1, $2 + $3 }' "$work/time"
}
read -r ours oursCpu < <(timed "$bin" --home "$work/suite/home" --quiet --jobs 1)
grep -E '^[0-9]+ passed, [0-9]+ failed$' "$work/out"
read -r node nodeCpu < <(timed node "$root/bench/suite/node_peer.js" "$work/suite/suite.json" "$work/suite/GlobalFun.js" --compile-once)
cat "$work/out"
n=$((SCRIPTS * CASES))
awk -v n="$n" -v a="$ours" -v b="$node" -v c="$oursCpu" -v d="$nodeCpu" 'BEGIN {
  printf "per case, process start included (%d cases): velmora-test %.2f ms (cpu %.2f), node %.2f ms (cpu %.2f)\n", n, 1000 * a / n, 1000 * c / n, 1000 * b / n, 1000 * d / n
  printf "ratio velmora / node per case: wall %.2f, cpu %.2f\n", a / b, c / d }'
uptime

#!/usr/bin/env bash
# Test dialog benchmark: (1) opening the test case dialog on a script with
# CASES_OPEN cases (default 200); (2) "测试所有脚本" over the generated
# SCRIPTS x CASES suite (default 50 x 20) through the entry and its dialogs,
# against velmora-test on the same home, ROUNDS rounds each, alternating;
# prints the best wall times and their ratio.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
build="${VELMORA_BUILD_DIR:-$root/build}"
cli="$build/apps/cli/velmora-test"
seed="$build/bench/suite/velmora-suite-seed"
gui="$build/bench/testdialogs/velmora-testdialog-bench"
SCRIPTS="${SCRIPTS:-50}" CASES="${CASES:-20}" LINES="${LINES:-2000}" ROUNDS="${ROUNDS:-3}" CASES_OPEN="${CASES_OPEN:-200}"
for f in "$cli" "$seed" "$gui"; do
  [ -x "$f" ] || { echo "missing $f: build first" >&2; exit 2; }
done
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

mkdir -p "$work/samples"
"$cli" --home "$work/samples" --quiet >/dev/null
"$gui" open "$work/samples" '通用脚本\钢筋每米重量.js' "$CASES_OPEN" | sed "s/^open/open test case dialog, $CASES_OPEN cases, best of 5 (s):/"

node "$root/bench/suite/gen_suite.js" "$work/suite" "$SCRIPTS" "$CASES" "$LINES" >/dev/null
mkdir -p "$work/suite/home"
"$seed" "$work/suite/home" "$work/suite/suite.json" "$work/suite/GlobalFun.js" >/dev/null
best_cli=999999 best_gui=999999
for ((i = 0; i < ROUNDS; i++)); do
  start=$(date +%s.%N)
  "$cli" --home "$work/suite/home" --quiet >"$work/out" || { cat "$work/out"; exit 1; }
  t_cli=$(awk -v s="$start" -v e="$(date +%s.%N)" 'BEGIN { printf "%.3f", e - s }')
  start=$(date +%s.%N)
  "$gui" runall "$work/suite/home" >"$work/gui"
  t_gui=$(awk -v s="$start" -v e="$(date +%s.%N)" 'BEGIN { printf "%.3f", e - s }')
  # Each tool's own figure for the run alone, without process start-up.
  in_cli=$(sed -nE 's/^velmora-test: .* ([0-9.]+) s$/\1/p' "$work/out")
  in_gui=$(sed -nE 's/^runall ([0-9.]+)$/\1/p' "$work/gui")
  echo "round $((i + 1)): wall velmora-test $t_cli s, test dialogs $t_gui s; run alone $in_cli s, $in_gui s"
  best_cli=$(awk -v a="$best_cli" -v b="$t_cli" 'BEGIN { print (b < a ? b : a) }')
  best_gui=$(awk -v a="$best_gui" -v b="$t_gui" 'BEGIN { print (b < a ? b : a) }')
done
grep -E 'passed|velmora-test:' "$work/out"
awk -v c="$best_cli" -v g="$best_gui" -v n="$(nproc)" 'BEGIN {
  printf "run-all, %d cores, best wall time: velmora-test %.3f s, test dialogs %.3f s, ratio dialogs/cli %.3f\n", n, c, g, g / c }'
uptime

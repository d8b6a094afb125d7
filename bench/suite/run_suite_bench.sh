#!/usr/bin/env bash
# Suite benchmark: generates SCRIPTS scripts x CASES cases sharing a GlobalFun
# of LINES lines, runs velmora-test over it with one job and with one job per
# core, runs the same texts through the Node.js peer (a fresh vm context per
# case), and prints cases per second, peak memory and the ratios. Then runs
# FLAT_CASES cases per script (100,000 in all by default) and samples the
# runner's resident memory while it works. Set FLAT_CASES=0 to skip that,
# SUITE=0 to run only that.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
. "$here/../bench_env.sh"
bin="$build/apps/cli/velmora-test"
seed="$build/bench/suite/velmora-suite-seed"
SCRIPTS="${SCRIPTS:-50}" CASES="${CASES:-20}" LINES="${LINES:-2000}" FLAT_CASES="${FLAT_CASES:-2000}" SUITE="${SUITE:-1}"
cores="$(nproc)"
bench_need "$bin" "$seed"
bench_scratch

prepare() { # name scripts cases
  node "$here/gen_suite.js" "$work/$1" "$2" "$3" "$LINES" >/dev/null
  mkdir -p "$work/$1/home"
  "$seed" "$work/$1/home" "$work/$1/suite.json" "$work/$1/GlobalFun.js"
}

# Prints: cases seconds peak_rss_kb exit_status failed cpu_seconds
run_cli() { # name jobs
  local status=0
  /usr/bin/time -f '%e %M %U %S' -o "$work/time" "$bin" --home "$work/$1/home" --quiet --jobs "$2" \
    >"$work/out" 2>"$work/err" || status=$?
  local counts; counts="$(grep -E '^[0-9]+ passed, [0-9]+ failed$' "$work/out")"
  local passed="${counts%% passed*}" failed; failed="$(echo "$counts" | sed -E 's/.*, ([0-9]+) failed/\1/')"
  read -r secs rss user sys <"$work/time"
  echo "$((passed + failed)) $secs $rss $status $failed $(cpu "$user" "$sys")"
}

cpu() { awk -v u="$1" -v s="$2" 'BEGIN { printf "%.2f", u + s }'; }
rate() { awk -v n="$1" -v s="$2" 'BEGIN { printf "%.1f", (s > 0 ? n / s : 0) }'; }

bench_suite() {
  prepare suite "$SCRIPTS" "$CASES"
  echo "suite: $SCRIPTS scripts x $CASES cases, GlobalFun.txt $LINES lines, $cores cores"
  read -r n1 s1 m1 e1 f1 c1 < <(run_cli suite 1)
  read -r nN sN mN eN fN cN < <(run_cli suite "$cores")
  /usr/bin/time -f '%e %M %U %S' -o "$work/time" node "$here/node_peer.js" "$work/suite/suite.json" "$work/suite/GlobalFun.js" >"$work/node"
  read -r sNode mNode uNode yNode <"$work/time"
  cNode="$(cpu "$uNode" "$yNode")"
  nNode="$(sed -E 's/.*cases=([0-9]+).*/\1/' "$work/node")"
  r1="$(rate "$n1" "$s1")"; rN="$(rate "$nN" "$sN")"; rNode="$(rate "$nNode" "$sNode")"
  printf '%-28s %7s %9s %9s %10s %8s\n' runner cases wall_s cpu_s cases/s peak_MB
  printf '%-28s %7s %9s %9s %10s %8s\n' "velmora-test --jobs 1" "$n1" "$s1" "$c1" "$r1" "$((m1 / 1024))"
  printf '%-28s %7s %9s %9s %10s %8s\n' "velmora-test --jobs $cores" "$nN" "$sN" "$cN" "$rN" "$((mN / 1024))"
  printf '%-28s %7s %9s %9s %10s %8s\n' "node vm peer" "$nNode" "$sNode" "$cNode" "$rNode" "$((mNode / 1024))"
  echo "node peer: $(cat "$work/node")"
  echo "failed cases: jobs 1: $f1, jobs $cores: $fN (exit $e1 / $eN)"
  awk -v a="$r1" -v b="$rNode" -v c="$rN" -v k="$cores" -v x="$c1" -v y="$cNode" 'BEGIN {
  printf "ratio velmora(1 job) / node, cases per second: %.2f (per CPU second: %.2f)\n", a / b, y / x
  printf "speed-up with %d jobs: %.2f\n", k, c / a }'
  uptime
}
[ "$SUITE" = 0 ] || bench_suite

[ "$FLAT_CASES" -gt 0 ] || exit 0
prepare flat "$SCRIPTS" "$FLAT_CASES"
total=$((SCRIPTS * FLAT_CASES))
echo "memory over $total cases (--jobs $cores), VmRSS sampled every second:"
"$bin" --home "$work/flat/home" --quiet --jobs "$cores" >"$work/out" 2>"$work/err" &
pid=$!
samples=()
while kill -0 "$pid" 2>/dev/null; do
  rss="$(awk '/^VmRSS/ { print $2 }' "/proc/$pid/status" 2>/dev/null || true)"
  [ -n "$rss" ] && samples+=("$rss")
  sleep 1
done
wait "$pid" || true
grep -E 'passed|velmora-test:' "$work/out"
printf '%s\n' "${samples[@]}" | awk '
  { v[NR] = $1; if ($1 > max) max = $1 }
  END {
    if (NR == 0) { print "no samples"; exit }
    a = int(NR / 4); b = int(NR / 2); c = int(3 * NR / 4)
    if (a < 1) a = 1; if (b < 1) b = 1; if (c < 1) c = 1
    printf "RSS MB at 25%%/50%%/75%%/end of the run: %.1f %.1f %.1f %.1f, peak %.1f (%d samples)\n",
      v[a] / 1024, v[b] / 1024, v[c] / 1024, v[NR] / 1024, max / 1024, NR }'

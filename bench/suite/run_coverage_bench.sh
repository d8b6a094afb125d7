#!/usr/bin/env bash
# Coverage benchmark: the generated suite (SCRIPTS x CASES, GlobalFun.txt of
# LINES lines) through velmora-test plain and with --coverage, with one job
# and one per core, best of RUNS each (wall and CPU seconds, genhtml
# included); prints the times and the ratios coverage / plain. With BASELINE=path/to/velmora-test (a build without the
# coverage code) the plain runs are compared with that binary as well.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
. "$here/../bench_env.sh"
bin="$build/apps/cli/velmora-test"
seed="$build/bench/suite/velmora-suite-seed"
SCRIPTS="${SCRIPTS:-50}" CASES="${CASES:-20}" LINES="${LINES:-2000}" RUNS="${RUNS:-3}" BASELINE="${BASELINE:-}"
cores="$(nproc)"
bench_need "$bin" "$seed"
bench_scratch
node "$here/gen_suite.js" "$work/suite" "$SCRIPTS" "$CASES" "$LINES" >/dev/null
mkdir -p "$work/home"
"$seed" "$work/home" "$work/suite/suite.json" "$work/suite/GlobalFun.js"

best() { # binary jobs [extra args...]: "wall cpu", the best of RUNS runs each, in seconds
  local b="$1" jobs="$2"; shift 2
  local wall="" cpu="" w u s
  for _ in $(seq "$RUNS"); do
    /usr/bin/time -f '%e %U %S' -o "$work/time" "$b" --home "$work/home" --quiet --jobs "$jobs" "$@" >"$work/out" 2>"$work/err" \
      || { echo "run failed: $b --jobs $jobs $*" >&2; cat "$work/out" "$work/err" >&2; exit 1; }
    read -r w u s <"$work/time"
    wall="$(awk -v a="$w" -v b="$wall" 'BEGIN { print (b == "" || a < b) ? a : b }')"
    cpu="$(awk -v a="$u" -v c="$s" -v b="$cpu" 'BEGIN { t = a + c; print (b == "" || t < b) ? t : b }')"
  done
  echo "$wall $cpu"
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }

echo "suite: $SCRIPTS scripts x $CASES cases, GlobalFun.txt $LINES lines, $cores cores, best of $RUNS"
printf '%-5s %-5s %8s %11s %15s %11s %15s\n' jobs time plain_s coverage_s coverage/plain baseline_s plain/baseline
for jobs in 1 "$cores"; do
  read -r pw pc < <(best "$bin" "$jobs")
  read -r cw cc < <(best "$bin" "$jobs" --coverage "$work/cov")
  grep -E '^coverage' "$work/out" | sed 's/^/  /' >"$work/covline"
  bw="-" bc="-" rw="-" rc="-"
  if [ -n "$BASELINE" ]; then
    read -r bw bc < <(best "$BASELINE" "$jobs")
    rw="$(ratio "$pw" "$bw")" rc="$(ratio "$pc" "$bc")"
  fi
  printf '%-5s %-5s %8s %11s %15s %11s %15s\n' "$jobs" wall "$pw" "$cw" "$(ratio "$cw" "$pw")" "$bw" "$rw"
  printf '%-5s %-5s %8s %11s %15s %11s %15s\n' "$jobs" cpu "$pc" "$cc" "$(ratio "$cc" "$pc")" "$bc" "$rc"
  cat "$work/covline"
done
uptime

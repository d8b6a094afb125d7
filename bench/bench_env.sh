# Sourced by the benchmark scripts: where the build is, which of its programs
# must be there, and a scratch folder that goes when the script ends.
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${VELMORA_BUILD_DIR:-$root/build}"

bench_need() {
  local f
  for f in "$@"; do
    [ -x "$f" ] || { echo "missing $f: build first (scripts/build.sh)" >&2; exit 2; }
  done
}

bench_scratch() {
  work="$(mktemp -d)"
  trap 'rm -rf "$work"' EXIT
}

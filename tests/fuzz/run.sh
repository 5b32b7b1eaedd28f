#!/usr/bin/env bash
# Runs every fuzz target of a built "fuzz" preset for SECONDS each, one after the other, starting from
# the committed seeds and a working corpus under the build folder (a unit slower than 60 s counts as a
# hang; the machine may be shared).  Exit status 1 when a target found
# a fault; the input that shows it is left as <build>/fuzz-work/<target>-crash-* (or -leak-, -timeout-).
#   tests/fuzz/run.sh [SECONDS] [BUILD_DIR]
set -uo pipefail
seconds=${1:-60}
here="$(cd "$(dirname "$0")" && pwd)"
build=${2:-"$here/../../build/fuzz"}
status=0
for target in $(sed -n 's/^set(ZEK_FUZZ_TARGETS \(.*\))$/\1/p' "$here/CMakeLists.txt"); do
  work="$build/fuzz-work/$target"
  mkdir -p "$work"
  echo "== fuzz_$target, $seconds s"
  if ! "$build/tests/fuzz/fuzz_$target" -max_total_time="$seconds" -max_len=4096 -timeout=60 -rss_limit_mb=2048 \
       -print_final_stats=1 -artifact_prefix="$build/fuzz-work/$target-" "$work" "$here/corpus/$target" \
       > "$build/fuzz-work/$target.log" 2>&1; then
    echo "fuzz_$target found a fault:"; tail -40 "$build/fuzz-work/$target.log"; status=1
  else
    grep -E "^stat::number_of_executed_units|^Done" "$build/fuzz-work/$target.log"
  fi
done
exit $status

#!/usr/bin/env bash
# Compares the functions that a library exports with a list. usage: exports.sh LIBRARY LIST
set -euo pipefail
library=$1 list=$2

exported=$(nm -D --defined-only "$library" | awk '{ sub(/@.*/, "", $3); print ($2 == "T" ? "" : "not a function: ") $3 }' |
    LC_ALL=C sort -u)
expected=$(sed 's/#.*//' "$list" | grep -o '[^[:space:]]\+' | LC_ALL=C sort -u)

missing=$(LC_ALL=C comm -13 <(printf '%s\n' "$exported") <(printf '%s\n' "$expected"))
additional=$(LC_ALL=C comm -23 <(printf '%s\n' "$exported") <(printf '%s\n' "$expected"))
printf '%d functions exported, %d in the list\n' "$(wc -l <<<"$exported")" "$(wc -l <<<"$expected")"
[[ -z $missing ]] || printf 'missing: %s\n' "${missing//$'\n'/, }"
[[ -z $additional ]] || printf 'too many: %s\n' "${additional//$'\n'/, }"
[[ -z $missing$additional ]]

#!/usr/bin/env bash
# Checks that a library needs the C and C++ runtime only. usage: dependencies.sh LIBRARY
set -euo pipefail
needed=$(LC_ALL=C objdump -p "$1" | awk '$1 == "NEEDED" { print $2 }')
foreign=$(grep -vE '^(libc|libm|libgcc_s|libstdc\+\+|ld-linux[a-z0-9_-]*)\.so\.[0-9]+$' <<<"$needed" || true)
printf 'needs %s\n' "${needed//$'\n'/ }"
[[ -z $foreign ]] || printf 'must not need %s\n' "${foreign//$'\n'/ }"
[[ -n $needed && -z $foreign ]]

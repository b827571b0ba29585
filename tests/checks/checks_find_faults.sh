#!/usr/bin/env bash
# Gives each check faults to find, so that a check that passes everything does not pass here.
set -euo pipefail
checks=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cases=0 failures=0

# file PATH TEXT: a file of the tree under test.
file() {
    mkdir -p "$work/tree/$(dirname "$1")"
    printf '%s\n' "$2" >"$work/tree/$1"
}

# expect pass|TEXT COMMAND...: the command passes, or fails and says TEXT. The next case starts with an empty tree.
expect() {
    local wanted=$1 output outcome=0
    shift
    output=$("$@" 2>&1) || outcome=$?
    cases=$((cases + 1))
    if { [[ $wanted == pass ]] && ((outcome != 0)); } ||
        { [[ $wanted != pass ]] && { ((outcome == 0)) || [[ $output != *"$wanted"* ]]; }; }; then
        printf 'wanted: %s; exit code %d and:\n%s\n' "$wanted" "$outcome" "$output"
        failures=$((failures + 1))
    fi
    rm -rf "$work/tree"
}

includes() { "$checks/includes.sh" "$work/tree"; }
texts() { "$checks/texts.sh" "$work/tree"; }

# include FROM TO: a tree in which one file includes another.
include() {
    file "$2" ''
    file "$1" "#include \"${2#include/}\""
}

basis=StandardApplets/grabber_basis
include tools/quillon/Main.cpp include/fabrix/applet.h
include $basis/PSFx4/PSWindow.h $basis/RSFx4/RSWindow.h
include StandardApplets/Quillon/Quillon.cpp $basis/PSFx4/PSWindow.h
expect pass includes
include simulation/board/Camera.cpp tools/host/Grabber.h
expect 'simulation may include' includes
include $basis/Fg_StdMaster.h $basis/RSFx4/RSControl.h
expect 'headers of the shared classes know no module' includes
include $basis/PSFx4/PSWindow.cpp $basis/RSFx4/RSCamPort.h
expect 'a module does not know another' includes
include $basis/RSFx4/RSWindow.cpp $basis/PSFx4/PSWindow.h
expect 'a register side does not know parameter sides' includes
file $basis/Fg_Log.cpp '# include <fmt/core.h>'
expect 'the applet uses the standard library and libc only' includes
file simulation/board/Camera.cpp '#include "board/Lost.h"'
expect 'there is no such file' includes
mkdir -p "$work/tree/tools"
expect '0 includes' includes

exports() { "$checks/exports.sh" "$work/library.so" "$work/functions"; }
printf 'int puts(const char*);\nvoid one() { puts("one"); }\nvoid two() {}\n' >"$work/library.c"
cc -shared -o "$work/library.so" "$work/library.c"
printf '# A comment.\none\n\ntwo  # Another.\n' >"$work/functions"
expect pass exports
printf 'one\ntwo\nthree\n' >"$work/functions"
expect 'missing: three' exports
printf 'int one;\nvoid two() {}\n' >"$work/library.c"
cc -shared -o "$work/library.so" "$work/library.c"
printf 'two\n' >"$work/functions"
expect 'too many: not a function: one' exports

cc -shared -Wl,-soname,libforeign.so.1 -o "$work/libforeign.so" "$work/library.c"
cc -shared -o "$work/library.so" -x c - -Wl,--no-as-needed -lc <<<'void one() {}'
expect pass "$checks/dependencies.sh" "$work/library.so"
cc -shared -o "$work/library.so" -x c - -x none -Wl,--no-as-needed "$work/libforeign.so" <<<'void one() {}'
expect 'must not need libforeign.so.1' "$checks/dependencies.sh" "$work/library.so"

file a.cpp '// Cuts the window out of the picture: special parts, 3.1 of them.'
expect pass texts
file a.cpp "// More of it: spec""ification, page 3."
expect 'a.cpp:1' texts
file a.h "// TO""DO: the rest"
expect 'unfinished' texts
file run "cd /wo""rk/main"
expect 'paths of one machine' texts
file docs/spec""ification-notes.md ''
expect 'file names' texts
mkdir -p "$work/tree"
expect 'there are no files' texts

printf '%d cases, %d failures\n' "$cases" "$failures"
((failures == 0))

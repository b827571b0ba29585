#!/usr/bin/env bash
# Checks who includes whom. usage: includes.sh [ROOT]
set -euo pipefail
cd "${1:-$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../..}"

# Folder, then the folders that its files may include beside their own; the longest matching folder decides.
mayInclude='
include/fabrix                       -
tavo_hal                             include/fabrix
haprt                                include/fabrix tavo_hal/src/platform
StandardApplets/grabber_basis        include/fabrix tavo_hal haprt
StandardApplets/Quillon              include/fabrix StandardApplets/grabber_basis
simulation                           include/fabrix
tools/host                           include/fabrix
tools/quillon                        include/fabrix tools/host
benchmarks                           include/fabrix tools/host simulation/tavo_hw
'

# What the table cannot say: includer and included as patterns, and why not.
never='
^StandardApplets/grabber_basis/[^/]*\.h$       ^StandardApplets/grabber_basis/[RP]SFx4/   headers of the shared classes know no module
^StandardApplets/grabber_basis/RSFx4/          ^StandardApplets/grabber_basis/PSFx4/      a register side does not know parameter sides
^(StandardApplets|tavo_hal|haprt)/             ^<([^s/]|s[^y])[^>]*/|\.hpp>$                    the applet uses the standard library and libc only
'

# Prints "file line <name>" or "file line name" of every include, from the root.
listIncludes() {
    local folders=() folder
    for folder in include tavo_hal haprt StandardApplets simulation tools tests benchmarks fuzz; do
        [[ ! -d $folder ]] || folders+=("$folder")
    done
    grep -rnHE '^[[:space:]]*#[[:space:]]*include' "${folders[@]}" \
        --include='*.h' --include='*.hpp' --include='*.c' --include='*.cpp' --include='*.inc' |
        sed -E 's/^([^:]+):([0-9]+):[^<"]*("([^"]*)"|(<[^>]*>)).*/\1 \2 \4\5/'
}

listIncludes | MAY_INCLUDE=$mayInclude NEVER=$never awk '
function exists(path,    line) {
    if (!(path in known)) { known[path] = (getline line < path) >= 0; close(path) }
    return known[path]
}
# The file of the tree that an include names, or "" for one of the system.
function resolve(includer, name,    folder, bare) {
    bare = name
    gsub(/[<>]/, "", bare)
    folder = name ~ /^</ ? "" : includer
    while (sub(/\/?[^\/]*$/, "", folder) && folder != "") if (exists(folder "/" bare)) return folder "/" bare
    for (folder in roots) if (exists(folder bare)) return folder bare
    return ""
}
function within(path, folder) { return index(path, folder "/") == 1 }
function areaOf(path,    folder, best) {
    for (folder in allowed) if (within(path, folder) && length(folder) > length(best)) best = folder
    return best
}
function fault(text) { print $1 ":" $2 ": includes " $3 ": " text; faults++ }
# RSWindow.h and PSWindow.cpp are of the module Window. Master is the base of them all, and the master of a grabber
# hands the control module to any of them.
function moduleOf(path) {
    if (path !~ /\/[RP]SFx4\/[RP]S[A-Za-z]*\.(h|cpp)$/) return ""
    sub(/.*\/[RP]S/, "", path)
    sub(/\..*/, "", path)
    return path
}
BEGIN {
    roots[""]; roots["include/"]; roots["tools/"]; roots["simulation/"]
    count = split(ENVIRON["MAY_INCLUDE"], rows, "\n")
    for (i = 1; i <= count; i++) if (split(rows[i], row, " ") > 1) {
        area = row[1]; allowed[area] = rows[i]; sub(/^[^ ]+ +/, "", allowed[area])
    }
    ruleCount = split(ENVIRON["NEVER"], rules, "\n")
}
{
    if ($3 ~ /(^|\/)\.\.\//) { fault("name the file from the root of the tree"); next }
    target = resolve($1, $3)
    for (i = 1; i <= ruleCount; i++) if (split(rules[i], row, " ") > 2 && $1 ~ row[1] && (target == "" ? $3 : target) ~ row[2]) {
        why = rules[i]; sub(/^[^ ]+ +[^ ]+ +/, "", why); fault(why)
    }
    if (target == "" && $3 !~ /^</) { fault("there is no such file"); next }
    area = areaOf($1)
    if (target == "" || area == "" || within(target, area)) {
        module = moduleOf($1); other = moduleOf(target)
        if (module != "" && other != "" && other != module && other !~ /^(Master|Control)$/) fault("a module does not know another")
        next
    }
    count = split(allowed[area], row, " ")
    good = 0
    for (i = 1; i <= count; i++) if (within(target, row[i])) good = 1
    if (!good) fault(area " may include " allowed[area] " only")
}
END { printf "%d includes, %d faults\n", NR, faults; exit (faults > 0 || NR == 0) }'

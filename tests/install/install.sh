#!/usr/bin/env bash
# Unpacks the two packages into a temporary root and uses them there as an installation.
# usage: install.sh PACKAGES EXAMPLES
set -euo pipefail

packages=$(readlink -f "$1")
examples=$(readlink -f "$2")
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
cd "$root"

fail() {
    printf 'install: %s\n' "$*" >&2
    exit 1
}

# expect WHAT PATTERN COMMAND...: the command succeeds and prints a line that matches.
expect() {
    local what=$1 pattern=$2 output
    shift 2
    output=$("$@" 2>&1) || fail "$what ended with $?: $output"
    grep -qE -- "$pattern" <<<"$output" || fail "$what should print '$pattern': $output"
}

bench=("$packages"/quillon_*.deb)
simulation=("$packages"/quillon-simulation_*.deb)
[[ ${#bench[@]} -eq 1 && ${#simulation[@]} -eq 1 ]] || fail "one package of each name expected in $packages"
for package in "${bench[0]}" "${simulation[0]}"; do
    dpkg-deb -f "$package" Depends | grep -q libc6 || fail "${package##*/} does not say what it depends on"
done

# Without the simulation package there is no stand-in anywhere, and the tool says what it misses.
dpkg-deb -x "${bench[0]}" tree
prefix=$root/tree/opt/quillon
tool=$prefix/bin/quillon
if find tree -name 'libtavo_hw*' -o -name 'libhaprt*' | grep .; then fail 'the bench package holds a stand-in'; fi
for arguments in 'list' '--simulate list'; do
    outcome=0
    # shellcheck disable=SC2086
    message=$("$tool" $arguments 2>&1) || outcome=$?
    [[ $outcome -eq 3 && $message == *lib* ]] || fail "'$arguments' without runtime libraries: $outcome, $message"
done

dpkg-deb -c "${bench[0]}" | awk '$1 !~ /^d/ {sub(/^[^.]*\./, ""); print}' | sort >bench.files
dpkg-deb -c "${simulation[0]}" | awk '$1 !~ /^d/ {sub(/^[^.]*\./, ""); print}' | sort >simulation.files
[[ -s bench.files && -s simulation.files ]] || fail 'a package is empty'
both=$(comm -12 bench.files simulation.files)
[[ -z $both ]] || fail "both packages hold $both"
outside=$(grep -v '/opt/quillon/lib/quillon-simulation/' simulation.files || true)
[[ -z $outside ]] || fail "the simulation package reaches outside its tree: $outside"

dpkg-deb -x "${simulation[0]}" tree
pictures=$prefix/lib/quillon-simulation/share/pictures
page=share/doc/quillon/feature_blocks/PSWindow/PSWindow.html
expect describe "page file +$prefix/$page" "$tool" --simulate describe FG_WIDTH
expect info 'quillon-simulation/lib/libtavo_hw.so' "$tool" --simulate info
expect doctor 'quillon-simulation' "$tool" --simulate doctor
expect list 'FG_WIDTH' "$tool" --simulate list
expect acquire '.' "$tool" --simulate acquire --camera "$pictures" -n 2 --output "frame_%03d.png"
# shellcheck disable=SC2012
[[ $(ls frame_*.png | wc -l) -eq 2 ]] || fail 'two pictures expected'
if "$tool" list >/dev/null 2>&1; then fail 'the bench tree took the stand-ins'; fi
for file in "$page" "lib/quillon-simulation/$page" share/man/man1/quillon.1; do
    [[ -s $prefix/$file ]] || fail "$file is missing"
done
# Each shell can read its completion file.
expect bash '^$' bash -n "$prefix/share/bash-completion/completions/quillon"
expect zsh '^$' zsh -n "$prefix/share/zsh/site-functions/_quillon"
expect fish '^$' fish -n "$prefix/share/fish/vendor_completions.d/quillon.fish"

# The examples, through CMake and through pkg-config, against the unpacked tree.
applet="$prefix/lib/quillon-simulation/Hardware Applets/fabrixIV/libQuillon.so"
warnings=(-Wall -Wextra -Wpedantic -Werror)
for language in c cpp; do
    cmake -S "$examples/$language" -B "build-$language" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_C_FLAGS="${warnings[*]}" -DCMAKE_CXX_FLAGS="${warnings[*]}" >log 2>&1 || fail "$language: $(<log)"
    cmake --build "build-$language" >log 2>&1 || fail "$language: $(<log)"
done
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
[[ "$(readlink -f "$(pkg-config --variable=simulation_applet quillon-host | sed 's/\\ / /g')")" == "$applet" ]] ||
    fail 'pkg-config names another applet'
read -ra flags < <(pkg-config --cflags quillon-host)
read -ra libraries < <(pkg-config --libs quillon-host)
gcc -std=c11 "${warnings[@]}" "${flags[@]}" "$examples/c/acquire.c" -o acquire-c -ldl
g++ -std=c++20 "${warnings[@]}" "${flags[@]}" "$examples/cpp/acquire.cpp" "${libraries[@]}" -o acquire-cpp

for program in build-c/acquire ./acquire-c; do
    rm -f last.pgm
    expect "$program" '^pictures: 6$' "$program" "$applet" 6 last.pgm
    [[ $(head -c 15 last.pgm | tr '\n' ' ') == 'P5 640 480 255 ' && $(stat -c %s last.pgm) -eq $((15 + 640 * 480)) ]] ||
        fail "$program wrote no picture of 640 x 480"
done
for program in build-cpp/acquire ./acquire-cpp; do
    expect "$program" '^picture 5: 307200 bytes' "$program" "$applet" 5
    expect "$program on board 1" '^lost: [0-9]+$' "$program" "$applet" 3 1
    expect "$program" 'a width of 500: FG_NOT_A_STEP' "$program" "$applet" 1
    # The applet of the bench finds no runtime library.
    if "$program" "$prefix/Hardware Applets/fabrixIV/libQuillon.so" 1 >/dev/null 2>&1; then
        fail "$program opened a board without runtime libraries"
    fi
done
printf 'install: packages, tool and examples are in order\n'

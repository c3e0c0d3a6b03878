#!/usr/bin/env bash
# Installs the build into a folder of its own, builds the example against it and runs it; then
# checks that no installed header needs one that is not.
# usage: consumer.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$1" --prefix "$work/prefix" >"$work/install.log"
cmake -S "$2/examples/consumer" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/prefix" >"$work/configure.log" ||
    { cat "$work/configure.log"; exit 1; }
cmake --build "$work/build" >"$work/build.log" 2>&1 || { cat "$work/build.log"; exit 1; }
"$work/build/consumer"

headers="$work/prefix/include/tq5keld2"
cd "$headers"
find . -name '*.h' | sed 's|^\./\(.*\)|#include "\1"|' | sort >"$work/headers.cpp"
"${CXX:-c++}" -std=c++20 -fsyntax-only -I "$headers" "$work/headers.cpp"

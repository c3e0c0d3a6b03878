#!/usr/bin/env bash
# Installs the build into a folder of its own, builds the examples against it and runs them; then
# checks that no installed header needs one that is not.
# usage: consumer.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$1" --prefix "$work/prefix" >"$work/install.log"
for example in consumer chost; do
    build=$work/$example
    cmake -S "$2/examples/$example" -B "$build" -DCMAKE_PREFIX_PATH="$work/prefix" >"$work/log" 2>&1 ||
        { cat "$work/log"; exit 1; }
    cmake --build "$build" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
    "$build/$example"
done

headers="$work/prefix/include/tq5keld2"
cd "$headers"
find . -name '*.h' | sed 's|^\./\(.*\)|#include "\1"|' | sort >"$work/headers.cpp"
"${CXX:-c++}" -std=c++20 -fsyntax-only -I "$headers" "$work/headers.cpp"

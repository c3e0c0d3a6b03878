#!/usr/bin/env bash
# Installs the build into a folder of its own, builds the examples against it and runs them; then
# checks that every installed header can be used alone, and that what the documents name is there.
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

headers=$work/prefix/include/tq5keld2
(cd "$headers" && find . -name '*.h') | xargs -P "$(nproc)" -I{} \
    "${CXX:-c++}" -std=c++20 -fsyntax-only -I "$headers" -include "$headers/{}" -x c++ /dev/null

# what the installed documents lead to is installed too
cd "$work/prefix/share/doc/tq5keld2"
for page in README.md docs/*.md; do
    for link in $(grep -oP '\]\(\K[^)#: ]+(?=[)#])' "$page"); do
        [ -e "$(dirname "$page")/$link" ] || { echo "$page leads to $link, which is not installed"; exit 1; }
    done
done
for header in $(grep -ohP '`\K[a-z0-9/]+\.h(?=`)' docs/own-programmer.md docs/c-interface.md); do
    [ -e "$headers/$header" ] || { echo "$header is not installed"; exit 1; }
done

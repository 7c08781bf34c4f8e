#!/usr/bin/env bash
# Installs the build into a folder of its own, builds a host against it with find_package and
# another with pkg-config, and runs both and the installed tool.
#
#   run.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
sqlite3 "$work/shop.db" <"$source/examples/shop.sql"
cd "$work"

# The build's own flags (sanitizers) must be the host's too, or its program does not start.
flags=$(sed -n 's/^CMAKE_CXX_FLAGS_DEBUG:[A-Z]*=//p' "$build/CMakeCache.txt")
cmake -S "$source/tests/install/consumer" -B consumer -G Ninja -DEXAMPLES="$source/examples" \
    -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_FLAGS="$flags" >/dev/null
cmake --build consumer >/dev/null
./consumer/consumer
grep -q "SET-999" orders.txt

rm orders.txt
libdir=$(dirname "$(find "$prefix" -name norva.pc)")
export PKG_CONFIG_PATH=$libdir
# shellcheck disable=SC2046,SC2086
g++ -std=c++20 $flags "$source/examples/quickstart.cpp" -o byhand $(pkg-config --cflags --libs norva) \
    -lnorva_sqlite -Wl,-rpath,"$(dirname "$libdir")"
./byhand
grep -q "SET-999" orders.txt

"$prefix/bin/norva" export shop.db --table sales -o sales.csv --quiet
grep -q "Anna Müller" sales.csv
test -s "$prefix/share/man/man1/norva.1"

# Every installed header compiles on its own.
find "$prefix/include" -name '*.h' -print0 |
    xargs -0 -n 8 -P "$(nproc)" g++ -std=c++20 -fsyntax-only -Wall -Wextra -I"$prefix/include" -x c++

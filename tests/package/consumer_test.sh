#!/usr/bin/env bash
# Builds the README's example as an application would and runs it on the example scene.
#   consumer_test.sh installed    SOURCE BUILD WORK  through cmake --install and find_package,
#                                                    then through pkg-config
#   consumer_test.sh subdirectory SOURCE BUILD WORK  through add_subdirectory of the sources
set -euo pipefail
mode=$1 source=$2 build=$3 work=$4

rm -rf "$work"
mkdir -p "$work"
# The first C++ block of the README is the example.
awk '/^```cpp$/ {inside = 1; next} /^```$/ && inside {exit} inside' "$source/README.md" >"$work/example.cpp"
# A name without ".dae": the example must not depend on it.
cp "$source/examples/scene.dae" "$work/scene.xml"

check_run() {
  local program=$1 output
  output=$("$program" "$work/scene.xml")
  # Every node of the scene, the mesh with its polygon count, and no failure.
  grep -qx "box: 6 polygons" <<<"$output" || { echo "unexpected output of $program:"; echo "$output"; exit 1; }
  if grep -q ": ERROR: " <<<"$output"; then echo "$output"; exit 1; fi
}

generator_flags=(-DEXAMPLE_SOURCE="$work/example.cpp")
[ -n "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && generator_flags+=(-DCMAKE_CXX_COMPILER_LAUNCHER="$CMAKE_CXX_COMPILER_LAUNCHER")

case "$mode" in
  installed)
    cmake --install "$build" --prefix "$work/prefix" >/dev/null
    cmake -S "$source/tests/package/consumer" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/prefix" \
      "${generator_flags[@]}" >/dev/null
    cmake --build "$work/build" >/dev/null
    check_run "$work/build/example"
    # The same example through pkg-config (static libraries need the private requirements).
    pc_dir=$(dirname "$(find "$work/prefix" -name zylcollada.pc)")
    read -r -a flags <<<"$(PKG_CONFIG_PATH=$pc_dir pkg-config --static --cflags --libs zylcollada)"
    c++ -std=c++17 -o "$work/example-pc" "$work/example.cpp" "${flags[@]}"
    check_run "$work/example-pc"
    ;;
  subdirectory)
    cmake -S "$source/tests/package/consumer" -B "$work/build" -DZYL_SOURCE="$source" "${generator_flags[@]}" \
      >/dev/null
    cmake --build "$work/build" -j2 >/dev/null
    check_run "$work/build/example"
    # Only the libraries and the example are built: no tool, test or benchmark.
    if find "$work/build" -name zyldae -type f | grep -q .; then echo "the tool was built"; exit 1; fi
    ;;
  *)
    echo "unknown mode $mode"; exit 2 ;;
esac
echo "ok: $mode"

#!/usr/bin/env bash
# Installs the Debian packages the project builds with, and only those that are missing.
set -euo pipefail

packages=(cmake make g++ pkg-config libxml2-dev zlib1g-dev libzip-dev libfast-float-dev python3-jsonschema libgtest-dev nlohmann-json3-dev libcli11-dev libtinygltf-dev chromium)
# Debian's CMake package of libzip names its command-line tools, which must then be there.
packages+=(zipcmp zipmerge ziptool)
# Node and npm build the viewer page and run the glTF validator; a node from elsewhere is kept.
command -v node >/dev/null || packages+=(nodejs)
command -v npm >/dev/null || packages+=(npm)
[ "${WITH_CLANG:-0}" = 1 ] && packages+=(clang libclang-rt-14-dev)
[ "${WITH_PEER:-0}" = 1 ] && packages+=(libassimp-dev)
# The performance table counts instructions with valgrind.
[ "${WITH_BENCH:-0}" = 1 ] && packages+=(valgrind)

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq "${missing[@]}"
fi

# The viewer's npm packages (three.js, esbuild, the glTF validator), exactly as locked, again
# only when the lock file changed since they were installed.
viewer="$(dirname "$0")/../viewer"
if [ ! -f "$viewer/node_modules/.package-lock.json" ] || [ "$viewer/package-lock.json" -nt "$viewer/node_modules/.package-lock.json" ]; then
  (cd "$viewer" && npm ci --no-audit --no-fund --loglevel=error)
fi

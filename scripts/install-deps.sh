#!/usr/bin/env bash
# Installs the Debian packages the project builds with, and only those that are missing.
set -euo pipefail

packages=(cmake make g++ pkg-config libxml2-dev zlib1g-dev libgtest-dev nlohmann-json3-dev libcli11-dev)
[ "${WITH_CLANG:-0}" = 1 ] && packages+=(clang libclang-rt-14-dev)
[ "${WITH_PEER:-0}" = 1 ] && packages+=(libassimp-dev)

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq "${missing[@]}"

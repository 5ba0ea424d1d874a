#!/usr/bin/env bash
# Installs the system packages that building and testing mox need, and only those that are missing.
# Debian and its derivatives; runs apt-get through sudo when not root.
set -euo pipefail

packages=(
    g++            # the compiler (C++20)
    cmake          # the build description
    ninja-build    # the build tool the presets use
    libgtest-dev   # GoogleTest, for the test suite
    binutils       # nm and readelf, for the exported-symbol test
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    echo "install-deps: everything needed is installed"
    exit 0
fi

run_as_root=()
if [ "$(id -u)" -ne 0 ]; then
    run_as_root=(sudo)
fi

echo "install-deps: installing ${missing[*]}"
"${run_as_root[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${run_as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"

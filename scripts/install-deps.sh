#!/usr/bin/env bash
# Installs the system packages that building and testing mox need, and only those that are missing.
# Debian and its derivatives; runs apt-get through sudo when not root.
#   scripts/install-deps.sh         what the library and its tests need
#   scripts/install-deps.sh bench   that, and also what the benchmarks under bench/ need
#   scripts/install-deps.sh windows that, and also the Windows cross compilers and wine
set -euo pipefail

packages=(
    g++            # the compiler (C++20)
    cmake          # the build description
    ninja-build    # the build tool the presets use
    libgtest-dev   # GoogleTest, for the test suite
    binutils       # nm and readelf, for the exported-symbol test
    libxml2-utils  # xmllint, which checks that written XML documents parse
)

# The benchmarks compare the library with the distribution's own implementations of the same work;
# only the benchmark program links those, so they stay out of the default list.
if [ "${1:-}" = "bench" ]; then
    packages+=(
        libbenchmark-dev   # Google Benchmark
        libssl-dev         # libcrypto, the reference for MD5
        zlib1g-dev         # zlib, the reference for the 32-bit CRC
    )
fi

# Windows builds: the mingw-w64 compilers for x64 and x86 (their GoogleTest is built from the
# sources that libgtest-dev ships), and wine to run the x64 test suite.
if [ "${1:-}" = "windows" ]; then
    packages+=(
        g++-mingw-w64-x86-64   # the x64 cross compiler
        g++-mingw-w64-i686     # the x86 cross compiler
        wine64                 # runs the x64 test programs
    )
fi

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

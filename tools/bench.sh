#!/usr/bin/env bash
# Builds the release flavour and runs every benchmark in one run; extra arguments go to the
# benchmark binary (for example --benchmark_filter=String).
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh libboost-dev libpcre2-dev

cmake --preset release >/dev/null
cmake --build --preset release --target bfc_bench
build/release/bfc_bench "$@"

#!/usr/bin/env bash
# Builds the library and the demo host (release build) and runs the demo.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh

cmake --preset release >/dev/null
cmake --build --preset release --target demo
cd build/release && ./demo

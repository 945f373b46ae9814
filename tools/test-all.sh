#!/usr/bin/env bash
# Builds and runs every test in both data models: LP64 under the sanitizers, then i386.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh

for preset in lp64-asan i386; do
  echo "=== $preset ==="
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  ctest --preset "$preset"
done

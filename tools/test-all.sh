#!/usr/bin/env bash
# Builds and runs every test in both data models: LP64 under the sanitizers, then i386,
# natively where the kernel runs 32-bit programs and through qemu-i386 where it does not
# (BFC_FORCE_EMULATOR=1 takes the emulator anyway).
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh
BFC_I386_EMULATOR=$(tools/i386-emulator.sh)
export BFC_I386_EMULATOR

for preset in lp64-asan i386; do
  echo "=== $preset ==="
  [ "$preset" = i386 ] && echo "i386 programs run ${BFC_I386_EMULATOR:+through }${BFC_I386_EMULATOR:-natively}"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  ctest --preset "$preset"
done

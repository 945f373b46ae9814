#!/usr/bin/env bash
# Prints the command that runs i386 programs on this machine: nothing when the kernel runs
# them itself, else the path of qemu-i386 (installing Debian's qemu-user when we may).
# BFC_FORCE_EMULATOR=1 takes the emulator even where 32-bit programs run natively.
# Nothing system-wide changes: no binfmt handler is registered.
set -euo pipefail
cd "$(dirname "$0")/.."

probe_dir=$(mktemp -d)
trap 'rm -rf "$probe_dir"' EXIT
printf 'int main() { return sizeof(void *) == 4 ? 0 : 1; }\n' >"$probe_dir/probe.cpp"
if ! c++ -m32 -o "$probe_dir/probe" "$probe_dir/probe.cpp" 2>"$probe_dir/log"; then
  echo "cannot build i386 programs (is g++-multilib installed?):" >&2
  cat "$probe_dir/log" >&2
  exit 1
fi

if [ "${BFC_FORCE_EMULATOR:-0}" != 1 ] && "$probe_dir/probe" 2>/dev/null; then
  exit 0  # native
fi

tools/setup.sh qemu-user >&2
emulator=$(command -v qemu-i386) || { echo "qemu-i386 not found after installing qemu-user" >&2; exit 1; }
"$emulator" "$probe_dir/probe" || { echo "$emulator cannot run i386 programs here" >&2; exit 1; }
echo "$emulator"

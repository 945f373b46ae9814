#!/usr/bin/env python3
"""Plants simple faults in the library's sources and counts how many the tests catch.

Each fault (a mutant) is one small edit of one line of a library .cpp file: a flipped
comparison, a swapped && / ||, a swapped + / -, an integer constant off by one, true for
false, or a deleted call statement. A seeded hash of each candidate's file, line text and edit
picks a fixed share of them, which are planted one at a time; for each, the library is rebuilt and the
whole test binary runs (LP64, AddressSanitizer + UndefinedBehaviorSanitizer, stopping at the
first failure). A mutant is caught when the tests fail, crash or time out.

The run works on a copy of a git revision (default: the working tree), so two revisions of
the tests can be measured against the same planted faults:

    tools/mutate.py --rev v1 --out before.txt
    tools/mutate.py --out after.txt
    tools/mutate.py --compare before.txt after.txt

By default only .cpp files are mutated: a change to a header rebuilds every file that
includes it, about a minute a mutant. `--headers` plants faults in the header-only
templates instead (the containers and events whose whole code lives in inc/), which the
default sample cannot see; run it with a lower rate.
"""

import argparse
import os
import hashlib
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import io
from concurrent.futures import ThreadPoolExecutor

LIBRARY_DIRS = ("plat", "sys", "scc", "ssm", "sfm", "ui")
SANITIZER_FLAGS = "-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer"

# Binary operators are only taken with a blank on each side, which keeps template brackets,
# stream operators and pointer arrows out.
OPERATOR_SWAPS = [
    (" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "),
    (" == ", " != "), (" != ", " == "), (" && ", " || "), (" || ", " && "),
    (" + ", " - "), (" - ", " + "),
]
INTEGER = re.compile(r"(?<![\w.])(\d+)(?![\w.'])")
BOOLEAN = re.compile(r"\b(true|false)\b")
CALL_STATEMENT = re.compile(r"^(\s*)((?:\w+(?:\.|->|::))*\w+\(.*\);)\s*$")
NOT_A_CALL = re.compile(r"^\s*(return|if|while|for|switch|case|delete|throw|else|do)\b")


def mask_literals(line):
    """The line with string and character literals and // comments blanked out, same length."""
    out, i, quote = [], 0, None
    while i < len(line):
        c = line[i]
        if quote:
            if c == "\\":
                out.append("  ")
                i += 2
                continue
            out.append(" " if c != quote else c)
            if c == quote:
                quote = None
        elif c in "\"'":
            quote = c
            out.append(c)
        elif line.startswith("//", i):
            out.append(" " * (len(line) - i))
            break
        else:
            out.append(c)
        i += 1
    return "".join(out)[: len(line)]


def candidates_in(path, text):
    """Every mutation the file offers: (path, line number, column, old, new, kind, line
    text, indentation)."""
    found = []
    in_block_comment = False
    for number, line in enumerate(text.split("\n"), 1):
        stripped = line.strip()
        if in_block_comment:
            if "*/" in stripped:
                in_block_comment = False
            continue
        if stripped.startswith("/*") and "*/" not in stripped:
            in_block_comment = True
            continue
        if not stripped or stripped.startswith(("#", "//", "/*", "*")):
            continue
        code = mask_literals(line)
        for old, new in OPERATOR_SWAPS:
            start = code.find(old)
            while start >= 0:
                found.append((path, number, start, old, new, "operator", stripped, len(line) - len(line.lstrip())))
                start = code.find(old, start + 1)
        for m in INTEGER.finditer(code):
            value = int(m.group(1), 0) if not m.group(1).startswith("0") or m.group(1) == "0" else None
            if value is None:
                continue
            new = str(value + 1) if value < 2 else str(value - 1)
            found.append((path, number, m.start(), m.group(1), new, "constant", stripped, len(line) - len(line.lstrip())))
        for m in BOOLEAN.finditer(code):
            new = "false" if m.group(1) == "true" else "true"
            found.append((path, number, m.start(), m.group(1), new, "boolean", stripped, len(line) - len(line.lstrip())))
        call = CALL_STATEMENT.match(code)
        if call and not NOT_A_CALL.match(code) and code.count("(") == code.count(")"):
            start = len(call.group(1))
            found.append((path, number, start, line[start:].rstrip(), ";", "deleted call", stripped, len(line) - len(line.lstrip())))
    return found


# The headers whose code is all inline templates: no .cpp file holds their logic.
TEMPLATE_HEADERS = ("scc_event.h", "scc_list.h", "scc_map.h", "scc_safelist.h", "scc_shared.h",
                    "scc_sortarr.h", "sccstack.h")


def all_candidates(tree, headers=False):
    if headers:
        files = [f"inc/{name}" for name in TEMPLATE_HEADERS]
    else:
        files = [f"{folder}/{name}" for folder in LIBRARY_DIRS if os.path.isdir(os.path.join(tree, folder))
                 for name in sorted(os.listdir(os.path.join(tree, folder))) if name.endswith(".cpp")]
    found = []
    for relative in files:
        if os.path.isfile(os.path.join(tree, relative)):
            with open(os.path.join(tree, relative), encoding="utf-8", errors="surrogateescape") as f:
                found.extend(candidates_in(relative, f.read()))
    return found


def apply(text, mutant):
    _, number, column, old, new = mutant[:5]
    lines = text.split("\n")
    line = lines[number - 1]
    assert line[column : column + len(old)] == old, (mutant, line)
    lines[number - 1] = line[:column] + new + line[column + len(old) :]
    return "\n".join(lines)


def export_tree(repo, rev, destination):
    """A copy of the tree at rev (None: the working tree, tracked and untracked files)."""
    if os.path.exists(destination):
        shutil.rmtree(destination)
    os.makedirs(destination)
    if rev:
        archive = subprocess.run(["git", "-C", repo, "archive", rev], check=True, capture_output=True).stdout
        tarfile.open(fileobj=io.BytesIO(archive)).extractall(destination)
        return
    listed = subprocess.run(
        ["git", "-C", repo, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        check=True, capture_output=True).stdout.decode().split("\0")
    for relative in filter(None, listed):
        source = os.path.join(repo, relative)
        if os.path.isfile(source):
            os.makedirs(os.path.join(destination, os.path.dirname(relative)), exist_ok=True)
            shutil.copy2(source, os.path.join(destination, relative))


class Worker:
    """One source copy with its own build directory, so that workers never share a file."""

    def __init__(self, root, index, repo, rev):
        self.source = os.path.join(root, f"w{index}", "src")
        self.build = os.path.join(root, f"w{index}", "build")
        # A build left by an interrupted run may hold a mutant's object file newer than the
        # fresh copy of its source (git archive dates files by their commit), so start clean.
        shutil.rmtree(os.path.join(root, f"w{index}"), ignore_errors=True)
        export_tree(repo, rev, self.source)
        subprocess.run(
            ["cmake", "-S", self.source, "-B", self.build, "-DCMAKE_BUILD_TYPE=Debug",
             f"-DCMAKE_CXX_FLAGS={SANITIZER_FLAGS}", "-DBFC_BUILD_DEMO=OFF", "-DBFC_BUILD_TESTS=ON"],
            check=True, capture_output=True)
        self.make()

    def make(self):
        return subprocess.run(["cmake", "--build", self.build, "--target", "bfc_tests"],
                              capture_output=True, timeout=1800).returncode == 0

    def run_tests(self, timeout):
        environment = dict(os.environ, ASAN_OPTIONS="detect_leaks=1:abort_on_error=1",
                           UBSAN_OPTIONS="halt_on_error=1")
        try:
            result = subprocess.run([os.path.join(self.build, "bfc_tests"), "--gtest_fail_fast",
                                     "--gtest_brief=1"], cwd=self.build, env=environment,
                                    capture_output=True, timeout=timeout)
            return result.returncode != 0
        except subprocess.TimeoutExpired:
            return True

    def judge(self, mutant, timeout):
        path = os.path.join(self.source, mutant[0])
        with open(path, encoding="utf-8", errors="surrogateescape") as f:
            original = f.read()
        try:
            with open(path, "w", encoding="utf-8", errors="surrogateescape") as f:
                f.write(apply(original, mutant))
            if not self.make():
                return "uncompilable"
            return "caught" if self.run_tests(timeout) else "survived"
        finally:
            with open(path, "w", encoding="utf-8", errors="surrogateescape") as f:
                f.write(original)


def identity(mutant, seed):
    """A number that names the fault by its file, the text of its line and the edit, not by
    its line number: an edit elsewhere in the sources leaves it as it is."""
    path, _, column, old, new, _, text, indent = mutant
    key = f"{seed}|{path}|{text}|{column - indent}|{old}|{new}".encode()
    return int.from_bytes(hashlib.sha256(key).digest()[:8], "big")


def is_chosen(mutant, seed, rate):
    """Whether the sample takes this fault; each fault is taken or not on its own, so which
    faults are planted stays the same across revisions wherever their lines do."""
    return identity(mutant, seed) < rate * 2**64


def describe(mutant):
    path, number, _, old, new, kind = mutant[:6]
    return f"{path}:{number} {kind}: '{old.strip()}' -> '{new.strip()}'"


def run(args):
    repo = subprocess.run(["git", "rev-parse", "--show-toplevel"], check=True, capture_output=True,
                          text=True).stdout.strip()
    root = os.path.abspath(args.workdir)
    print(f"preparing {args.jobs} build(s) of {args.rev or 'the working tree'} in {root}", flush=True)
    with ThreadPoolExecutor(args.jobs) as pool:
        workers = list(pool.map(lambda i: Worker(root, i, repo, args.rev), range(args.jobs)))
    if any(w.run_tests(args.timeout) for w in workers):
        sys.exit("the unmutated tests fail: nothing to measure")
    pool_of_candidates = all_candidates(workers[0].source, args.headers)
    if args.only:
        pool_of_candidates = [m for m in pool_of_candidates if m[0].startswith(tuple(args.only))]
    chosen = [m for m in pool_of_candidates if is_chosen(m, args.seed, args.rate)]
    print(f"{len(pool_of_candidates)} candidate faults; planting {len(chosen)} "
          f"(rate {args.rate}, seed {args.seed})", flush=True)

    shares = [chosen[i::args.jobs] for i in range(args.jobs)]
    results = {}

    def work(index):
        for mutant in shares[index]:
            verdict = workers[index].judge(mutant, args.timeout)
            results[mutant] = verdict
            print(f"{len(results):4d}/{len(chosen)} {verdict:12s} {describe(mutant)}", flush=True)

    with ThreadPoolExecutor(args.jobs) as pool:
        list(pool.map(work, range(args.jobs)))

    lines = [f"{results[m]:12s} {identity(m, args.seed):016x} {describe(m)}" for m in chosen]
    compiled = sum(1 for m in chosen if results[m] != "uncompilable")
    caught = sum(1 for m in chosen if results[m] == "caught")
    summary = f"planted {len(chosen)}, compiled {compiled}, caught {caught}, survived {compiled - caught}"
    print(summary)
    if args.out:
        with open(args.out, "w") as f:
            f.write("\n".join(lines + [summary]) + "\n")


def compare(before_path, after_path):
    def read(path):
        with open(path) as f:
            rows = [line.rstrip("\n") for line in f if line[:12].strip() in ("caught", "survived", "uncompilable")]
        return {row[13:29]: (row[:12].strip(), row[30:]) for row in rows}
    before, after = read(before_path), read(after_path)
    def verdict(table, key):
        return table[key][0] if key in table else None
    lost = sorted(before[k][1] for k in before if before[k][0] == "caught" and verdict(after, k) == "survived")
    gained = sorted(after[k][1] for k in after if after[k][0] == "caught" and verdict(before, k) == "survived")
    for label, rows in (("caught before, survived after", lost), ("survived before, caught after", gained)):
        print(f"{label}: {len(rows)}")
        for row in rows:
            print(f"  {row}")
    common = [k for k in before if k in after]
    print(f"faults planted in both: {len(common)}")
    for name, table in (("before", before), ("after", after)):
        print(f"{name}: caught {sum(table[k][0] == 'caught' for k in common)} of "
              f"{sum(table[k][0] != 'uncompilable' for k in common)} compiled of those; overall "
              f"caught {sum(v[0] == 'caught' for v in table.values())} of "
              f"{sum(v[0] != 'uncompilable' for v in table.values())} compiled")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rev", help="git revision to measure (default: the working tree)")
    parser.add_argument("--rate", type=float, default=0.1,
                        help="share of the candidate faults to plant (default 0.1: about 300)")
    parser.add_argument("--seed", type=int, default=13, help="sampling seed (default 13)")
    parser.add_argument("--jobs", type=int, default=2, help="parallel workers (default 2)")
    parser.add_argument("--timeout", type=int, default=120, help="seconds a test run may take")
    parser.add_argument("--workdir", default="build/mutate", help="where the copies are built")
    parser.add_argument("--out", help="write the verdict of every fault to this file")
    parser.add_argument("--list", action="store_true", help="only list the candidate faults")
    parser.add_argument("--only", nargs="+", metavar="PREFIX",
                        help="plant faults only in files whose path starts with one of these (sfm/ plat/plat_f)")
    parser.add_argument("--headers", action="store_true", help="mutate the header-only templates instead")
    parser.add_argument("--compare", nargs=2, metavar=("BEFORE", "AFTER"), help="compare two --out files")
    args = parser.parse_args()
    if args.compare:
        compare(*args.compare)
    elif args.list:
        for mutant in all_candidates(".", args.headers):
            print(describe(mutant))
    else:
        run(args)


if __name__ == "__main__":
    main()

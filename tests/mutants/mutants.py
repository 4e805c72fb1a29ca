#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
"""Changes one instruction of the library inside the test program at a time and runs the tests.

A mutant is the compiled test program with one conditional jump, move or flag turned round, or one
the lowest bit of a constant flipped. It is killed if the tests fail, crash or do not end. No source is compiled
again, so that thousands can be tried. The last line counts them.
"""
import argparse
import collections
import concurrent.futures
import os
import random
import re
import resource
import subprocess
import sys
import tempfile

Mutant = collections.namedtuple("Mutant", "address offset old new text symbol")


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def library_functions(program, archive):
    """Address ranges of the library's functions in the program, by symbol."""
    own = {line.split()[-1] for line in run("nm", "--defined-only", archive).splitlines()
           if re.search(r" [tTwW] ", line)}
    ranges = {}
    for line in run("nm", "-S", "--defined-only", program).splitlines():
        found = re.match(r"(\w+) (\w+) [tTwW] (\S+)$", line)
        if found and found[3] in own:
            ranges[int(found[1], 16)] = (int(found[2], 16), found[3])
    return ranges


def change(code, text):
    """Which byte of an instruction is changed, and to what; none if the instruction is not touched."""
    at = 1 if 0x40 <= code[0] <= 0x4F or code[0] == 0x66 else 0
    if 0x70 <= code[0] <= 0x7F:
        return 0, code[0] ^ 1
    if code[at] == 0x0F and code[at + 1] >> 4 in (4, 8, 9):
        return at + 1, code[at + 1] ^ 1
    found = re.match(r"(?:cmp|add|sub|and|or|test|imul|mov|sar|shr|shl)\w*\s+\$0x(\w+),(.*)", text)
    if found and not re.search("%rsp|%rbp", found[2]):
        value = int(found[1], 16)
        if text.startswith("cmpq") and value == 0:  # a pointer and null: the jump behind it is turned
            return None
        for size in (4, 1):
            low = int.from_bytes(code[-size:], "little")
            if len(code) > size + 1 - (size == 4) and (low ^ value) & ((1 << 8 * size) - 1) == 0:
                return len(code) - size, code[-size] ^ 1
    return None


def all_mutants(program, archive):
    ranges = library_functions(program, archive)
    section = re.search(r"\.text\s+PROGBITS\s+(\w+)\s+(\w+)", run("readelf", "-SW", program))
    shift = int(section[2], 16) - int(section[1], 16)
    function, end = None, 0
    for line in run("objdump", "-d", "-j", ".text", "--insn-width=16", program).splitlines():
        fields = line.split("\t")
        if len(fields) != 3:
            continue
        address = int(fields[0].strip(" :"), 16)
        if address in ranges:
            end, function = address + ranges[address][0], ranges[address][1]
        code = bytes.fromhex(fields[1])
        changed = change(code, fields[2]) if address < end else None
        if changed:
            at = address + changed[0]
            yield Mutant(address, at + shift, code[changed[0]], changed[1], fields[2], function)


def limits():
    resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def survives(program, mutant, folder):
    """Tries the tests of the function's own family first, since they are the likely killers."""
    family = re.search(r"qek_([a-z0-9]+)_|qek(\d+)([a-z]+)", mutant.symbol)
    name = family[1] or family[3][: int(family[2])] if family else "none"
    near = f"*{name[:5]}*:-*deep*:*DeathTest*"
    with tempfile.NamedTemporaryFile(dir=folder, delete=False) as copy:
        with open(program, "rb") as original:
            data = bytearray(original.read())
        data[mutant.offset] = mutant.new
        copy.write(data)
    os.chmod(copy.name, 0o755)
    try:
        for tests in (near, "*"):
            done = subprocess.run(
                [copy.name, "--gtest_brief=1", "--gtest_fail_fast", f"--gtest_filter={tests}"],
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                env=dict(os.environ, QEK_TEST_SEED="1"), timeout=60, preexec_fn=limits, check=False)
            if done.returncode != 0:
                return False
        return True
    except subprocess.TimeoutExpired:
        return False
    finally:
        os.unlink(copy.name)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("program", help="the test program")
    parser.add_argument("archive", help="the copy of the library that it is linked with")
    parser.add_argument("--sample", type=int, default=0, help="how many mutants; 0 for all")
    parser.add_argument("--seed", type=int, default=1, help="which sample")
    parser.add_argument("--only", default="", help="pattern of the symbols to change")
    options = parser.parse_args()
    mutants = [m for m in all_mutants(options.program, options.archive)
               if re.search(options.only, m.symbol)]
    if options.sample and options.sample < len(mutants):
        mutants = random.Random(options.seed).sample(mutants, options.sample)
    survivors = []
    with tempfile.TemporaryDirectory() as folder, \
            concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        tried = pool.map(lambda m: survives(options.program, m, folder), mutants)
        for count, (mutant, survived) in enumerate(zip(mutants, tried), 1):
            if survived:
                survivors.append(mutant)
                place = run("addr2line", "-Cpfe", options.program, hex(mutant.address)).strip()
                print(f"survived: {place}: {mutant.text}: {mutant.old:02x} -> {mutant.new:02x}",
                      flush=True)
            if sys.stderr.isatty():
                print(f"\r{count}/{len(mutants)}", end="\r", file=sys.stderr)
    killed = len(mutants) - len(survivors)
    print(f"{killed} of {len(mutants)} mutants killed, {100 * killed / max(1, len(mutants)):.1f} %")


if __name__ == "__main__":
    main()

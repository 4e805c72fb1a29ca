#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
"""Changes one instruction of the library inside the test program at a time and runs the tests.

A mutant is the linked test program with one conditional jump, move or flag turned round, or the
lowest bit of one constant flipped. It is killed if the tests fail, crash or do not end. No source
is compiled again, so that thousands can be tried. Survivors at the places that equivalent.txt lists
are told apart and not counted. The last line counts; the result is 0 if enough were killed.
"""
import argparse
import collections
import concurrent.futures
import errno
import functools
import json
import os
import random
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time

Mutant = collections.namedtuple("Mutant", "address offset old new text symbol file line")

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))

# Of each folder's functions, the tests that are likely to kill. They run first, the quick ones in
# front, as what does not end is waited for as long as they take. The others follow if need be, but
# never those that go deep, as they do what others do, only longer.
NEAR = {
    "array": "arr|sort|readers", "base": "scan|str|mem|slice|text|convert|stream|keyed",
    "bits": "bits", "btree": "btree|readers", "hash": "hash|readers", "list": "list|readers",
    "pool": "pool|arrays|lists", "stream": "stream|fields|compact|readers|text|convert",
    "text": "str|text|convert|slice|char", "tree": "tree"}
DEEP = "a_million"


def run(*command, **more):
    return subprocess.run(command, check=True, capture_output=True, text=True, **more).stdout


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
    """Which byte of an instruction is changed, and to what; none if it is not touched."""
    at = 1 if 0x40 <= code[0] <= 0x4F or code[0] == 0x66 else 0
    if 0x70 <= code[0] <= 0x7F:
        return 0, code[0] ^ 1
    if code[at] == 0x0F and code[at + 1] >> 4 in (4, 8, 9):
        return at + 1, code[at + 1] ^ 1
    found = re.match(r"(?:cmp|add|sub|and|or|test|imul|mov|sar|shr|shl)\w*\s+\$0x(\w+),(.*)", text)
    if found and not re.search("%rsp|%rbp", found[2]):
        value = int(found[1], 16)
        if text.startswith("cmpq") and value == 0:  # null: the jump behind it is turned
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
    found = []
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
            found.append((address, changed, code, " ".join(fields[2].split()), function))
    places = run("addr2line", "-e", program, input="".join(f"{each[0]:x}\n" for each in found))
    for (address, (at, new), code, text, function), place in zip(found, places.splitlines()):
        file, line = place.split(" ")[0].rsplit(":", 1)
        file = os.path.relpath(os.path.realpath(file), ROOT)
        if not file.startswith(".."):  # what the compiler's headers bring is not the library's
            yield Mutant(address, address + at + shift, code[at], new, text, function, file,
                         int(line.replace("?", "0")))


@functools.cache
def source_lines(file):
    try:
        with open(os.path.join(ROOT, file), encoding="utf-8") as source:
            return [line.strip() for line in source.read().splitlines()]
    except FileNotFoundError:
        return []


def source_line(mutant):
    """The line, if there is one: of an included file, compilers may tell the wrong name."""
    lines = ["", *source_lines(mutant.file)]
    return lines[mutant.line] if mutant.line < len(lines) else ""


def read_equivalents(path):
    """What equivalent.txt lists; if lines of it are no lines of the source, the program ends."""
    entries, stale = [], []
    with open(path, encoding="utf-8") as lines:
        for entry in lines.read().splitlines():
            if not entry or entry.startswith("#"):
                continue
            place, operations, rest = entry.split(" | ", 2)
            text, reason = rest.rsplit(" | ", 1)
            file, _, symbol = place.partition("@")
            if text not in source_lines(file):
                stale.append(f"{path}: {file} has no such line: {text}")
            entries.append((file, symbol, operations.split(" "), text, reason))
    if stale:
        sys.exit("\n".join(stale))
    return entries


def reason_for(mutant, text, equivalents):
    """Why nobody can tell this mutant from the library, as far as that is known."""
    operation = mutant.text.split(" ")[0]
    for file, symbol, operations, line, reason in equivalents:
        if (mutant.file, text) == (file, line) and symbol in mutant.symbol:
            for each in operations:
                suffix = ".*" if each in ("j", "set", "cmov") else "[bwlq]?"
                if re.fullmatch(each + suffix, operation):
                    return reason
    return None


class Tests:
    """What a program's tests are called and how long they take."""

    def __init__(self, program):
        with tempfile.NamedTemporaryFile(suffix=".json") as report:
            if self.call(program, ["*"], None, f"--gtest_output=json:{report.name}") != 0:
                sys.exit("the tests fail without a change")
            suites = json.load(report)["testsuites"]
        self.seconds = {f"{suite['name']}.{test['name']}": float(test["time"].rstrip("s"))
                        for suite in suites for test in suite["testsuite"]
                        if not re.search(DEEP, f"{suite['name']}.{test['name']}")}

    @staticmethod
    def call(program, names, seconds, *more):
        """The result of the program with these tests; None if it did not end."""
        def limit():
            resource.setrlimit(resource.RLIMIT_AS, (2 << 30, 2 << 30))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            if seconds:
                resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        environment = dict(os.environ, QEK_TEST_SEED="1", GTEST_FILTER=":".join(names))
        process = subprocess.Popen(
            [program, "--gtest_brief=1", "--gtest_fail_fast", *more], stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=environment,
            preexec_fn=limit, start_new_session=True)
        try:
            return process.wait(seconds and 20 * seconds)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)  # with the children that it forked
            process.wait()
            return None

    def pass_with(self, program, names):
        """Whether they pass, in a few times the time of the processor that they usually take."""
        seconds = 2 + int(4 * sum(self.seconds[name] for name in names))
        return not names or self.call(program, names, seconds) == 0

    def stages(self, file):
        pattern = NEAR.get(file.split("/")[0], "$")
        near = [name for name in self.seconds if re.search(pattern, name)]
        quick = [name for name in near if self.seconds[name] < 0.05]
        return (quick, [name for name in near if name not in quick],
                [name for name in self.seconds if name not in near])


def prepare(program, tests):
    """Gives each process of the pool a copy of the program, to change a byte of it at a time."""
    global copy, suite
    copy = os.path.join(os.path.dirname(program), str(os.getpid()))
    with open(program, "rb") as original, open(copy, "wb") as target:
        target.write(original.read())
    os.chmod(copy, 0o755)
    suite = tests


def survives(mutant):
    def put(byte):
        while True:
            try:
                with open(copy, "r+b") as program:
                    program.seek(mutant.offset)
                    program.write(bytes([byte]))
                return
            except OSError as error:  # the last of the processes that run it is still ending
                if error.errno != errno.ETXTBSY:
                    raise
                time.sleep(0.01)
    put(mutant.new)
    survived = all(suite.pass_with(copy, names) for names in suite.stages(mutant.file))
    put(mutant.old)
    return survived


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("program", nargs="?", help="the test program; without it, only the lines of "
                        "equivalent.txt\nare looked for in the sources")
    parser.add_argument("archive", nargs="?",
                        help="the copy of the library that it is linked with")
    parser.add_argument("--sample", type=int, default=0, help="how many mutants; 0 for all")
    parser.add_argument("--seed", type=int, default=1, help="which sample")
    parser.add_argument("--only", default="", help="pattern of file:line:symbol:instruction")
    parser.add_argument("--least", type=float, default=0, help="how many percent have to be killed")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many at a time")
    options = parser.parse_args()
    equivalents = read_equivalents(os.path.join(ROOT, "tests/mutants/equivalent.txt"))
    if not options.archive:
        return
    mutants = [m for m in all_mutants(options.program, options.archive)
               if re.search(options.only, f"{m.file}:{m.line}:{m.symbol}:{m.text}")]
    total = len(mutants)
    if options.sample and options.sample < total:
        mutants = random.Random(options.seed).sample(mutants, options.sample)
    survivors = equivalent = 0
    with tempfile.TemporaryDirectory(dir=os.path.dirname(options.program)) as folder:
        stripped = os.path.join(folder, "tests")
        run("strip", "-o", stripped, options.program)
        tests = Tests(stripped)
        with concurrent.futures.ProcessPoolExecutor(options.jobs, initializer=prepare,
                                                    initargs=(stripped, tests)) as pool:
            for count, (mutant, survived) in enumerate(
                    zip(mutants, pool.map(survives, mutants)), 1):
                if survived:
                    text = source_line(mutant)
                    reason = reason_for(mutant, text, equivalents)
                    survivors += reason is None
                    equivalent += reason is not None
                    print(f"{'survived' if reason is None else 'equivalent'}: "
                          f"{mutant.file}:{mutant.line}: {mutant.address:x}: {mutant.text}: "
                          f"{mutant.old:02x} -> {mutant.new:02x}\n    {text}\n"
                          f"    {reason or mutant.symbol}", flush=True)
                if sys.stderr.isatty():
                    print(f"\r{count}/{len(mutants)}", end="\r", file=sys.stderr)
    counted = len(mutants) - equivalent
    killed = counted - survivors
    share = 100 * killed / max(1, counted)
    print(f"{equivalent} more of {len(mutants)} out of {total} are equivalent")
    print(f"{killed} of {counted} mutants killed, {int(10 * share) / 10} %")
    sys.exit(share < options.least)


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
"""report.py RESULTS [--from FILE...] [--against FILE] [--markdown] [--draw FILE]
                  [--readme FILE]

Prints the table of RESULTS, with the rows that miss their target first; --from makes RESULTS out of
what the benchmark programs wrote. --against marks ratios that got worse by more than 15 % since FILE,
other results of the same kind. --markdown prints the table for a document. --draw writes a picture.
--readme puts the few rows that README shows between the marks of FILE, which wants a full run.

Result: 0, also where times are bad; 1 if the sides of a row did not do the same work, or if there is
nothing to show.
"""

import argparse
import datetime
import json
import platform
import sys

sys.dont_write_bytecode = True  # the folder of the sources stays as it is
from rows import README, ROWS  # noqa: E402

WORSE = 1.15
MARKS = "<!-- figures: bench/report.py --readme -->\n", "<!-- end of figures -->\n"


def read_programs(files):
    """The medians of what Google Benchmark wrote, as {"row/side/size": figures}."""
    entries = {}
    for name in files:
        with open(name, encoding="utf-8") as file:
            text = file.read()
        if not text.strip():
            continue  # no benchmark of that program was asked for
        for run in json.loads(text)["benchmarks"]:
            if run.get("error_occurred"):
                sys.exit(f"report.py: {run['name']}: {run.get('error_message', 'failed')}")
            if run["run_type"] == "aggregate" and run["aggregate_name"] != "median":
                continue
            key = "/".join(run["run_name"].split("/")[:3])
            if "bytes" in run:
                entries[key] = {"bytes": run["bytes"]}
            else:
                entries[key] = {"ns": 1e9 / run["items_per_second"], "result": run["result"]}
    return entries


def processor():
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            for line in file:
                if line.startswith("model name"):
                    return line.split(":", 1)[1].strip()
    except OSError:
        pass
    return platform.machine()


def compare(entries):
    """One line for each row, size and peer: a dictionary."""
    for row, peers in ROWS.items():
        sizes = sorted(int(key.split("/")[2]) for key in entries if key.startswith(f"{row}/ours/"))
        for size in sizes:
            ours = entries[f"{row}/ours/{size}"]
            unit = "bytes" if "bytes" in ours else "ns"
            for against in peers:
                sides = [entries.get(f"{row}/{side}/{size}") for side in against.peer.split("|")]
                sides = [side for side in sides if side]
                if not sides:
                    continue
                peer = min(side[unit] for side in sides)
                target = against.targets.get(size)
                ratio = ours[unit] / peer if peer else 0.0
                yield {
                    "row": row,
                    "size": size,
                    "peer": against.peer,
                    "unit": unit,
                    "ours": ours[unit],
                    "theirs": peer,
                    "ratio": ratio,
                    "target": target,
                    "limit": against.limit_at(size),
                    "missed": target is not None and ratio > target,
                    "same": all(side.get("result") == ours.get("result") for side in sides),
                }


def order(line):
    """Misses first, the worst of them at the top; the rest as the rows stand."""
    return (0, -line["ratio"] / line["target"]) if line["missed"] else (1, 0)


def notes(line, before):
    told = []
    if line["missed"]:
        told.append("misses")
    if line["limit"]:
        told.append(f"L: {line['limit']}")
    if not line["same"]:
        told.append("DIFFERENT WORK")
    old = before.get((line["row"], line["size"], line["peer"]))
    if old and line["ratio"] > old * WORSE:
        told.append(f"worse by {100 * (line['ratio'] / old - 1):.0f} %")
    return ", ".join(told)


def figure(value, unit):
    if unit == "bytes":
        return f"{value:.1f} B"
    for name in ("ns", "us", "ms"):
        if value < 1000:
            break
        value /= 1000
    return f"{value:.3g} {name}"


def cells(line, before):
    target = "" if line["target"] is None else f"{line['target']:g}"
    figures = [figure(line[side], line["unit"]) for side in ("ours", "theirs")]
    size, peer = f"{line['size']:,}".replace(",", " "), line["peer"].replace("|", " or ")
    ratio = f"{line['ratio']:.2f}" if line["ratio"] >= 0.1 else f"{line['ratio']:.3f}"
    return [line["row"], size, peer, *figures, ratio, target, notes(line, before)]


HEAD = ["row", "size", "peer", "ours", "theirs", "ratio", "target", ""]


def show(lines, before, markdown):
    table = [HEAD] + [cells(line, before) for line in sorted(lines, key=order)]
    widths = [max(len(line[at]) for line in table) for at in range(len(HEAD))]
    for number, line in enumerate(table):
        aligned = [
            cell.ljust(width) if at in (0, 2, 7) else cell.rjust(width)
            for at, (cell, width) in enumerate(zip(line, widths))
        ]
        print("| " + " | ".join(aligned) + " |" if markdown else "  ".join(aligned).rstrip())
        if markdown and number == 0:
            print("|" + "|".join(("---" if at in (0, 2, 7) else "---:") for at in range(8)) + "|")


def draw(lines, results, path):
    """Ratio over target, a dot for each size, in two columns."""
    import matplotlib

    matplotlib.use("svg")
    matplotlib.rcParams.update({"svg.hashsalt": "qek_std", "svg.fonttype": "none", "font.size": 7.5})
    from matplotlib import pyplot
    from matplotlib.ticker import FuncFormatter, NullFormatter

    groups = {}
    for line in lines:
        if line["target"] is not None and line["ratio"] > 0:
            groups.setdefault((line["row"], line["peer"]), []).append(line)
    names = list(groups)
    if not names:
        return
    half = (len(names) + 1) // 2
    picture, columns = pyplot.subplots(1, 2, figsize=(13, 1.2 + 0.165 * half), sharex=True)
    for axes, part in zip(columns, (names[:half], names[half:])):
        for place, name in enumerate(part):
            group = sorted(groups[name], key=lambda line: line["size"])
            share = [line["ratio"] / line["target"] for line in group]
            axes.plot(share, [place] * len(share), color="#c8c8c8", linewidth=1, zorder=1)
            for number, (line, value) in enumerate(zip(group, share)):
                colour = "#c8501e" if line["missed"] else "#2060a0"
                face = "white" if line["limit"] else colour
                axes.scatter(value, place, s=12 + 14 * number, c=face, edgecolors=colour, zorder=2)
        labels = [f"{row}  /  {peer.replace('|', ' or ')}" for row, peer in part]
        axes.set_yticks(range(len(part)), labels)
        axes.set_ylim(half - 0.3, -0.7)
        axes.axvline(1, color="black", linewidth=0.8)
        axes.set_xscale("log")
        axes.xaxis.set_major_formatter(FuncFormatter(lambda value, _: f"{value:g}"))
        axes.xaxis.set_minor_formatter(NullFormatter())
        axes.grid(axis="x", which="both", color="#eeeeee", zorder=0)
        axes.tick_params(axis="x", top=True, labeltop=True)
    picture.suptitle(
        "Ratio (our time / the peer's) as a share of its target: left of 1 reaches it.   "
        "Blue: reached; red: missed; hollow: structural limit; larger dot: larger size\n"
        f"{results['machine']}, {results['date']}",
        fontsize=8.5,
    )
    picture.tight_layout(rect=(0, 0, 1, 1 - 0.25 / picture.get_figheight()))
    picture.savefig(path, metadata={"Date": None})


def write_readme(lines, results, path):
    """The chosen rows and a sum between the marks of a document; what is around them stays."""
    found = {(line["row"], line["size"], line["peer"]): line for line in lines}
    missing = [key for key in README if key not in found]
    if missing:
        sys.exit(f"report.py: README shows rows that were not measured: {missing}")
    table = "\n| Work | Items | Ours | Peer | Theirs | Ratio |\n|---|---:|---:|---|---:|---:|\n"
    for key, (work, peer) in README.items():
        _, size, _, ours, theirs, ratio, *_ = cells(found[key], {})
        if found[key]["ratio"] >= 100:
            ratio = f"{found[key]['ratio']:.0f}"
        size, ours, theirs = (text.replace(" ", "\u00a0") for text in (size, ours, theirs))
        table += f"| {work} | {size} | {ours} | {peer} | {theirs} | {ratio} |\n"
    times = [line["ratio"] for line in lines if line["unit"] == "ns"]
    judged = [line for line in lines if line["target"] is not None]
    table += (
        f"\nOf {len(times)} comparisons of times, {sum(ratio < 1 for ratio in times)} have a ratio below"
        f" 1; of {len(judged)} targets that were set,\n{sum(not line['missed'] for line in judged)} are"
        f" reached. {results['machine']}, {results['date']}.\n"
    )
    with open(path, encoding="utf-8") as file:
        text = file.read()
    if any(text.count(mark) != 1 for mark in MARKS):
        sys.exit(f"report.py: {path} has no place for the figures, or more than one")
    before, rest = text.split(MARKS[0])
    after = rest.split(MARKS[1])[1]
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"{before}{MARKS[0]}{table}{MARKS[1]}{after}")


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("results")
    parser.add_argument("--from", dest="programs", nargs="+")
    parser.add_argument("--against")
    parser.add_argument("--markdown", action="store_true")
    parser.add_argument("--draw")
    parser.add_argument("--readme")
    told = parser.parse_args()
    if told.programs:
        made = {
            "machine": processor(),
            "date": datetime.date.today().isoformat(),
            "entries": read_programs(told.programs),
        }
        with open(told.results, "w", encoding="utf-8") as file:
            json.dump(made, file, indent=1)
            file.write("\n")
    with open(told.results, encoding="utf-8") as file:
        results = json.load(file)
    before = {}
    if told.against:
        with open(told.against, encoding="utf-8") as file:
            for line in compare(json.load(file)["entries"]):
                before[line["row"], line["size"], line["peer"]] = line["ratio"]
    lines = list(compare(results["entries"]))
    if not lines:
        print("report.py: no row was measured", file=sys.stderr)
        return 1
    show(lines, before, told.markdown)
    judged = [line for line in lines if line["target"] is not None]
    missed = sum(line["missed"] for line in judged)
    worse = sum("worse" in notes(line, before) for line in lines)
    print(f"\n{len(judged)} targets, {len(judged) - missed} reached, {missed} missed", end="")
    print(f"; {worse} ratios worse than in {told.against}" if told.against else "")
    if told.draw:
        draw(lines, results, told.draw)
    if told.readme:
        write_readme(lines, results, told.readme)
    return 0 if all(line["same"] for line in lines) else 1


if __name__ == "__main__":
    sys.exit(main())

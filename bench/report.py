#!/usr/bin/env python3
"""Writes RESULTS.md and its plots from what the benchmarks measured.

Usage: bench/report.py RESULTS_FILE DIRECTORY [quick]; writes DIRECTORY/RESULTS.md and
DIRECTORY/plots/*.svg."""
import datetime
import json
import os
import statistics
import sys

import machine
import plot

# What each group of races compares; read by whoever doubts that it is fair.
NOTES = {
    "find": "All three take and release the table's own lock for each look-up and get the name as a "
            "C string. absl::flat_hash_map maps the records' own names, hashed and compared without "
            "their case, to pointers to the same records. Processor time.",
    "encode": "Everybody finds the domain under the table's lock and ends with the message's bytes. "
              "protobuf writes an arena message with explicit presence to a buffer; flatbuffers "
              "leaves the message in its builder, which is reused. Processor time.",
    "decode": "From bytes to a DomainInfo with lists of its own, which is destroyed again. protobuf "
              "parses into an arena; flatbuffers verifies the message before it reads it. Before "
              "measuring, every field of every decoded record is compared with the table. "
              "Processor time.",
    "get": "The echo is a process that answers with the bytes of such a reply, on the same transport, "
           "one socket a request; it looks at nothing. Clients are threads of one process.",
    "set": "Every put is on the same disk when it returns and writes a value of the size of the "
           "domain's record. The daemon is asked through its socket and applies the change in both "
           "roles; LMDB and SQLite are called in the process; Redis is a private server on a Unix "
           "socket that syncs its log before it answers. SQLite's writers queue on a mutex instead "
           "of sleeping.",
    "records": "The same keys, values, transactions and sync mode (none, as of the run database), in "
               "a new database each window.",
    "pages": "The 50 newest records of a list that grows.",
    "start": "From fork to readiness. aaad is ready at its first answer, when the tables of both "
             "roles are filled with decoded domains. The LMDB program scans the same messages and "
             "copies each once, without reading it; the SQLite program selects three tables into "
             "the same structures.",
    "import": "aaactl reads its JSON and sends a change at a time, each durable before the next. The "
              "peer makes as many synced commits to raw LMDB, one after the other, because no "
              "importer that promises so much can do with less.",
    "walk": "Every row of the scheme table, one request a row; a walk over 1024 domains against one "
            "over 256.",
}


def ratios(ours, peer):
    """Cost of ours as a multiple of the peer's in windows of the same round."""
    return [a / b for a, b in zip(ours, peer)]


def verdict(race, goal):
    """(goal in words, measured median, spread, met)"""
    times = {one["name"]: one["ns"] for one in race["contestants"]}
    found = ratios(race["contestants"][0]["ns"], times[goal["peer"]])
    if goal["kind"] == "cost":
        words = f'at most {goal["limit"]:g} times the cost of {goal["peer"]}'
        met = statistics.median(found) <= goal["limit"]
    else:
        found = [1 / ratio for ratio in found]
        words = f'at least {goal["limit"]:g} times the speed of {goal["peer"]}'
        met = statistics.median(found) >= goal["limit"]
    return words, statistics.median(found), (min(found), max(found)), met


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return lines + [""]


def spread(pair):
    return f"{pair[0]:.2f} to {pair[1]:.2f}"


def goal_rows(groups):
    """A goal counts at the largest load; how it stands at the smallest is told beside it."""
    for races in groups.values():
        race = races[-1]
        for goal in race["goals"]:
            words, median, pair, met = verdict(race, goal)
            least = f"{verdict(races[0], goal)[1]:.2f}" if len(races) > 1 else ""
            yield (race["title"], f'{race["load"]} {race["load_unit"]}', words, f"{median:.2f}",
                   spread(pair), least, "met" if met else "**not met**")


def allocation_rows(counts):
    for count in counts:
        each = count["calls"] / count["messages"]
        yield ("malloc calls: " + count["allocations"], f'{count["messages"]} messages', "0",
               f"{each:g}", "counted", "", "met" if count["calls"] == 0 else "**not met**")


def group_section(name, races):
    names = [one["name"] for one in races[0]["contestants"]]
    head = [races[0]["load_unit"]] + names + [f"cost against {peer}" for peer in names[1:]]
    rows = []
    for race in races:
        times = [one["ns"] for one in race["contestants"]]
        row = [str(race["load"])] + [plot.readable(statistics.median(ns)) for ns in times]
        for ns in times[1:]:
            found = ratios(times[0], ns)
            row.append(f"{statistics.median(found):.2f} ({spread((min(found), max(found)))})")
        rows.append(row)
    lines = [f"### {races[0]['title']}", ""] + table(head, rows)
    if len(races) > 1:
        first, last = (statistics.median(races[i]["contestants"][0]["ns"]) for i in (0, -1))
        lines += [f'A {races[0]["unit"]} costs {last / first:.2f} times as much at {races[-1]["load"]} '
                  f'{races[0]["load_unit"]} as at {races[0]["load"]}.', "",
                  f"![{races[0]['title']}](plots/{name}.svg)", ""]
    return lines


def write_plot(path, races):
    loads = [race["load"] for race in races]
    series = []
    for number, one in enumerate(races[0]["contestants"]):
        line = [race["contestants"][number]["ns"] for race in races]
        series.append((one["name"], [(statistics.median(ns), min(ns), max(ns)) for ns in line]))
    with open(path, "w", encoding="utf-8") as file:
        file.write(plot.line_chart(races[0]["title"], races[0]["load_unit"], races[0]["unit"], loads,
                                   series))


def main():
    results, directory = sys.argv[1:3]
    quick = sys.argv[3:] == ["quick"]
    groups, counts, failed, load = {}, [], [], []
    with open(results, encoding="utf-8") as lines:
        for line in map(json.loads, lines):
            if "allocations" in line:
                counts.append(line)
            elif "load" in line and "group" not in line:
                load = line["load"]
            elif "failed" in line:
                failed.append(line["failed"])
            else:
                groups.setdefault(line["group"], []).append(line)
    plots = os.path.join(directory, "plots")
    os.makedirs(plots, exist_ok=True)
    goals = list(goal_rows(groups)) + list(allocation_rows(counts))
    missed = sum("not" in row[-1] for row in goals)
    out = ["# What it costs, side by side with peers", "",
           f"Written by `make bench{' BENCH_QUICK=1' if quick else ''}`"
           + (": short windows, fewer loads, so take the numbers as a first look." if quick else "."),
           "", f"{datetime.date.today()}. {len(goals) - missed} of {len(goals)} goals met."
            + (f" {len(failed)} measurements failed." if failed else ""), ""]
    out += table(["", ""], machine.facts(os.environ.get("BENCH_DIR", "/var/tmp"), load))
    out += ["Everything of one table row ran on the same machine in windows that took turns, nine of "
            "each contestant. A ratio is the median of nine ratios of windows "
            "of the same round, in brackets the least and the greatest. The tree is compiled with "
            "-O3; protobuf, SQLite, LMDB, Redis and absl's hash functions are Debian's builds.", "",
            "## Goals", ""]
    out += table(["What", "Load", "Goal", "Measured", "Spread", "At the smallest load", ""], goals)
    out += [f"**Failed, so not measured:** {race}." for race in failed] + [""] * bool(failed)
    told = set()
    out += ["## Measurements", ""]
    for name, races in groups.items():
        note = name.split("-")[0]
        if note not in told and note in NOTES:
            told.add(note)
            out += [f"*{NOTES[note]}*", ""]
        out += group_section(name, races)
        if len(races) > 1:
            write_plot(os.path.join(plots, name + ".svg"), races)
    with open(os.path.join(directory, "RESULTS.md"), "w", encoding="utf-8") as file:
        file.write("\n".join(out).rstrip() + "\n")
    print(f"{len(goals) - missed} of {len(goals)} goals met; {directory}/RESULTS.md has them all")
    for row in goals:
        if "not" in row[-1]:
            print(f"  not met: {row[0]}, {row[1]}: {row[3]}, goal {row[2]}")


if __name__ == "__main__":
    main()

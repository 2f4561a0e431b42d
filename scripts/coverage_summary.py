#!/usr/bin/env python3
"""Sums an lcov file per folder of src/ and lists the lines never run.

Usage: coverage_summary.py LCOV-FILE SOURCE-ROOT/ UNRUN-LINES-FILE

A line or branch counts once however many binaries hold it: covered when any
of them ran it."""
import collections
import os
import sys


def read_lcov(path, root):
    """file -> ({line: count}, {branch id: taken})"""
    files = collections.defaultdict(lambda: ({}, {}))
    lines = branches = None
    with open(path) as f:
        for row in f:
            row = row.rstrip("\n")
            if row.startswith("SF:"):
                name = row[3:]
                name = name[len(root):] if name.startswith(root) else name
                lines, branches = files[name]
            elif row.startswith("DA:"):
                number, count = row[3:].split(",")[:2]
                lines[int(number)] = max(lines.get(int(number), 0), int(count))
            elif row.startswith("BRDA:"):
                line, block, branch, taken = row[5:].split(",")
                key = (int(line), block, branch)
                hit = taken not in ("-", "0")
                branches[key] = branches.get(key, False) or hit
    return files


def percent(part, whole):
    return "%6.1f%%" % (100.0 * part / whole) if whole else "     -"


def main():
    lcov, root, unrun_path = sys.argv[1:4]
    files = read_lcov(lcov, root)
    folders = collections.defaultdict(lambda: [0, 0, 0, 0])
    unrun = []
    for name in sorted(files):
        if not name.startswith("src/"):
            continue
        lines, branches = files[name]
        folder = os.path.dirname(name)
        totals = folders[folder]
        totals[0] += sum(1 for c in lines.values() if c > 0)
        totals[1] += len(lines)
        totals[2] += sum(1 for hit in branches.values() if hit)
        totals[3] += len(branches)
        missed = sorted(n for n, c in lines.items() if c == 0)
        if missed:
            with open(os.path.join(root, name), errors="replace") as f:
                text = f.read().split("\n")
            for n in missed:
                unrun.append("%s:%d: %s" % (name, n, text[n - 1].strip() if n <= len(text) else ""))
    with open(unrun_path, "w") as f:
        f.write("\n".join(unrun) + ("\n" if unrun else ""))
    print("%-16s %17s %17s" % ("folder", "lines", "branches"))
    whole = [0, 0, 0, 0]
    for folder in sorted(folders):
        t = folders[folder]
        whole = [a + b for a, b in zip(whole, t)]
        print("%-16s %s %4d/%-4d %s %4d/%-4d" % (folder, percent(t[0], t[1]), t[0], t[1],
                                                 percent(t[2], t[3]), t[2], t[3]))
    print("%-16s %s %4d/%-4d %s %4d/%-4d" % ("src (all)", percent(whole[0], whole[1]), whole[0],
                                             whole[1], percent(whole[2], whole[3]), whole[2],
                                             whole[3]))
    print("%d lines never run: %s" % (len(unrun), unrun_path))


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Keeps the README honest: its C example is examples/host_example.c word for
word, every command in a console block runs and prints what the README shows,
and the picture a command draws there is the committed one.

Usage: readme_test.py TCS-BINARY HOST-EXAMPLE-BINARY [--update]
(run from the source directory; --update rewrites the README's outputs and
the pictures from what the programs print now)."""
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

BLOCK = re.compile(r"```(\w+)\n(.*?)```", re.S)


def run_console(block, programs, scratch, pictures):
    """The block with every command's output replaced by what it prints now."""
    out, lines = [], block.splitlines()
    i = 0
    while i < len(lines):
        line = lines[i]
        i += 1
        out.append(line)
        if not line.startswith("$ "):
            continue
        args = shlex.split(line[2:])
        if args[0] not in programs:
            raise SystemExit("README runs an unknown program: " + line)
        run = subprocess.run([programs[args[0]], *args[1:]], cwd=scratch, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60)
        if run.returncode != 0:
            raise SystemExit("README command failed (%d): %s\n%s" % (run.returncode, line, run.stderr))
        out.extend(run.stdout.rstrip("\n").splitlines())
        while i < len(lines) and not lines[i].startswith("$ "):
            i += 1
        if "-o" in args:
            target = args[args.index("-o") + 1]
            if target.endswith(".svg"):
                pictures.append(target)
    return "\n".join(out) + "\n"


def main():
    update = "--update" in sys.argv
    tcs, host = (os.path.abspath(a) for a in sys.argv[1:3])
    programs = {"build/tcs": tcs, "build/host_example": host}
    with open("README.md") as f:
        readme = f.read()
    with open("examples/host_example.c") as f:
        host_source = f.read()
    problems = []
    scratch = tempfile.mkdtemp(prefix="tcs-readme-")
    try:
        shutil.copytree("examples", os.path.join(scratch, "examples"))
        os.mkdir(os.path.join(scratch, "docs"))
        pictures = []

        def check(match):
            kind, body = match.group(1), match.group(2)
            if kind == "c" and body != host_source:
                problems.append("the C example differs from examples/host_example.c")
                return "```c\n" + host_source + "```"
            if kind == "console":
                fresh = run_console(body, programs, scratch, pictures)
                if fresh != body:
                    problems.append("a console block prints something else now:\n" + fresh)
                return "```console\n" + fresh + "```"
            return match.group(0)

        fresh_readme = BLOCK.sub(check, readme)
        if "```c\n" not in readme:
            problems.append("the README shows no C example")
        for picture in pictures:
            with open(os.path.join(scratch, picture)) as f:
                drawn = f.read()
            committed = open(picture).read() if os.path.exists(picture) else None
            if drawn != committed:
                problems.append(picture + " is not what the README's command draws now")
                if update:
                    shutil.copy(os.path.join(scratch, picture), picture)
        if not pictures:
            problems.append("the README draws no picture")
        if update and fresh_readme != readme:
            with open("README.md", "w") as f:
                f.write(fresh_readme)
    finally:
        shutil.rmtree(scratch)
    if problems and not update:
        print("\n".join(problems))
        print("(tests/cli/readme_test.py TCS HOST --update brings the README up to date)")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())

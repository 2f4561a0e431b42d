#!/usr/bin/env python3
"""Keeps the README honest: its C example is examples/host_example.c word for
word, every command in a console block runs and prints what the README shows,
every python block runs and prints the text block that follows it (where
TCS_PYTHONPATH names the built module), and the picture a command draws
there is the committed one.

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
    out = []
    for line in block.splitlines():
        if not line.startswith("$ "):
            continue  # an output line: replaced by what the command before prints
        out.append(line)
        args = shlex.split(line[2:])
        if args[0] not in programs:
            raise SystemExit("README runs an unknown program: " + line)
        run = subprocess.run([programs[args[0]], *args[1:]], cwd=scratch, capture_output=True,
                             text=True, timeout=60)
        if run.returncode != 0:
            raise SystemExit("README command failed (%d): %s\n%s"
                             % (run.returncode, line, run.stderr))
        out.extend(run.stdout.rstrip("\n").splitlines())
        if "-o" in args and args[args.index("-o") + 1].endswith(".svg"):
            pictures.append(args[args.index("-o") + 1])
    return "\n".join(out) + "\n"


def run_python(block, scratch):
    """What a python block prints, run in the scratch folder."""
    env = dict(os.environ, PYTHONPATH=os.path.abspath(os.environ["TCS_PYTHONPATH"]))
    run = subprocess.run([os.environ.get("TCS_PYTHON", sys.executable), "-c", block], cwd=scratch,
                         capture_output=True, text=True, timeout=60, env=env)
    if run.returncode != 0:
        raise SystemExit("README python block failed (%d):\n%s" % (run.returncode, run.stderr))
    return run.stdout


def main():
    update = "--update" in sys.argv
    tcs, host = (os.path.abspath(a) for a in sys.argv[1:3])
    programs = {"build/tcs": tcs, "build/host_example": host}
    readme, host_source = (open(name).read() for name in ("README.md", "examples/host_example.c"))
    problems, pictures = [], []
    scratch = tempfile.mkdtemp(prefix="tcs-readme-")
    try:
        shutil.copytree("examples", os.path.join(scratch, "examples"))
        shutil.copy("examples/evening_news.edl", os.path.join(scratch, "cut.edl"))
        printed = []  # what the last python block printed, for the text block after it
        os.mkdir(os.path.join(scratch, "docs"))

        def check(match):
            kind, body = match.group(1), match.group(2)
            fresh = {"c": lambda: host_source,
                     "console": lambda: run_console(body, programs, scratch, pictures)}
            if kind == "python" and "TCS_PYTHONPATH" in os.environ:
                printed.append(run_python(body, scratch))
                return match.group(0)
            if kind == "text" and printed:
                fresh["text"] = printed.pop
            if kind not in fresh:
                return match.group(0)
            now = fresh[kind]()
            if now != body:
                problems.append("a %s block differs from what it shows now:\n%s" % (kind, now))
            return "```%s\n%s```" % (kind, now)

        fresh_readme = BLOCK.sub(check, readme)
        if "```c\n" not in readme:
            problems.append("the README shows no C example")
        if not pictures:
            problems.append("the README draws no picture")
        for picture in pictures:
            drawn = os.path.join(scratch, picture)
            if not os.path.exists(picture) or open(drawn).read() != open(picture).read():
                problems.append(picture + " is not what the README's command draws now")
                if update:
                    shutil.copy(drawn, picture)
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

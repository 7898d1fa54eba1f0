"""Runs the shell sessions of a document. A block marked `console` holds commands, each behind "$ " and continued
behind "> ", with what they print, standard output and standard error, below. A block marked `fortran` is a file,
named in backquotes at the end of the paragraph above it. The blocks of a document share one folder and one shell."""

import os
import re
import shutil
import subprocess
import tempfile

FENCE = re.compile(r"^```(\w*)\n(.*?)^```$", re.M | re.S)
FILE_NAME = re.compile(r"`([\w./-]+)`:\s*$")
MARK = "=== the next command ==="


def blocks_of(path):
    """The (kind, text, name of the file or None) of each block."""
    with open(path) as f:
        text = f.read()
    blocks = []
    for m in FENCE.finditer(text):
        name = FILE_NAME.search(text[:m.start()])
        blocks.append((m[1], m[2], name and name[1]))
    return blocks


def commands_of(text):
    """The (command, output) pairs of a session."""
    pairs = []
    for line in text.splitlines(keepends=True):
        if line.startswith("$ "):
            pairs.append([line[2:], ""])
        elif line.startswith("> ") and not pairs[-1][1]:
            pairs[-1][0] += line[2:]
        else:
            pairs[-1][1] += line
    return pairs


def run(pairs, folder, commands):
    """Returns what each command prints; `commands` is the folder where zf90 is."""
    script = f"mark() {{ local status=$?; echo '{MARK}'; return $status; }}\n"
    script += "".join(f"mark\n{command}" for command, _ in pairs)
    environment = dict(os.environ, LC_ALL="C", PATH=commands + os.pathsep + os.environ["PATH"])
    done = subprocess.run(["bash", "-c", script], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    return done.stdout.decode("latin-1").split(MARK + "\n")[1:]


def check(paths, root, commands):
    """Runs the sessions of the documents. `root` is where their paths begin, as far as sessions use it: at
    examples/. Prints what differs, and returns the exit status."""
    failures = total = 0
    for path in paths:
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(os.path.join(root, "examples"), os.path.join(folder, "examples"))
            pairs = []
            for kind, text, name in blocks_of(path):
                if kind == "fortran" and name:
                    os.makedirs(os.path.dirname(os.path.join(folder, name)), exist_ok=True)
                    with open(os.path.join(folder, name), "w") as f:
                        f.write(text)
                elif kind == "console":
                    pairs += commands_of(text)
            printed = run(pairs, folder, commands) if pairs else []
        total += len(pairs)
        for i, (command, expected) in enumerate(pairs):
            got = printed[i] if i < len(printed) else "(the shell has ended)\n"
            if got != expected:
                failures += 1
                print(f"{path}:\n$ {command}prints\n{got}and not\n{expected}")
    print(f"{total} commands, {failures} with other output")
    return 1 if failures else 0

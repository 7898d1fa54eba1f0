"""What check_backend and check_package do with an installed zf90, wherever it has been installed."""

import os
import shutil
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(HERE)
LISTING = os.path.join(HERE, "printed", "backend.units")
MAN_PAGES = ["share/man/man1/zf90.1", "share/man/man1/zf90-il.1"]
FILES = [
    "bin/zf90", "bin/zf90-il", "include/zf90il/library/il_file.h", "share/bash-completion/completions/zf90",
    "share/bash-completion/completions/zf90-il", "share/doc/zf90/README.md", "share/doc/zf90/docs/il-format.md",
    "share/doc/zf90/editors/vscode/tasks.json", "share/doc/zf90/examples/backend/units.cpp",
    "share/emacs/site-lisp/zf90.el", "share/vim/vimfiles/compiler/zf90.vim",
]
ENVIRONMENT = {name: value for name, value in os.environ.items() if name != "DESTDIR"}  # the prefix says where


def run(*arguments, cwd=None):
    """Returns what the command prints; ends the check if it fails."""
    done = subprocess.run(arguments, cwd=cwd, env=ENVIRONMENT, capture_output=True, check=False)
    if done.returncode != 0:
        sys.exit(f"{' '.join(arguments)}: status {done.returncode}\n{(done.stdout + done.stderr).decode()}")
    return done.stdout.decode("latin-1")


def check_files(prefix, others):
    """Ends the check if one of FILES and `others` is not below `prefix`."""
    missing = [name for name in FILES + others if not os.path.exists(os.path.join(prefix, name))]
    if missing:
        sys.exit("not installed: " + " ".join(missing))


def list_units(prefix, folder, generator, compiler, flags):
    """Builds the example of a back end against the library installed below `prefix`, in `folder`, and returns
    what it lists of two sources that the installed command compiles."""
    example = os.path.join(folder, "example")
    source = os.path.join(ROOT, "examples", "backend")
    run("cmake", "-S", source, "-B", example, "-G", generator, "-DCMAKE_PREFIX_PATH=" + prefix,
        "-DCMAKE_CXX_COMPILER=" + compiler, "-DCMAKE_CXX_FLAGS=" + flags)
    run("cmake", "--build", example)
    listing = ""
    for name in ("tanks.f", "heat.f90"):
        shutil.copy(os.path.join(ROOT, "examples", name), folder)
        form = ["-F"] if name.endswith(".f") else []
        run(os.path.join(prefix, "bin", "zf90"), "-w", *form, name, cwd=folder)
        listing += run(os.path.join(example, "units"), name.split(".")[0] + ".cil", cwd=folder)
    return listing


def check_listing(listing):
    with open(LISTING, encoding="latin-1") as f:
        if f.read() != listing:
            sys.exit(listing + "\nis not the listing of printed/backend.units")

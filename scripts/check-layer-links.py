#!/usr/bin/env python3
"""Checks the runtime's layers at the link level.

The include views make an include of an undeclared folder fail to compile,
but a call through a public header of include/kelp (declared for compiled
code) would still reach any folder, and a quoted include that climbs out of
its folder ("../windows/window.h") is found beside the including file
before any view is searched.  This reads the folders and their
declared dependencies from the build tree (runtime/layers.txt, written at
configure time), lists what each folder's object files define and use
(nm), and fails when a folder uses a function that only a folder outside
its declared closure defines, or when a file of the runtime, the drill or
the programs includes by a path that climbs ("..") or starts at the root.

    check-layer-links.py <build dir>
"""
import pathlib
import re
import subprocess
import sys

INCLUDE = re.compile(r'\s*#\s*include\s*"([^"]+)"')


def climbing_includes(source):
    """Quoted includes that escape the include views: by ".." or from "/"."""
    found = []
    for top in ("runtime", "application", "programs"):
        for path in sorted((source / top).rglob("*")):
            if path.suffix not in (".c", ".cpp", ".h", ".inc"):
                continue
            for number, line in enumerate(path.read_text(errors="replace").splitlines(), 1):
                match = INCLUDE.match(line)
                if match and (match.group(1).startswith("/") or
                              ".." in pathlib.PurePosixPath(match.group(1)).parts):
                    found.append(f"{path.relative_to(source)}:{number} includes "
                                 f"\"{match.group(1)}\" past the include views")
    return found


def symbols(objects, undefined):
    found = set()
    for obj in objects:
        args = ["nm", "-C", "--undefined-only" if undefined else "--defined-only", str(obj)]
        for line in subprocess.run(args, capture_output=True, text=True, check=True).stdout.splitlines():
            parts = line.split(None, 2) if not undefined else line.split(None, 1)
            if undefined:
                found.add(parts[-1].strip())
            elif len(parts) == 3 and parts[1] in "TDBRVW":
                found.add(parts[2])
    return found


def main():
    build = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build")
    layers = {}
    order = []
    for line in (build / "runtime" / "layers.txt").read_text().splitlines():
        name, *deps = line.split()
        layers[name] = deps
        order.append(name)

    def closure(name):
        seen, pending = set(), [name]
        while pending:
            folder = pending.pop()
            if folder not in seen:
                seen.add(folder)
                pending += layers[folder]
        return seen

    defined, used = {}, {}
    for name in order:
        objects = sorted((build / "runtime" / "CMakeFiles" / f"kelp_{name}.dir").rglob("*.o"))
        defined[name] = symbols(objects, False)
        used[name] = symbols(objects, True)
    owner = {}
    for name in order:
        for symbol in defined[name]:
            owner.setdefault(symbol, name)

    faults = 0
    for name in order:
        below = closure(name)
        for symbol in sorted(used[name]):
            if symbol in owner and not any(symbol in defined[f] for f in below):
                print(f"runtime/{name} uses {symbol}, defined in runtime/{owner[symbol]}, "
                      f"which it does not declare")
                faults += 1
    for fault in climbing_includes(pathlib.Path(__file__).resolve().parent.parent):
        print(fault)
        faults += 1
    print(f"{len(order)} folders, {faults} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

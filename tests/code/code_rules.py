#!/usr/bin/env python3
"""House rules that a machine can check: layers, counting by hand, formatting, size of files.

Prints one line per finding and exits with 1 if there is any.
"""
import pathlib
import re
import shutil
import subprocess
import sys

root = pathlib.Path(sys.argv[1])

# Folders from low to high; a file includes only what stands before it or beside it.
LAYERS = [
    ["cor"],
    ["util", "xml"],
    ["automation"],
    ["config", "store/core"],
    ["elements", "store/collections"],
    ["store", "browse"],
    ["query"],
    ["transport"],
    ["results", "browser"],
    ["queryform"],
    ["channels", "widgets"],
    ["exports"],
]
# The engine may use these of src/, and nothing else.
ENGINE_MAY_USE = ("cor/", "util/", "xml/", "config/", "store/core/I", "store/core/E", "store/core/Seam")
# What the seam side and the library side share may not be included the other way round.
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)
SMALL_ENOUGH = 700

findings = []


# The one type that the engine throws is known from the bottom up.
EVERYWHERE = ("store/core/Exception.h",)


def layer_of(path):
    if path in EVERYWHERE:
        return 0
    best = None
    for level, folders in enumerate(LAYERS):
        for folder in folders:
            if path.startswith(folder + "/") and (best is None or len(folder) > best[1]):
                best = (level, len(folder))
    return None if best is None else best[0]


def files(folder, *patterns):
    for pattern in patterns:
        yield from sorted((root / folder).rglob(pattern))


def check_source(path):
    relative = path.relative_to(root).as_posix()
    text = path.read_text(encoding="utf-8")
    included = INCLUDE.findall(text)
    if relative.startswith("src/"):
        own = layer_of(relative[4:])
        for name in included:
            if name.startswith("core/"):
                findings.append(f"{relative}: includes {name}, which lies behind the seam")
            other = layer_of(name)
            if own is not None and other is not None and other > own:
                findings.append(f"{relative}: includes {name} of a higher layer")
        if re.search(r"#\s*include\s*<Q[A-Z]", text):
            findings.append(f"{relative}: logic names no widget toolkit")
    if relative.startswith("core/"):
        for name in included:
            if layer_of(name) is not None and not name.startswith(ENGINE_MAY_USE):
                findings.append(f"{relative}: the engine may not use {name}")
    if relative.startswith("include/"):
        for name in included:
            if not name.startswith("storefabric/"):
                findings.append(f"{relative}: a public header includes the private {name}")
    counted_by_hand = re.search(r"(->|\.)(AddRef|Release)\(\)", text)
    if counted_by_hand and not re.search(r"storefabric/Ref\.h$|cor/Counted\.h$", relative):
        line = text.count("\n", 0, counted_by_hand.start()) + 1
        allowed = relative.startswith("core/objects/ModelObjects")  # counts on its owner
        if not allowed and not relative.startswith("tests/"):
            findings.append(f"{relative}:{line}: references are held in Ref, not counted by hand")
    lines = text.count("\n")
    if lines > SMALL_ENOUGH:
        findings.append(f"{relative}: {lines} lines, two things in one room?")


sources = [p for folder in ("include", "src", "core", "companion", "apps", "python")
           for p in files(folder, "*.h", "*.cpp")]
for source in sources:
    check_source(source)

formatter = shutil.which("clang-format-14") or shutil.which("clang-format")
if formatter is None:
    findings.append("clang-format isn't installed")
else:
    everything = sources + [p for folder in ("tests", "bench", "fuzz", "examples")
                            for p in files(folder, "*.h", "*.cpp")]
    done = subprocess.run([formatter, "--dry-run", "--Werror", *map(str, everything)],
                          capture_output=True, text=True)
    for line in done.stderr.splitlines():
        if "error:" in line:
            findings.append(line.replace(str(root) + "/", "") + " (run clang-format -i)")

print("\n".join(findings) or f"{len(sources)} files keep the house rules")
sys.exit(1 if findings else 0)

#!/bin/sh
# The layers call downward only: a subsystem may include the headers of its
# own layer and the ones below, never those above. The exported headers
# <kodbc/...> count as the layer that implements them, so an upward call
# cannot hide behind the public interface. No header may reach itself
# through its includes (each cycle is named).
#   include_layers.sh SRC_DIR
set -u
exec python3 - "$1" <<'PYTHON'
import os, re, sys

src = os.path.abspath(sys.argv[1])
public = os.path.join(os.path.dirname(src), "include")

RANK = {"internal": 0, "frame": 1, "sqltext": 2, "catalog": 3, "select": 4,
        "wizards": 5, "tabledesign": 5, "transfer": 5, "tools": 5}
# Each exported header by the layer whose code implements it; kodbc.h
# includes them all.
PUBLIC = {
    "kodbc_types.h": "internal",
    "kodbc_frame.h": "frame", "kodbc_messages.h": "frame", "kodbc_connect.h": "frame",
    "kodbc_diag.h": "frame", "kodbc_exec.h": "frame",
    "kodbc_sqltext.h": "sqltext",
    "kodbc_catalog.h": "catalog", "kodbc_systable.h": "catalog", "kodbc_tableops.h": "catalog",
    "kodbc_select.h": "select", "kodbc_seldesc.h": "select", "kodbc_selfact.h": "select",
    "kodbc_views.h": "select",
    "kodbc_wizards.h": "wizards", "kodbc_tabledesign.h": "tabledesign",
    "kodbc_transfer.h": "transfer", "kodbc_tools.h": "tools", "kodbc.h": "tools",
}
# Upward includes that stay, each with the reason.
KNOWN = {
    # The record count rewrites the SELECT through the select layer's scanner,
    # which would have to move down to sqltext.
    ("catalog/table_ops_rowset.cpp", "<kodbc/kodbc_select.h>"),
    # The query designer's schema button opens the tools' schema picker.
    ("select/selfact_dialog.cpp", "<kodbc/kodbc_tools.h>"),
}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)

def includes(path):
    with open(path, encoding="utf-8", errors="replace") as f:
        return INCLUDE.findall(f.read())

def resolve(path, kind, name):
    """The file an include names inside src/ or include/, or None."""
    if kind == '"':
        for base in (os.path.dirname(path), src):
            candidate = os.path.normpath(os.path.join(base, name))
            if os.path.isfile(candidate):
                return candidate
    elif name.startswith("kodbc/"):
        candidate = os.path.join(public, name)
        if os.path.isfile(candidate):
            return candidate
    return None

def layer(target):
    if target.startswith(public + os.sep):
        return PUBLIC.get(os.path.basename(target))
    rel = os.path.relpath(target, src).split(os.sep)
    return rel[0] if len(rel) > 1 and rel[0] in RANK else None

files = []
for folder, _, names in os.walk(src):
    files += [os.path.join(folder, n) for n in sorted(names) if n.endswith((".cpp", ".h"))]
files += [os.path.join(public, n) for n in sorted(os.listdir(public)) if n.endswith(".h")]

graph, failures = {}, 0
for path in files:
    graph[path] = []
    for kind, name in includes(path):
        target = resolve(path, kind, name)
        if target:
            graph[path].append(target)
    if path.startswith(public + os.sep):
        continue
    mine = layer(path)
    if mine is None:
        continue
    rel = os.path.relpath(path, src)
    for target in graph[path]:
        theirs = layer(target)
        if theirs is None or RANK[theirs] <= RANK[mine]:
            continue
        shown = os.path.relpath(target, src) if target.startswith(src) else "<" + os.path.relpath(target, public) + ">"
        if (rel, shown) in KNOWN:
            continue
        print(f"FAIL: {rel} includes {shown}, of {theirs}/, a layer above {mine}/")
        failures += 1

# Include cycles: a depth-first walk that reports each back edge's loop once.
state, seen_cycles = {}, set()
def walk(node, trail):
    state[node] = 1
    trail.append(node)
    for nxt in graph.get(node, []):
        if state.get(nxt) == 1:
            cycle = trail[trail.index(nxt):]
            key = frozenset(cycle)
            if key not in seen_cycles:
                seen_cycles.add(key)
                names = [os.path.relpath(n, os.path.dirname(src)) for n in cycle + [nxt]]
                print("FAIL: include cycle: " + " -> ".join(names))
        elif nxt not in state:
            walk(nxt, trail)
    trail.pop()
    state[node] = 2
sys.setrecursionlimit(10000)
for path in files:
    if path not in state:
        walk(path, [])
failures += len(seen_cycles)

if failures == 0:
    print("include layers: all downward, no cycle")
sys.exit(1 if failures else 0)
PYTHON

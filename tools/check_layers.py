"""Checks the includes of src/: each folder may include itself and what lies below it, no portable file includes a
Windows header or a Windows-only file, and no files include each other in a circle. No source anywhere includes what
cannot be relied on in the toolchain."""
import os
import pathlib
import re
import sys

# Each layer with the layers that it may include, besides itself.
LAYERS = {
    "platform": [],
    "app": ["platform"],
    "model": ["app", "platform"],
    "software": ["model", "app", "platform"],
    "index": ["model", "app", "platform"],
    "views": ["software", "index", "model", "app", "platform"],
    "desktop": ["views", "software", "index", "model", "app", "platform"],
    "app/roof": ["desktop", "views", "software", "index", "model", "app", "platform"],
}
WINDOWS_HEADER = re.compile(r"^(windows|windowsx|winnt|shl|shobj|shellapi|commctrl|objbase|d3d|dxgi|d2d1|dwrite|wincodec|"
                            r"commoncontrols|dbghelp|shellscaling|knownfolders|winhttp|wincrypt|combaseapi|unknwn|ole2)", re.I)
# libstdc++ 12 waits on atomics without a futex by a check outside of the lock: a wake-up can be lost, and the thread
# sleeps for ever. A mutex and a condition variable do the same work.
UNRELIABLE = {"latch", "barrier", "semaphore"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def layer(path):
    return "app/roof" if path.startswith("app/roof/") else path.split("/")[0]


def main(root):
    faults = []
    graph = {}
    for folder, _, names in os.walk(root):
        for name in names:
            if not name.endswith((".h", ".cpp")):
                continue
            path = os.path.relpath(os.path.join(folder, name), root)
            portable = not re.search(r"_(win|posix)\.(h|cpp)$", name)
            with open(os.path.join(root, path), encoding="utf-8") as file:
                includes = INCLUDE.findall(file.read())
            graph[path] = [target for kind, target in includes if kind == '"']
            for kind, target in includes:
                if kind == "<":
                    if portable and WINDOWS_HEADER.match(target):
                        faults.append(f"{path}: a portable file includes <{target}>")
                    continue
                if not os.path.exists(os.path.join(root, target)):
                    continue  # a header of resources/
                if layer(path) not in LAYERS or (layer(target) != layer(path) and layer(target) not in LAYERS[layer(path)]):
                    faults.append(f"{path}: includes {target}, which lies above it")
                if portable and re.search(r"_win\.h$", target):
                    faults.append(f"{path}: a portable file includes {target}")

    done, path_now = set(), []

    def visit(path):
        if path in path_now:
            faults.append("circle: " + " -> ".join(path_now[path_now.index(path):] + [path]))
            return
        if path in done or path not in graph:
            return
        path_now.append(path)
        for target in graph[path]:
            visit(target)
        path_now.pop()
        done.add(path)

    for path in sorted(graph):
        visit(path)
    for folder in (root, "tests", "tools", "bench", "fuzz"):
        for path in sorted(pathlib.Path(folder).rglob("*.[ch]*")):
            for kind, target in INCLUDE.findall(path.read_text("utf-8", "replace")):
                if kind == "<" and target in UNRELIABLE:
                    faults.append(f"{path}: includes <{target}>, whose waits may never end")
    print("\n".join(faults) if faults else f"layers: {len(graph)} files, no fault", file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))

"""Prints the results of Google Benchmark as a table: name, value, unit, bar, ok or short.

A benchmark names its bar with a counter `bar`, in the unit of its time; a counter `allocations` has the bar
that a counter `allocations_bar` names, or 0. Any other counter `x_bar` is the bar of a counter `x`: of a ratio to a peer
in the same run. Rows without a bar, and counters `x_peer`, stand for comparison alone.

    bench_table.py RESULTS.json...
"""
import json
import sys


def rows(results):
    for item in results["benchmarks"]:
        if item.get("aggregate_name") != "median":
            continue
        name = item["run_name"]
        yield name, item["real_time"], item["time_unit"], item.get("bar")
        if "allocations" in item:
            yield name + ":allocations", item["allocations"], "per frame", item.get("allocations_bar", 0)
        for key, bar in item.items():
            if key.endswith("_peer"):
                yield f"{name}:{key[:-5]}", bar, "", None
            if key.endswith("_bar") and key != "allocations_bar":
                yield f"{name}:{key[:-4]}", item[key[:-4]], "", bar


def main(paths):
    table = []
    for path in paths:
        with open(path, encoding="utf-8") as file:
            table += rows(json.load(file))
    if not table:
        print("bench: no benchmark ran", file=sys.stderr)
        return 1
    short = 0
    width = max(len(row[0]) for row in table)
    for name, value, unit, bar in table:
        verdict = "-" if bar is None else "ok" if value <= bar else "short"
        short += verdict == "short"
        shown_bar = "" if bar is None else f"{bar:g}"
        print(f"{name:<{width}}  {value:>12.4f}  {unit:<9}  {shown_bar:>8}  {verdict}")
    return 1 if short else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

#!/usr/bin/env python3
"""compare.py LIST_INDEX FOLDER: compares the index of each image in the folder with what Sleuthkit and 7-Zip find in it.
Prints a table, and a line a comparison as GoogleTest does. The exit code is 0 only if nothing differs without a reason.

Sleuthkit, read through its Python module, sees every record with its names, times to the 100 ns, attributes and sizes, also
on a volume whose table lies in pieces; it refuses a file with a hole larger than the volume. 7-Zip sees the same of plain and
records4k, that file too, but does not open worn, where the table's own description needs further records, and tells no path
of some hundred levels. Neither shows what the platform makes of a volume: its order, its choice of a name, its journal."""
import pathlib
import sys
import time

import comparison
import readers

# How many files there are at least, so that an image that was not filled is no success.
IMAGES = {"plain": 20_000, "records4k": 2_000, "worn": 6_000}
# Each difference that may occur has to, somewhere: a rule for nothing would hide something.
REASONS = [comparison.METADATA, comparison.PRUNED, comparison.LINK, comparison.FOLDER_BIT, comparison.HIGH_BITS,
           comparison.DEEP, comparison.OWN_FOLDER, comparison.NO_PATH, comparison.UNREADABLE]


def report(name, faults, began):
    milliseconds = round((time.monotonic() - began) * 1000)
    print(f"[  {'FAILED  ' if faults else '     OK '}] {name} ({milliseconds} ms)", flush=True)
    for fault in faults[:20]:
        print(f"    {fault[:300]}")
    return not faults


def table(name, listing, result):
    print(f"{name}: {len(listing.files)} files and folders, {result.same} the same in name, path, size, time and "
          f"attributes, {len(result.faults)} differ without a reason")
    for reason, count in sorted((+result.allowed).items()):
        print(f"    {count:7} {reason}")
    for what, count in sorted(listing.further.items()):
        print(f"    {count:7} {what}, which are no files")


def compare_image(program, path, name, at_least, seen):
    index = readers.index(program, path)
    good, refused, known = True, set(), set()
    for reader, read in (("Sleuthkit", readers.sleuthkit), ("7-Zip", readers.seven_zip)):
        began = time.monotonic()
        listing = read(path)
        if name == "worn" and reader == "7-Zip" and listing.unreadable:
            print(f"{name}: 7-Zip does not open it")
            continue
        result = comparison.Comparison(index, listing)
        seen.update(result.allowed)
        table(f"{name} against {reader}", listing, result)
        few = [f"only {result.same} files are the same, of at least {at_least}"] if result.same < at_least else []
        good &= report(f"{name} against {reader}", result.faults + few, began)
        refused.update(listing.unreadable)
        known.update(listing.files)
    unseen = [f"{number} of {name}" for number in refused - known]
    return good & report(f"some reader sees each file of {name}", unseen, time.monotonic())


def main(program, folder):
    good, seen = True, set()
    for name, at_least in IMAGES.items():
        good &= compare_image(program, str(pathlib.Path(folder) / f"{name}.img"), name, at_least, seen)
    good &= report("every reason to differ occurs", [reason for reason in REASONS if reason not in seen], time.monotonic())
    return 0 if good else 1


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))

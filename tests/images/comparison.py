"""Compares what the index holds after a scan with what another reader found, file by file. A difference is either one of
those named here, each with its reason, which are counted, or a fault."""
import collections

from readers import DIRECTORY, FIRST_USER_NUMBER

# What may differ, and why.
METADATA = "NTFS's own records, below 24, are not indexed"
PRUNED = "names with a dollar sign in the root and in NTFS's own folders are taken out, and those below them"
LINK = "a further name of a file is not indexed: one record a file"
FOLDER_BIT = "the record does not say that it is a folder: attribute 0x10 is the reader's"
HIGH_BITS = "the reader tells no attribute above the low 16 bits"
DEEP = "a path is the lowest 256 levels"
OWN_FOLDER = "NTFS's own folders are not indexed, and so not in a path"
NO_PATH = "the reader does not tell the path: all else is compared"
UNREADABLE = "the reader refuses the record: see the other one"
LEVELS = 256


def pruned(listing):
    """The numbers that the index has to have taken out, from the reader's own names."""
    paths = {path: number for number, file in listing.files.items() for path in file.paths}
    result = set()
    for path in sorted(paths, key=lambda text: text.count("\\")):
        above, _, name = path.rpartition("\\")
        parent = paths.get(above, 5 if not above else None)
        if name.startswith("$") and parent is not None and (parent < FIRST_USER_NUMBER or parent in result):
            result.add(paths[path])
    return result


def own_folders(listing):
    return {path + "\\" for number, file in listing.files.items() for path in file.paths
            if number < FIRST_USER_NUMBER and file.folder}


class Comparison:
    def __init__(self, index, reader):
        self.index = index
        self.reader = reader
        self.allowed = collections.Counter()
        self.faults = []
        self.same = 0
        self.gone = pruned(reader)
        self.own = own_folders(reader)
        for number, file in reader.files.items():
            self.compare(number, file)
        for number, file in index.files.items():
            if number in reader.unreadable:
                self.allowed[UNREADABLE] += 1
            elif number not in reader.files:
                what = "of no file" if number in reader.unused else "that the reader does not know"
                self.faults.append(f"{number}: a record {what}, {file.paths[0]!r}")

    def compare(self, number, file):
        ours = self.index.files.get(number)
        if number < FIRST_USER_NUMBER:
            self.allowed[METADATA] += 1
            if ours:
                self.faults.append(f"{number}: one of NTFS's own is indexed")
            return
        if not ours:
            self.faults.append(f"{number}: {file.paths} is not indexed")
            return
        if ours.pruned != (number in self.gone):
            self.faults.append(f"{number}: {file.paths} is {'taken out' if ours.pruned else 'still there'}")
        self.allowed[PRUNED] += ours.pruned
        before = len(self.faults)
        self.compare_paths(number, ours, file)
        self.compare_values(number, ours, file)
        self.same += len(self.faults) == before

    def compare_paths(self, number, ours, file):
        if not file.paths:
            self.allowed[NO_PATH] += 1
            return
        wanted = [self.indexed(path) for path in file.paths]
        self.allowed[LINK] += len(wanted) - 1
        if ours.paths[0] not in wanted:
            self.faults.append(f"{number}: path {ours.paths[0]!r}, not one of {wanted!r}")

    def indexed(self, path):
        """The path as the index should have it."""
        for folder in self.own:
            if path.startswith(folder):
                self.allowed[OWN_FOLDER] += 1
                path = path[len(folder) - 1:]
        names = path.split("\\")[1:]
        self.allowed[DEEP] += len(names) > LEVELS
        return "\\" + "\\".join(names[-LEVELS:])

    def compare_values(self, number, ours, file):
        def same(what, mine, theirs):
            if mine != theirs:
                self.faults.append(f"{number}: {what} {mine}, not {theirs}, of {ours.paths[0]!r}")

        same("kind", ours.folder, file.folder)
        same("time", ours.modified, file.modified)
        same("size", ours.size, file.size)
        theirs = file.attributes
        if not self.reader.high_bits and ours.attributes > 0xFFFF:
            self.allowed[HIGH_BITS] += 1
            theirs |= ours.attributes & ~0xFFFF
        if file.folder and theirs & DIRECTORY and not ours.attributes & DIRECTORY:
            self.allowed[FOLDER_BIT] += 1
            theirs &= ~DIRECTORY
        same("attributes", hex(ours.attributes), hex(theirs))

"""What others than the index find in an NTFS image. Each reader answers a Listing."""
import calendar
import collections
import dataclasses
import os
import re
import struct
import subprocess
import time

FIRST_USER_NUMBER = 24
ROOT = 5
MASK = 0xFFFFFFFFFFFF
DIRECTORY = 0x10
# 7-Zip writes an attribute as the letter in the place of its bit.
LETTERS = "RHS8DAdNTsLCOIEV"
# From 1601 to 1970, in seconds.
EPOCH = 11_644_473_600


@dataclasses.dataclass
class File:
    number: int
    paths: list  # of every name that is not there for DOS alone, without a drive, with "\\"; empty when not told
    folder: bool
    size: int
    modified: int  # FILETIME units
    attributes: int
    pruned: bool = False  # only the index has such


@dataclasses.dataclass
class Listing:
    files: dict = dataclasses.field(default_factory=dict)  # by number
    unused: set = dataclasses.field(default_factory=set)  # numbers of records that hold no file
    unreadable: dict = dataclasses.field(default_factory=dict)  # number: why the reader gave up
    high_bits: bool = True  # whether it tells attributes above the low 16
    further: dict = dataclasses.field(default_factory=dict)  # what it told that no file is: how often


def index(program, image):
    """What the index holds after a scan, by tests/images/list_index.cpp."""
    listing = Listing()
    run = subprocess.run([program, image], capture_output=True, check=True, text=True)
    for line in run.stdout.splitlines():
        number, _, state, kind, size, modified, attributes, path = line.split("\t")
        path = bytes.fromhex(path).decode("utf-16-be", "surrogatepass")
        assert int(number) not in listing.files, f"two records of the number {number}"
        assert path.startswith("C:\\"), path
        listing.files[int(number)] = File(int(number), [path[2:]], kind == "folder", int(size), int(modified),
                                          int(attributes), state == "pruned")
    return listing


def sleuthkit(image):
    """Sleuthkit finds the records, their attributes and where the parts of an attribute lie. Names and times come from the
    attributes' own bytes, as Sleuthkit itself tells times in seconds and replaces what is no valid text."""
    import pytsk3
    file_system = pytsk3.FS_Info(pytsk3.Img_Info(image))
    listing = Listing(further=collections.Counter())
    names = {}
    table = file_system.open_meta(0)
    record_size = table.info.meta.size // file_system.info.last_inum
    for number in range(file_system.info.first_inum, file_system.info.last_inum + 1):
        try:
            record = file_system.open_meta(number)
        except OSError as error:
            listing.unreadable[number] = str(error)
            continue
        # The last number is a folder that Sleuthkit makes up for files without one.
        if not int(record.info.meta.flags) & int(pytsk3.TSK_FS_META_FLAG_ALLOC) or number == file_system.info.last_inum:
            listing.unused.add(number)
            continue
        # It takes a further record of a file for a file: the table, as it reads it, tells whose record it is.
        base, = struct.unpack("<Q", table.read_random(number * record_size + 32, 8))
        if base & MASK:
            listing.further["further records"] += 1
            read_record(record, base & MASK, names, Listing(further=collections.Counter()))
            listing.unused.add(number)
        else:
            read_record(record, number, names, listing)
    for number, file in listing.files.items():
        file.paths = [path for parent, name in names.get(number, []) for path in [path_of(parent, name, names)] if path]
    return listing


def read_record(record, number, names, listing):
    folder = str(record.info.meta.type) == "TSK_FS_META_TYPE_DIR"
    file = File(number, [], folder, 0, 0, 0)
    for attribute in record:
        kind = int(attribute.info.type)
        if kind == 0x80:
            if attribute.info.name:
                listing.further["named streams"] += 1
            else:
                file.size = attribute.info.size
        if kind not in (0x10, 0x30):
            continue
        value = record.read_random(0, attribute.info.size, kind, attribute.info.id)
        if kind == 0x10:
            file.modified, = struct.unpack_from("<Q", value, 8)
            file.attributes, = struct.unpack_from("<I", value, 32)
        elif value[65] == 2:
            listing.further["names for DOS"] += 1
        else:
            parent, = struct.unpack_from("<Q", value, 0)
            name = value[66:66 + 2 * value[64]].decode("utf-16-le", "surrogatepass")
            # One that stands in a further record is told of twice.
            if (parent & MASK, name) not in names.setdefault(number, []):
                names[number].append((parent & MASK, name))
    listing.files[number] = file


def path_of(parent, name, names):
    """The empty path for what hangs on no root."""
    path = "\\" + name
    while parent != ROOT:
        if parent not in names:
            return ""
        parent, name = names[parent][0]
        path = "\\" + name + path
    return path


def seven_zip(image):
    """7-Zip tells everything in its own words; a path of more than some hundred levels it does not tell."""
    environment = dict(os.environ, TZ="UTC", LC_ALL="C.UTF-8")
    run = subprocess.run(["7z", "l", "-slt", "-tntfs", image], capture_output=True, env=environment)
    listing = Listing(further=collections.Counter(), high_bits=False)
    if run.returncode != 0:
        listing.unreadable[0] = "7-Zip does not open the image"
        return listing
    text = run.stdout.decode("utf-8", "surrogatepass").split("\n----------\n", 1)[1]
    for block in text.split("\n\n"):
        fields = dict(line.split(" = ", 1) for line in block.splitlines() if " = " in line)
        if "Path" in fields:
            read_block(fields, listing)
    return listing


def read_block(fields, listing):
    if fields["Alternate Stream"] == "+":
        listing.further["named streams"] += 1
        return
    number = int(fields["iNode"])
    if fields["Deleted"] == "+":
        listing.unused.add(number)
        return
    listing.further["names for DOS"] += fields.get("Short Name", "") != ""
    attributes = sum(1 << LETTERS.index(letter) for letter in fields["Attributes"])
    file = File(number, [], fields["Folder"] == "+", int(fields["Size"] or 0), filetime(fields["Modified"]), attributes)
    path = "\\" + re.sub(r"^\[SYSTEM\]/", "", fields["Path"]).replace("/", "\\")
    known = listing.files.setdefault(number, file)
    if fields["Path"] == "[TOO-LONG]":
        return
    known.paths.append(path)
    # A file under several names is told of as often.
    file.paths = known.paths
    assert file == known, f"7-Zip contradicts itself about {path}"


def filetime(text):
    """7-Zip tells no time for zero."""
    if not text:
        return 0
    seconds, _, fraction = text.partition(".")
    unix = calendar.timegm(time.strptime(seconds, "%Y-%m-%d %H:%M:%S"))
    return (unix + EPOCH) * 10_000_000 + int(fraction.ljust(7, "0"))

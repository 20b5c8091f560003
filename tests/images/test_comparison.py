"""That the comparison of an index with another reader finds what differs, and lets pass only what it names."""
import unittest

import comparison
from comparison import Comparison
from readers import File, Listing, filetime


def listing(*files, **more):
    return Listing(files={file.number: file for file in files}, **more)


def file(number=30, path="\\folder\\a.txt", **more):
    values = {"paths": [path], "folder": False, "size": 5, "modified": 77, "attributes": 0x20, **more}
    return File(number, **values)


def compared(ours, theirs):
    result = Comparison(ours, theirs)
    return len(result.faults), dict(+result.allowed)


class ComparisonTest(unittest.TestCase):
    def test_what_is_the_same_is_no_fault(self):
        self.assertEqual(compared(listing(file()), listing(file())), (0, {}))

    def test_every_field_counts(self):
        for other in ({"size": 6}, {"modified": 78}, {"attributes": 0x21}, {"path": "\\folder\\b.txt"}, {"folder": True}):
            with self.subTest(other):
                self.assertEqual(compared(listing(file(**other)), listing(file()))[0], 1)

    def test_a_file_too_few_and_one_too_many_are_faults(self):
        self.assertEqual(compared(listing(), listing(file()))[0], 1)
        self.assertEqual(compared(listing(file()), listing())[0], 1)
        self.assertEqual(compared(listing(file()), listing(unused={30}))[0], 1)

    def test_a_further_name_is_let_pass_and_a_wrong_one_is_not(self):
        names = file(paths=["\\a", "\\b"])
        self.assertEqual(compared(listing(file(path="\\b")), listing(names)), (0, {comparison.LINK: 1}))
        self.assertEqual(compared(listing(file(path="\\c")), listing(names))[0], 1)

    def test_ntfs_own_records_must_not_be_indexed(self):
        own = file(9, "\\$Secure")
        self.assertEqual(compared(listing(), listing(own)), (0, {comparison.METADATA: 1}))
        self.assertEqual(compared(listing(own), listing(own))[0], 1)

    def test_what_begins_with_a_dollar_sign_must_be_taken_out_where_it_counts(self):
        bin_folder = {"folder": True, "size": 0, "attributes": 0x6}
        theirs = listing(file(40, "\\$Bin", **bin_folder), file(41, "\\$Bin\\$x"), file(42, "\\$Bin\\x"), file(43, "\\f\\$x"))

        def ours(*out):
            return listing(*(file(number, path, pruned=number in out, **(bin_folder if number == 40 else {}))
                             for number, path in ((40, "\\$Bin"), (41, "\\$Bin\\$x"), (42, "\\$Bin\\x"), (43, "\\f\\$x"))))
        self.assertEqual(compared(ours(40, 41), theirs), (0, {comparison.PRUNED: 2}))
        for out in ((40,), (41,), (40, 41, 42), (40, 41, 43)):
            with self.subTest(out):
                self.assertEqual(compared(ours(*out), theirs)[0], 1)

    def test_only_a_folder_may_lack_its_bit(self):
        folder = {"folder": True, "size": 0}
        ours, theirs = file(attributes=0x2, **folder), file(attributes=0x12, **folder)
        self.assertEqual(compared(listing(ours), listing(theirs)), (0, {comparison.FOLDER_BIT: 1}))
        self.assertEqual(compared(listing(file(attributes=0x2)), listing(file(attributes=0x12)))[0], 1)

    def test_high_bits_are_let_pass_only_for_a_reader_without_them(self):
        ours = listing(file(attributes=0x10000020))
        self.assertEqual(compared(ours, listing(file(), high_bits=False)), (0, {comparison.HIGH_BITS: 1}))
        self.assertEqual(compared(ours, listing(file()))[0], 1)

    def test_a_path_has_256_levels_and_none_of_ntfs_own_folders(self):
        deep = "".join(f"\\d{level}" for level in range(300))
        short = "".join(f"\\d{level}" for level in range(44, 300))
        self.assertEqual(compared(listing(file(path=short)), listing(file(path=deep))), (0, {comparison.DEEP: 1}))
        self.assertEqual(compared(listing(file(path=short[4:])), listing(file(path=deep)))[0], 1)
        extend = file(11, "\\$Extend", folder=True)
        result = compared(listing(file(path="\\x")), listing(extend, file(path="\\$Extend\\x")))
        self.assertEqual(result, (0, {comparison.METADATA: 1, comparison.OWN_FOLDER: 1}))

    def test_what_a_reader_refuses_is_counted(self):
        self.assertEqual(compared(listing(file()), listing(unreadable={30: "no"})), (0, {comparison.UNREADABLE: 1}))
        self.assertEqual(compared(listing(file()), listing(file(paths=[]))), (0, {comparison.NO_PATH: 1}))

    def test_a_time_is_read_to_its_last_digit(self):
        self.assertEqual(filetime("1970-01-01 00:00:01.0000002"), 116_444_736_010_000_002)
        self.assertEqual(filetime(""), 0)


if __name__ == "__main__":
    unittest.main()

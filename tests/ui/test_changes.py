"""Changes in the folder, by another process, while the program runs and nobody touches the mouse."""
import os
import struct
import time

from case import WORDS, DesktopCase
from stage import wait_for

WEEK = 1


def cache_records(path):
    """The entries of a desktop.cache: bytes of the item id list, time stamp, slot, slot time."""
    data = path.read_bytes()
    version, count = struct.unpack_from("<IQ", data)
    assert version == 1
    position, records = 12, []
    for _ in range(count):
        size, = struct.unpack_from("<I", data, position)
        ids = data[position + 4:position + 4 + size]
        records.append((ids, *struct.unpack_from("<qiq", data, position + 4 + size)))
        position += 4 + size + 20
    assert position == len(data), "bytes behind the last entry"
    return records


class LiveChanges(DesktopCase):
    def wait_items(self, layout, group):
        """Waits until the group shows its items; the picture may pass through others on the way."""
        def there():
            try:
                self.assert_items_at(self.rest(), layout, group)
                return True
            except AssertionError:
                return False
        wait_for(there, f"group {group} as laid out")
        return self.rest()

    def wait_changed(self, before):
        return wait_for(lambda: self.changed_from(before), "another picture")

    def changed_from(self, before):
        picture = self.rest()
        return picture if picture.pixels != before.pixels else None

    def cached_names(self):
        """How often each file of the folder stands in the cache that the program wrote."""
        records = cache_records(self.stage.data_folder / "desktop.cache")
        names = sorted(path.name for path in self.folder.iterdir())
        return {name: sum(name.encode("utf-16-le") + b"\0\0" in ids for ids, *_ in records) for name in names}, records

    def assert_every_file_is_cached_once(self):
        counts, _ = self.cached_names()
        wrong = {name: count for name, count in counts.items() if count != 1}
        self.assertEqual(wrong, {}, "files that do not stand once in the cache")

    def test_a_new_file_appears(self):
        names = self.files(3, days=1)
        before = self.start(names)
        old = self.labels(before, self.layout(), WEEK)
        self.groups[WEEK] = ["quokka.txt"] + names
        self.file("quokka.txt")
        self.wait_changed(before)
        picture = self.wait_items(self.layout(), WEEK)
        self.assertEqual(self.labels(picture, self.layout(), WEEK)[1:], old, "the newest is first")
        self.close()
        self.assert_every_file_is_cached_once()

    def test_a_deleted_file_goes(self):
        names = self.files(4, days=1)
        before = self.start(names)
        old = self.labels(before, self.layout(), WEEK)
        gone = self.layout().cell(WEEK, 3)
        os.remove(self.folder / names[1])
        self.wait_changed(before)
        self.groups[WEEK] = [names[0], names[2], names[3]]
        picture = self.wait_items(self.layout(), WEEK)
        self.assertEqual(self.labels(picture, self.layout(), WEEK), [old[0], old[2], old[3]])
        self.assert_ground(picture, gone._replace(h=84), "the last place")
        self.close()

    def test_a_renamed_file_shows_its_new_name(self):
        names = self.files(3, days=1)
        before = self.start(names)
        layout = self.layout()
        old = self.labels(before, layout, WEEK)
        os.rename(self.folder / names[1], self.folder / "wombat.txt")
        self.wait_changed(before)
        picture = self.wait_items(layout, WEEK)
        new = self.labels(picture, layout, WEEK)
        self.assertEqual([new[0], new[2]], [old[0], old[2]])
        self.assertNotEqual(new[1], old[1])
        self.close()
        self.assert_every_file_is_cached_once()

    def test_a_written_file_moves_to_the_front(self):
        names = self.files(4, days=1)
        before = self.start(names)
        layout = self.layout()
        old = self.labels(before, layout, WEEK)
        (self.folder / names[2]).write_text("more", "utf-8")
        self.wait_changed(before)
        new = self.labels(self.rest(), layout, WEEK)
        self.assertEqual(new, [old[2], old[0], old[1], old[3]])
        self.close()

    def test_a_new_folder_and_a_removed_one_are_seen(self):
        before = self.start(self.files(2, days=1))
        (self.folder / "wallaby").mkdir()
        with_folder = self.wait_changed(before)
        (self.folder / "wallaby").rmdir()
        self.assert_same(self.wait_changed(with_folder), before, "as before")
        self.close()

    def test_a_file_moved_away_and_back_stands_once(self):
        names = self.files(3, days=1)
        before = self.start(names)
        aside = self.stage.work / "aside.txt"
        os.rename(self.folder / names[0], aside)
        without = self.wait_changed(before)
        os.rename(aside, self.folder / names[0])
        self.assert_same(self.wait_changed(without), before, "as before")
        self.close()
        self.assert_every_file_is_cached_once()

    def test_500_files_at_once_all_appear_and_none_twice(self):
        names = self.files(3, days=2)
        before = self.start(names)
        when = time.time() - 86400
        for index in range(500):
            path = self.folder / f"{WORDS[index % 100]}{chr(97 + index // 100)}{chr(97 + index % 26)}.txt"
            path.write_text("x", "utf-8")
            os.utime(path, (when - index, when - index))
        self.assertEqual(len(list(self.folder.iterdir())), 503)
        self.wait_changed(before)
        self.close()
        self.assert_every_file_is_cached_once()
        for path in list(self.folder.iterdir()):
            path.unlink()

    def test_500_files_deleted_at_once_all_go(self):
        kept = self.files(2, days=1)
        for index in range(500):
            self.file(f"{WORDS[index % 100]}{chr(97 + index // 100)}{chr(97 + index % 26)}.txt", 3)
        before = self.start(kept)
        for path in list(self.folder.iterdir()):
            if path.name not in kept:
                path.unlink()
        self.wait_changed(before)
        picture = self.wait_items(self.layout(), WEEK)
        layout = self.layout()
        self.assert_ground(picture, layout.cell(WEEK, 2)._replace(h=84), "behind the last item")
        self.close()
        _, records = self.cached_names()
        self.assertLess(len(records), 20)

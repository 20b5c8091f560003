"""Runs of the program that do one job beside the one that shows the desktop."""
import os
import subprocess

from case import DesktopCase
from stage import PROGRAM, TIME_LIMIT, Program, windows_path


class HelperRuns(DesktopCase):
    def run_helper(self, *arguments):
        return subprocess.run([self.stage.loader, windows_path(PROGRAM), *arguments],
                              env=dict(self.stage.environment, DISPLAY=os.environ["DISPLAY"]),
                              stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=TIME_LIMIT).returncode

    def test_a_scan_without_such_volumes_fails_and_saves_nothing_beside_a_running_program(self):
        self.file("a.txt")
        before = self.start(["a.txt"])
        lines = self.program.log()
        files = self.stage.index_files()
        self.assertEqual(self.run_helper("--ntfs-scan"), 1)
        self.assertEqual(self.stage.index_files(), files)
        self.assertTrue(self.program.is_running())
        self.assertEqual(self.program.log(), lines)
        self.assertEqual(self.rest_away().pixels, before.pixels)
        self.assertEqual(Program(self.stage).process.wait(TIME_LIMIT), 0, "another desktop ends at once instead")
        self.assertEqual(self.run_helper("--windowed", "--ntfs-scan"), 1, "the helper's switch counts first")
        self.close()

    def test_a_start_without_an_index_raises_the_helper_once_and_goes_on(self):
        self.stage.forget_index()
        names = self.files(3)
        self.start(names)
        self.program.wait_log("NTFS cache still missing after elevated scan")
        log = self.program.log()
        self.assertEqual([line for line in log if line.startswith("NTFS")],
                         ["NTFS scan requires elevation, launching helper...",
                          "NTFS cache still missing after elevated scan"])
        self.assert_items_at(self.settle(), self.layout(), 1)
        self.close()
        self.assertEqual(self.stage.index_files(), ["ntfs.cache"])
        self.start_again()
        self.close()
        self.assertEqual([line for line in self.program.log() if line.startswith("NTFS")], [])

    def test_a_scan_needs_no_running_program(self):
        self.assertEqual(self.run_helper("--ntfs-scan"), 1)
        self.assertEqual(self.run_helper("before--ntfs-scanbehind"), 1)

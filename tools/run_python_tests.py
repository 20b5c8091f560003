#!/usr/bin/env python3
"""run_python_tests.py: the unit tests of the Python parts, one folder after the other. Prints a line a case as GoogleTest
does, so that ./dev counts them in the same way. The exit code is 0 only if nothing failed and something passed."""
import pathlib
import sys
import time
import unittest

FOLDERS = ["tools/service", "tests/support", "tests/images"]


class Result(unittest.TestResult):
    def __init__(self):
        super().__init__()
        self.passed = 0
        self.began = 0.0
        self.before = 0

    def faults(self):
        """A case that was skipped, or was allowed to fail, has shown nothing."""
        kinds = (self.failures, self.errors, self.skipped, self.expectedFailures, self.unexpectedSuccesses)
        return sum(map(len, kinds))

    def startTest(self, test):
        super().startTest(test)
        self.began = time.monotonic()
        self.before = self.faults()

    def stopTest(self, test):
        super().stopTest(test)
        milliseconds = round((time.monotonic() - self.began) * 1000)
        good = self.faults() == self.before
        self.passed += good
        name = ".".join(test.id().split(".")[-2:])
        print(f"{'[       OK ]' if good else '[  FAILED  ]'} {name} ({milliseconds} ms)", flush=True)


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    sys.dont_write_bytecode = True
    result = Result()
    for folder in FOLDERS:
        tests = unittest.TestLoader().discover(str(root / folder), "test_*.py", str(root / folder))
        tests.run(result)
    for _, text in result.failures + result.errors:
        print(text)
    # A file that cannot be loaded and a class that cannot be set up are errors without a case.
    return 0 if result.passed and result.faults() == 0 else 1


if __name__ == "__main__":
    sys.exit(main())

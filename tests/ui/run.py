#!/usr/bin/env python3
"""run.py [FILTER]: drives the real program with real mouse and keys. FILTER is a part of a case's name.

The last line is "N passed, N failed"; the exit code is 0 only if nothing failed and something ran."""
import pathlib
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
sys.dont_write_bytecode = True

import case  # noqa: E402


class Result(unittest.TestResult):
    """One line a case, as it ends."""

    def __init__(self):
        super().__init__()
        self.passed = []
        self.began = 0.0

    def startTest(self, test):
        super().startTest(test)
        self.began = time.monotonic()

    def _line(self, word, test):
        name = test.id().split(".", 1)[1]
        print(f"{word} {name} ({time.monotonic() - self.began:.1f} s)", flush=True)

    def addSuccess(self, test):
        super().addSuccess(test)
        self.passed.append(test)
        self._line("ok    ", test)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self._line("FAILED", test)
        print(self.failures[-1][1], flush=True)

    def addError(self, test, err):
        super().addError(test, err)
        self._line("FAILED", test)
        print(self.errors[-1][1], flush=True)


def chosen(suite, wanted):
    for test in suite:
        if isinstance(test, unittest.TestSuite):
            yield from chosen(test, wanted)
        elif wanted.lower() in test.id().lower():
            yield test


def main():
    here = pathlib.Path(__file__).resolve().parent
    wanted = sys.argv[1] if len(sys.argv) > 1 else ""
    loader = unittest.TestLoader()
    tests = list(chosen(loader.discover(str(here), "test_*.py", str(here)), wanted))
    result = Result()
    if tests:
        stage = case.make_stage()
        try:
            unittest.TestSuite(tests).run(result)
        finally:
            stage.close()
    failed = len({test.id() for test, _ in result.failures + result.errors})
    passed = len(result.passed)
    print(f"{passed} passed, {failed} failed")
    return 0 if failed == 0 and passed > 0 else 1


if __name__ == "__main__":
    sys.exit(main())

"""Which tests reach which lines, so that only those are run that can notice a fault."""
import collections
import pickle
import shutil
import subprocess
import time

from .tree import FOLDER

COUNTERS = FOLDER / 'counters'
KEPT = FOLDER / 'coverage'


def coverage_of(tree, programs):
    """Returns the coverage, which is kept for as long as the code and its tests stay the same."""
    if KEPT.exists():
        digest, coverage = pickle.loads(KEPT.read_bytes())
        if digest == tree.digest():
            return coverage
    coverage = Coverage(tree, programs)
    if coverage.is_whole:
        KEPT.write_bytes(pickle.dumps((tree.digest(), coverage)))
    return coverage


class Test:
    def __init__(self, program, name, seconds):
        self.program, self.name, self.seconds = program, name, seconds


class Coverage:
    """Runs every test of the programs once by itself. Tests that skip here can notice nothing, and are left out."""

    def __init__(self, tree, programs):
        self.tests = []
        self.is_whole = True
        self.by_line = collections.defaultdict(list)  # (file, number) -> tests that run it
        self.by_file = collections.defaultdict(list)  # file -> tests that run any of it
        self.known = set()  # lines that hold code which could be counted
        for program in programs:
            for name in tree.tests_of(program):
                self.look_at(tree, program, name)

    def look_at(self, tree, program, name):
        shutil.rmtree(COUNTERS, ignore_errors=True)
        COUNTERS.mkdir(parents=True)
        COUNTERS.chmod(0o777)
        start = time.monotonic()
        if tree.run(program, [name], seconds=300, counters=COUNTERS / '%c%p.profraw'):
            print(f'{program}: {name} fails or is skipped without any fault, and is left out.', flush=True)
            self.is_whole = False
            return
        test = Test(program, name, time.monotonic() - start)
        self.tests.append(test)
        for file, lines in self.counted(tree, program).items():
            self.known.update((file, number) for number in lines)
            run = [number for number, count in lines.items() if count]
            for number in run:
                self.by_line[file, number].append(test)
            if run:
                self.by_file[file].append(test)

    def counted(self, tree, program):
        """Returns how often each line was run, by file."""
        profile = COUNTERS / 'profile'
        subprocess.run(['llvm-profdata-19', 'merge', '--sparse', '--failure-mode=all', '-o', profile,
                        *COUNTERS.glob('*.profraw')], check=True, stderr=subprocess.DEVNULL)
        first, *others = tree.executables(program)
        exported = subprocess.run(
            ['llvm-cov-19', 'export', '--format=lcov', '--skip-functions', f'--instr-profile={profile}',
             r'--ignore-filename-regex=/(tests|benchmarks|usr)/', first, *(f'--object={each}' for each in others)],
            check=True, capture_output=True, text=True).stdout
        lines = {}
        for record in exported.split('\n'):
            if record.startswith('SF:'):
                file = lines.setdefault(record[3:].removeprefix(f'{tree.source}/'), {})
            elif record.startswith('DA:'):
                number, count = record[3:].split(',')[:2]
                file[int(number)] = int(count)
        return lines

    def is_reached(self, file, number):
        return (file, number) not in self.known or bool(self.by_line[file, number])

    def tests_for(self, file, number):
        """Returns the tests that can notice a fault in the line, the quickest first. What can't be counted, such as a
        row of a table or what a process does between fork and exec, may be noticed by whatever uses the file. What a
        header defines may be used without running any line of it."""
        tests = self.by_line[file, number] if (file, number) in self.known else []
        if not tests:
            tests = self.tests if file.endswith('.h') else self.by_file[file] or self.tests
        return sorted(tests, key=lambda test: test.seconds)

"""A copy of the code in which faults are planted, and the test programs that are built from it."""
import hashlib
import os
import re
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
FOLDER = ROOT / 'build' / 'faults'
OWN = ('scripts/plant-faults', 'scripts/faults/', 'tests/faults/equivalent.txt')  # what no test needs

# Counters are kept in files, so that what a child process did before it was killed counts as well.
COUNTING = '-fprofile-instr-generate -fcoverage-mapping -mllvm -runtime-counter-relocation'


def tracked_files(*patterns):
    return subprocess.check_output(['git', 'ls-files', *patterns], cwd=ROOT, text=True).split('\n')[:-1]


class Tree:
    """A copy of its own for each of those that plant at the same time."""

    def __init__(self, name):
        self.source, self.build = FOLDER / name / 'source', FOLDER / name / 'build'

    def prepare(self, programs):
        """Copies the code and builds the programs. Returns whether that succeeded."""
        wanted = [name for name in tracked_files() if (ROOT / name).exists() and not name.startswith(OWN)]
        for name in wanted:
            original, copy = ROOT / name, self.source / name
            copy.parent.mkdir(parents=True, exist_ok=True)
            if not copy.exists() or copy.read_bytes() != original.read_bytes():
                shutil.copy(original, copy)
        for copy in self.source.rglob('*'):
            if copy.is_file() and str(copy.relative_to(self.source)) not in wanted:
                copy.unlink()
        subprocess.run(['cmake', '-G', 'Ninja', '-S', self.source, '-B', self.build, '-DCMAKE_CXX_COMPILER=clang++-19',
                        '-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld-19', '-DCMAKE_COMPILE_WARNING_AS_ERROR=ON',
                        f'-DCMAKE_CXX_FLAGS=-O0 {COUNTING}'],
                       stdout=subprocess.DEVNULL, check=True)
        return self.make(*programs)

    def digest(self):
        """Stands for everything that was copied."""
        total = hashlib.sha256()
        for path in sorted(self.source.rglob('*')):
            if path.is_file():
                total.update(f'{path} '.encode() + path.read_bytes())
        return total.digest()

    def make(self, *programs):
        command = ['ninja', '-C', self.build, *programs]
        return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0

    def program(self, name):
        return self.build / 'tests' / name

    def executables(self, program):
        """Everything of the program's own code that a test of it may run."""
        utilities = [path for folder in ('libexec', 'utilities') for path in (self.build / folder).rglob('*')
                     if path.is_file() and os.access(path, os.X_OK) and 'CMakeFiles' not in path.parts]
        return [self.program(program), *utilities]

    def run(self, name, tests, seconds, counters='/dev/null', without=()):
        """Runs tests of a program until one fails. Returns that one, or None; a test that was skipped has failed here,
        since ./test does not let it pass."""
        temporary = tempfile.mkdtemp(dir=self.build)
        os.chmod(temporary, 0o777)
        environment = {**os.environ, 'GTEST_FAIL_FAST': '1', 'TMPDIR': temporary,
                       'LLVM_PROFILE_FILE': str(counters)}
        wanted = ':'.join(tests) + ('-' + ':'.join(without) if without else '')
        process = subprocess.Popen([self.program(name), f'--gtest_filter={wanted}'], cwd=self.build,
                                   env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, text=True, errors='replace', start_new_session=True)
        try:
            output, _ = process.communicate(timeout=seconds)
        except subprocess.TimeoutExpired as late:
            output = (late.stdout or b'').decode(errors='replace')
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        process.wait()
        shutil.rmtree(temporary, ignore_errors=True)
        begun = re.findall(r'^\[ RUN      \] (\S+)', output, re.MULTILINE)
        failed = (re.search(r'^\[  FAILED  \] ([^\s,]+)', output, re.MULTILINE)
                  or re.search(r'^\[  SKIPPED \] ([^\s,]+)', output, re.MULTILINE))
        if failed:
            return failed[1]
        return None if process.returncode == 0 else begun[-1] if begun else tests[0]

    def tests_of(self, name):
        """Returns the names of all tests of the program; one with "*" for the rows of a table about the same call."""
        listed = subprocess.check_output([self.program(name), '--gtest_list_tests'], text=True,
                                         env={**os.environ, 'LLVM_PROFILE_FILE': '/dev/null'})
        suite, tests = '', []
        for line in listed.split('\n'):
            word = line.split('#')[0].strip()
            if word.endswith('.') and not line.startswith(' '):
                suite = word
            elif word and line.startswith(' '):
                tests.append(re.sub(r'^(Rows/.*/[a-z0-9]+)_.*', r'\1_*', suite + word))
        return list(dict.fromkeys(tests))

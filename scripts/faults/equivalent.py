"""The table of faults that change nothing that can be noticed."""
from .operators import faults_in, masked
from .tree import ROOT

TABLE = 'tests/faults/equivalent.txt'


def code_of(line):
    """Returns the line without its comment."""
    return line[:len(masked(line).rstrip('\x00'))].strip()


def equivalent_faults():
    """Returns the rows as (file, code, changed code)."""
    rows = (line.split('  |  ') for line in (ROOT / TABLE).read_text().split('\n') if not line.startswith('#'))
    return {tuple(column.strip() for column in row[:3]) for row in rows if len(row) == 4}


def faults_of(file):
    """Yields each fault of a file as (number of the line, line, changed line)."""
    path = ROOT / file
    lines = path.read_text().split('\n') if path.exists() else []
    for index, line in enumerate(lines):
        for changed in faults_in(lines, index):
            yield index + 1, line, changed


def outdated_rows():
    """Returns the rows whose fault can no longer be planted, mostly because the code is gone."""
    rows = equivalent_faults()
    possible = {(file, code_of(line), code_of(changed)) for file in {row[0] for row in rows}
                for _, line, changed in faults_of(file)}
    return sorted(rows - possible)

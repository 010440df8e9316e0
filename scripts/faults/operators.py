"""Which small faults can be planted in a line of C++."""
import re

# What is turned into what; the first group of a pattern is kept.
REPLACEMENTS = [
    (r'==', '!='), (r'!=', '=='), (r'<=(?!>)', '<'), (r'>=', '>'), (r'(?<= )<(?= )', '<='), (r'(?<= )>(?= )', '>='),
    (r'(?<= )&&(?= )', '||'), (r'\|\|', '&&'), (r'(?<= )\+(?= )', '-'), (r'(?<= )-(?= )', '+'), (r'(?<= )\*(?= )', '/'),
    (r'\btrue\b', 'false'), (r'\bfalse\b', 'true'), (r'(?<=[ (])!(?=[\w(])', ''), (r'\+\+', '--'),
    (r'(?<![\w.\'])0(?![\w.\'])', '1'), (r'(?<![\w.\'"])([1-9][\d\']*)(?![\w.\'"])', r'\1 + 1'),
    (r'\bif \((?!const |auto )(.*)\)( \{| [^{]*;)?$', r'if (!(\1))\2'),
    (r'\bany_of\b', 'all_of'), (r'\ball_of\b', 'any_of'), (r'\bnone_of\b', 'any_of'), (r'\bbreak;', ';'),
    (r'\bstd::min\b', 'std::max'), (r'\bstd::max\b', 'std::min'), (r'\bcontinue;', ';'),
]
STATEMENT = re.compile(r'^\s*(co_await |static_cast<void>\()?[A-Za-z_][\w.:<>\->]*\(.*\)+;$')
TABLE_ROW = re.compile(r'^\s*(\{.*\}|".*"),(\s*///.*)?$')
TWO_ARGUMENTS = re.compile(r'\((\w[\w.]*), (\w[\w.]*)\)')
IGNORED = re.compile(r'^\s*(//|#|static_assert|using |namespace |template|class |struct |enum |friend |virtual |\*|\[\[nodiscard|.*= default;)')


def masked(line):
    """Blanks out texts and comments, so that nothing is planted there."""
    line = re.sub(r'"(\\.|[^"\\])*"', lambda text: '"' + '\x00' * (len(text[0]) - 2) + '"', line)
    return re.sub(r'//.*', lambda comment: '\x00' * len(comment[0]), line)


def versions_of(line):
    if not line.strip() or IGNORED.match(line):
        return
    plain = masked(line)
    if STATEMENT.match(plain.rstrip()):
        yield re.sub(r'\S.*', ';', line)
    if TABLE_ROW.match(line):
        yield ''
    for pattern, replacement in REPLACEMENTS:
        for match in re.finditer(pattern, plain):
            real = re.compile(pattern).match(line, match.start())
            if real:
                yield line[:match.start()] + real.expand(replacement) + line[real.end():]
    for match in TWO_ARGUMENTS.finditer(plain):
        yield line[:match.start()] + f'({match[2]}, {match[1]})' + line[match.end():]


def faults_in(line):
    """Returns each version of the line that has one fault."""
    return [version for version in dict.fromkeys(versions_of(line)) if version != line]

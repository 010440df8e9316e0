"""Which small faults can be planted in a line of C++.

Leaves out what cannot be noticed in any program: another waiting time, `<` beside `<=` for a clock, a start value that is
always replaced, a larger buffer, a missing hint to the system, a checkpoint that repeats the one before.
"""
import re

# What is turned into what; the first group of a pattern is kept.
REPLACEMENTS = [
    (r'==', '!='), (r'!=', '=='), (r'<=(?!>)', '<'), (r'>=', '>'), (r'(?<= )<(?= )', '<='), (r'(?<= )>(?= )', '>='),
    (r'(?<= )&&(?= )', '||'), (r'\|\|', '&&'), (r'(?<= )\+(?= )', '-'), (r'(?<= )-(?= )', '+'), (r'(?<= )\*(?= )', '/'),
    (r'\btrue\b', 'false'), (r'\bfalse\b', 'true'), (r'(?<=[ (])!(?=[\w(])', ''), (r'\+\+', '--'),
    (r'(?<![\w.\'])0(?![\w.\'])', '1'), (r'(?<![\w.\'"])([1-9]\d{0,2})(?![\w.\'"])', r'\1 + 1'),
    (r'(?<![\w.\'"])([1-9][\d\']{3,})(?![\w.\'"])', r'\1 * 2'),  # one more than thousands is next to nothing
    (r'\bif \((?!const |auto )(.*)\)( \{| [^{]*;)?$', r'if (!(\1))\2'),
    (r'\bany_of\b', 'all_of'), (r'\ball_of\b', 'any_of'), (r'\bnone_of\b', 'any_of'), (r'\bbreak;', ';'),
    (r'\bstd::min\b', 'std::max'), (r'\bstd::max\b', 'std::min'), (r'\bcontinue;', ';'),
]
STATEMENT = re.compile(r'^\s*(co_await |static_cast<void>\()?[A-Za-z_][\w.:<>\->]*\(.*\)+;$')
TABLE_ROW = re.compile(r'^\s*(\{.*\}|".*"),(\s*///.*)?$')
TWO_ARGUMENTS = re.compile(r'(?<!std::min)(?<!std::max)(?<!std::swap)\((\w[\w.]*), (\w[\w.]*)\)')
IGNORED = re.compile(r'^\s*(//|#|static_assert|using |namespace |template|class |struct |enum |friend |virtual |\*|\[\[nodiscard|.*= default;)')

# Hints only make a program faster, and the end of a process releases everything.
HINT_OR_RELEASE = re.compile(r'\b(madvise|adviseReadingOnce|reserve|freeze|globfree|\w*_destroy|destroy)\(')
DURATION = re.compile(r'\b(nanoseconds|milliseconds|seconds|minutes|hours)\b( \w+)?[({]\d')
BUFFER = re.compile(r'\bchar \w+\[\d|\bstd::array<(char|int|std::byte), .*\d')
IGNORED_BY_SYSTEM = re.compile(r'\bposix_fadvise\(|\bPOLLIN, 0|\bO_RDONLY, 0')
START_VALUE = re.compile(r'^\s*[\w:]+\*? (\w+) = (0|1|true|false);')
CLOCK = re.compile(r'\b(now\(\)|now - \*?\w+|seconds) $')
LIMIT = re.compile(r'^ (\w+::)?(\w+Limit|maximum(Bytes|Items))\b')  # no input is of just that size
COMPARED_BEFORE = re.compile(r'\b(\S+) (?:==|!=) (\S+?)\)? .*\b\1 [<>]=? \2(?![\w.\'])')
CHECKPOINT = re.compile(r'^\s*co_await checkCancellation\(\);')
ENDS_WITH_CHECKPOINT = re.compile(r'\b(checkCancellation|sleepFor|revalidateDisk)\(')
MAY_BE_STOPPED = re.compile(r'co_await|\breport\(|^\s*(for|while) |^\S')


def masked(line):
    """Blanks out texts and comments, so that nothing is planted there."""
    line = re.sub(r'"(\\.|[^"\\])*"', lambda text: '"' + '\x00' * (len(text[0]) - 2) + '"', line)
    return re.sub(r'//.*', lambda comment: '\x00' * len(comment[0]), line)


def is_in_struct(lines, index):
    """Returns whether the line is a member of a struct."""
    indentation = len(lines[index]) - len(lines[index].lstrip())
    opening = re.compile(rf' {{0,{max(indentation - 1, 0)}}}[^ /].*\{{$')
    return next((line.lstrip().startswith('struct ') for line in reversed(lines[:index]) if opening.match(line)), False)


def is_always_replaced(lines, index):
    """Returns whether the line declares a variable that gets another value before it is used."""
    declared = START_VALUE.match(lines[index])
    if not declared:
        return False
    name, value = declared.groups()
    # Each place that makes a struct gives its counts and sizes.
    if value.isdigit() and 'double' not in lines[index] and is_in_struct(lines, index):
        return True
    replaced = re.compile(rf'&{name}\b|>> {name}\b|^\s*{name} = (?!{name}\b)', re.MULTILINE)
    return replaced.search('\n'.join(lines[index + 1:index + 8])) is not None


def repeats_checkpoint(lines, index):
    """Returns whether the line is a checkpoint and no stop can have been requested since the one before."""
    if not CHECKPOINT.match(lines[index]):
        return False
    for line in reversed(lines[:index]):
        if ENDS_WITH_CHECKPOINT.search(line):
            return True
        if MAY_BE_STOPPED.search(line):
            return False
    return False


def changes_nothing(lines, index, plain, match):
    """Returns whether the program does the same with the replacement."""
    before, behind = plain[:match.start()], plain[match.end():]
    is_decided = COMPARED_BEFORE.search(masked(lines[index - 1]) + plain) is not None
    if match[0] in ('<', '<=') and before.endswith(') ') and behind.startswith(' 0'):
        return True  # a call is less than 0 when it fails, and greater when it succeeds
    if match[0] in ('<', '<=', '>', '>='):
        return is_decided or bool(CLOCK.search(before) or LIMIT.search(behind))
    if match[0] == '0':
        return before.endswith(') < ') or (is_decided and before.endswith(' < '))
    return match[0] == 'break;' and lines[index + 1].strip() == '}'


def versions_of(lines, index):
    line = lines[index]
    if not line.strip() or IGNORED.match(line):
        return
    plain = masked(line)
    if STATEMENT.match(plain.rstrip()) and not HINT_OR_RELEASE.search(plain) and not repeats_checkpoint(lines, index):
        yield re.sub(r'\S.*', ';', line)
    if TABLE_ROW.match(line):
        yield ''
    has_idle_value = (any(kind.search(plain) for kind in (DURATION, BUFFER, IGNORED_BY_SYSTEM))
                      or is_always_replaced(lines, index))
    for pattern, replacement in REPLACEMENTS:
        for match in re.finditer(pattern, plain):
            if changes_nothing(lines, index, plain, match) or (has_idle_value and re.match(r'\d|true|false', match[0])):
                continue
            real = re.compile(pattern).match(line, match.start())
            if real:
                yield line[:match.start()] + real.expand(replacement) + line[real.end():]
    for match in TWO_ARGUMENTS.finditer(plain):
        yield line[:match.start()] + f'({match[2]}, {match[1]})' + line[match.end():]


def faults_in(lines, index):
    """Returns each version of a line that has one fault."""
    return [version for version in dict.fromkeys(versions_of(lines, index)) if version != lines[index]]

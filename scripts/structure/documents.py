"""What documents say of the sources: paths, and messages of the program."""
import pathlib
import re
import subprocess

# Endings that only a file of the project has, when a document names it.
ENDING = re.compile(r"\.(h|cpp|md|py|txt|cmake|dot|svg|png)$")
# What looks like a path of the project, but lies where the program is installed, or in sysfs.
ELSEWHERE = {"libexec/velmora-tessel", "velmora-tessel/", "html/", "queue/iostats"}

# Messages stand in the first column of tables below these headings.
MESSAGES = "docs/troubleshooting.md"
HEADINGS = {"message", "reason"}
# Rows that describe what the user sees, in words that are not the program's.
SEEN = {"The file manager shows the card as mounted, although it was called safe to remove", "UDisks2's own words"}

PUNCTUATION = "“” .,:;"

LITERAL = r'"(?:\\.|[^"\\\n])*"'
# Comments and quotation marks as characters are passed over; literals in a row are one text.
TEXT = re.compile(rf"""//[^\n]*|/\*.*?\*/|'\\?"'|({LITERAL}(?:\s*{LITERAL})*)""", re.DOTALL)


def texts(source):
    """The texts in a source file; literals in a row are one."""
    return [re.sub(r'"\s*"', "", literals)[1:-1] for literals in TEXT.findall(source) if literals]


def files(*patterns):
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", *patterns],
                            capture_output=True, text=True, check=True).stdout.splitlines()
    return [file for file in listed if pathlib.Path(file).exists()]


def is_made_here(path):
    """Whether git ignores the path, because a script makes it."""
    return subprocess.run(["git", "check-ignore", "--quiet", path], check=False).returncode == 0


def named_paths(text):
    """The paths of the project that a document names in backticks."""
    for quotation in re.findall(r"`([^`]+)`", text):
        for word in quotation.split():
            if ("/" in word or ENDING.search(word)) and not re.match(r"[/-]|\w+:", word) and word not in ELSEWHERE:
                yield word


def broken_paths():
    """Paths that a document names or links to, and that don't exist; a mere name may stand for a file anywhere."""
    names = {pathlib.PurePath(file).name for file in files()}
    for document in files("*.md"):
        text = pathlib.Path(document).read_text(encoding="utf-8")
        folder = pathlib.Path(document).parent
        for path in named_paths(text):
            if not (pathlib.Path(path).exists() or (folder / path).exists() or path in names or is_made_here(path)):
                yield f"{document}: names {path}, which does not exist"
        for link in re.findall(r"\]\(([^):#]+)(?:#[^)]*)?\)", text):
            if not (folder / link).exists():
                yield f"{document}: links to {link}, which does not exist"


def quoted_messages(text):
    """The messages in the first column of a document's tables."""
    is_listed = False
    for line in text.splitlines():
        first = line.split("|")[1].strip() if line.startswith("|") else ""
        if first in HEADINGS or not first:
            is_listed = bool(first)
        elif is_listed and not first.startswith("-"):
            yield from first.split(" · ")


def fixed_parts(message):
    """What is left of a message between what varies, clause by clause and without the punctuation at both ends; a
    remark in parentheses is not part of it."""
    for clause in re.split(r"(?<=[.:]) ", re.sub(r" \([^)]*\)$", "", message)):
        for part in re.split(r"/dev/…|…", clause):
            if part.strip(PUNCTUATION):
                yield part.strip(PUNCTUATION)


def is_said(part, said):
    """Whether a text of the program, one a line, holds the part, or the end of one and the start of another make it
    up. Whether it begins a sentence depends on the place."""
    words = part.split(" ")
    joints = [(" ".join(words[:i]), " ".join(words[i:])) for i in range(1, len(words))]
    gap = f"[{PUNCTUATION}]*"
    return (part in said or part[0].lower() + part[1:] in said or
            any(re.search(f"{re.escape(end)}{gap}$", said, re.MULTILINE) and
                re.search(f"^{gap}{re.escape(start)}", said, re.MULTILINE) for end, start in joints if end in said))


def unknown_messages():
    """Messages that a document quotes, and of which a fixed part is in no text of the program."""
    said = "\n".join(text for file in files("*.h", "*.cpp")
                     if not file.startswith(("tests/", "benchmarks/", "rehearsal/", "utilities/simulated/"))
                     for text in texts(pathlib.Path(file).read_text(encoding="utf-8")))
    for message in quoted_messages(pathlib.Path(MESSAGES).read_text(encoding="utf-8")):
        for part in fixed_parts(message) if message not in SEEN else ():
            if not is_said(part, said):
                yield f"{MESSAGES}: quotes \"{part}\", which the program never says"

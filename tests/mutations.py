"""The changes that mutate.py makes, each of one line.

Of any line: an operator, a number, a text, a character, a keyword, a negated condition, a statement
left out, a result left out.
Of a cell of a constant table: also a name in place of another one of its group, a handler left out,
an empty slot filled, and a different rule for a handler."""

import re
from typing import NamedTuple

SWAPS = {
    "==": ["!="], "!=": ["=="], "<": ["<="], "<=": ["<"], ">": [">="], ">=": [">"],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["+"], "+=": ["-="], "-=": ["+="],
    "++": ["--"], "--": ["++"], "true": ["false"], "false": ["true"],
    "break": ["continue"], "continue": ["break"],
}
TEXT = r'"(?:[^"\\]|\\.)*"'
TOKENS = re.compile(
    rf"{TEXT}|'(?:[^'\\]|\\.)*'"  # texts and characters
    r"|(?<= )(?:==|!=|<=|>=|&&|\|\||\+=|-=|<|>|\+|-|\*)(?= )"  # operators between blanks
    r"|\+\+|--|\b(?:true|false|break|continue)\b"
    r"|\b\d+\b")
STATEMENT = re.compile(r"^(\s+)(?!return|using|const|auto|static|else|case|default|delete|if|for|while)"
                       r"[A-Za-z_*+\-][^=;{}]*(?:\(.*\)|\+\+|--);$|^(\s+)[\w\->.*\[\]]+ [+\-]?= .*;$")
CONDITION = re.compile(r"\b(if|while) \((.*)\)( \{| [^{].*;)$")
RESULT = re.compile(r"^(\s+)return ([^;{]+);$")
SKIPPED = re.compile(r"^\s*(//|#|static_assert|template|namespace|using |\})")

# Constant tables and constants: from such a line to the next that ends a statement.
TABLE = re.compile(r"^(?:inline |static )?constexpr [^()]*(?:to_array<[^()]*>\(|\w\{|= )")
NAME = re.compile(rf"{TEXT}|(?<![\w.&])[A-Za-z_][\w:]*(?![\w:]| = |\{{)")  # used, not defined
# The names that can take each other's places begin alike.
GROUP = re.compile(r"analyze_GetQV(?:Side|Src|XXX|Env|Finisher|CopyTray|FinTray)"
                   r"|analyze_Get[A-Z][a-z]+|zGet|[A-Z]\w*::k|k(?=[A-Z])")
HANDLER = re.compile(r"analyze_|z[A-Z]")
RULE = re.compile(r"\bia::\w+(?:<ia::\w+>)?(?=\);$)")  # at the end of a handler's definition

# Changes without effect, and why: the file and the old text, for all changes of it, or both texts.
EQUIVALENT = {
    ("tray_update.cc", "3", "4"): "room for one row more than there can be",
    ("finisher_getters.cc", '"Vorel Saddle Finisher-X2/X2L"'): "an earlier name is its prefix",
    ("finishing_function.cc", "analyze_GetFinishingFunctionOptionString_ELM",
     "analyze_GetFinishingFunctionOptionStringMagnolia"): "they decide alike",
    ("finishing_function.cc", "analyze_GetFinishingFunctionOptionStringMagnolia",
     "analyze_GetFinishingFunctionOptionString_ELM"): "they decide alike",
}


class Change(NamedTuple):
    number: int  # of the line, from 0
    line: str
    changed: str
    is_cell: bool


def changes_of_token(token):
    if token.startswith('"'):
        if "%" in token:
            return []
        shorter = [token[:-2] + '"'] if len(token) > 2 and token[-3] != "\\" else []
        return [token[:-1] + '~"'] + shorter
    if token.startswith("'"):
        return ["'~'"]
    if token.isdigit():
        return [str(int(token) + 1)] + ([str(int(token) - 1)] if int(token) > 0 else [])
    return SWAPS[token]


def changes_of_code(code):
    """Yields the line with one change of its structure."""
    condition = CONDITION.search(code)
    if condition:
        word, test, rest = condition.groups()
        yield f"{code[:condition.start()]}{word} (!({test})){rest}"
    if STATEMENT.match(code):
        yield re.match(r"\s*", code).group() + ";"
    returned = RESULT.match(code)
    if returned:
        yield f"{returned[1]}return {{}};"


class Names:
    """The names of a file's tables and the rules of its handlers, by group, in their order."""

    def __init__(self, tables, lines):
        self.groups = {}
        for line in tables:
            for match in NAME.finditer(line):
                self.learn(self.group_of(match.group()), match.group())
        for line in lines:
            for match in RULE.finditer(line):
                self.learn("rule", match.group())

    @staticmethod
    def group_of(name):
        match = GROUP.match(name)
        return match and match.group()

    def learn(self, group, name):
        if group is not None and name not in self.groups.setdefault(group, []):
            self.groups[group].append(name)

    def next_of(self, group, name):
        """Another name of the group, if there is one."""
        names = self.groups.get(group, [name])
        other = names[(names.index(name) + 1) % len(names)]
        return [] if other == name else [other]

    def changes_of(self, name):
        if name == "nullptr":  # a text or a handler may stand there; what is wrong does not compile
            handlers = [names[-1] for names in self.groups.values() if HANDLER.match(names[-1])]
            return ['"~"'] + handlers[-1:]
        group = self.group_of(name)
        empty = ["nullptr"] if group and HANDLER.match(name) else []
        return (self.next_of(group, name) if group else []) + empty


def table_lines(lines):
    """For each line whether it belongs to a constant table or a constant."""
    inside = False
    for line in lines:
        inside = inside or bool(TABLE.match(line))
        yield inside
        inside = inside and not line.endswith(";")


def is_equivalent(file_name, old, new):
    return (file_name, old) in EQUIVALENT or (file_name, old, new) in EQUIVALENT


def replacements(code, is_table, names):
    """Yields start, end and the new text of each token that can be changed."""
    for match in TOKENS.finditer(code):
        yield from ((*match.span(), text) for text in changes_of_token(match.group()))
    if is_table:
        for match in NAME.finditer(code):
            yield from ((*match.span(), text) for text in names.changes_of(match.group()))
    for match in RULE.finditer(code):
        yield from ((*match.span(), text) for text in names.next_of("rule", match.group()))


def changes_of_file(path):
    lines = path.read_text().split("\n")
    in_table = list(table_lines(lines))
    names = Names([line for line, inside in zip(lines, in_table) if inside], lines)
    for number, (line, inside) in enumerate(zip(lines, in_table)):
        code = line.split("  // ")[0]
        if SKIPPED.match(line) or not code.strip():
            continue
        is_cell = inside or bool(RULE.search(code))
        for start, end, text in replacements(code, inside, names):
            if not is_equivalent(path.name, code[start:end], text):
                yield Change(number, line, code[:start] + text + code[end:], is_cell)
        if not inside:
            for changed in changes_of_code(code):
                yield Change(number, line, changed, False)

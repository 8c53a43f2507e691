"""Limits of size: lines of a file and of a function, depth of nesting, number of parameters.

A light lexer, not a compiler: it knows comments, strings and brackets, which is enough to find function bodies.
"""

import re
from dataclasses import dataclass

MOST_FILE_LINES = 400
MOST_FUNCTION_LINES = 50
DEEPEST_NESTING = 3
MOST_PARAMETERS = 5
# Files that are one long table.
DATA_TABLES = {"src/tools/frequent_clis/command_icon.cpp", "src/platform/key_codes.cpp"}

NOT_CODE = re.compile(
    r"""
      //[^\n]* | /\*.*?\*/                                  # comments
    | R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"                  # raw strings
    | "(?:\\.|[^"\\\n])*"                                   # strings
    | (?:(?<!\w)|\b(?:u8|[uUL]))'(?:\\.|[^'\\\n])+'        # characters, not digit separators
    | ^[ \t]*\#(?:\\\n|[^\n])*                              # preprocessor
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)
CONTROL = re.compile(r"^(?:\}?\s*else\b|if\b|for\b|while\b|switch\b|do\b|try\b|catch\b|Q_FOREVER\b)")
TYPE = re.compile(r"^(?:template\s*<.*>\s*)?(?:typedef\s+)?(?:class|struct|union|enum)\b(?![^{]*\)\s*(?:const)?\s*$)", re.DOTALL)
NAMESPACE = re.compile(r"^(?:inline\s+)?namespace\b|^extern\b\s*$")
LABEL = re.compile(r"^(?:public|private|protected|Q_SIGNALS|case\b[^:]*|default)\s*(?:Q_SLOTS)?\s*:(?!:)\s*")
LAMBDA = re.compile(r"\[[^\[\]]*\]\s*(?:\((?:[^()]|\([^()]*\))*\))?\s*(?:mutable|noexcept)?\s*(?:->\s*[\w:<>*& ,]+)?\s*$")


@dataclass
class Scope:
    kind: str
    start: int
    name: str = ""
    deepest: int = 0


def problems(name, text):
    """One line for each limit that a file breaks."""
    lines = text.count("\n") + 1
    if lines > MOST_FILE_LINES and name not in DATA_TABLES:
        yield f"{name}: {lines} lines, at most {MOST_FILE_LINES}"
    for function in functions(text):
        where = f"{name}:{function.line}: {function.name}"
        if function.lines > MOST_FUNCTION_LINES:
            yield f"{where} has {function.lines} lines, at most {MOST_FUNCTION_LINES}"
        if function.nesting > DEEPEST_NESTING:
            yield f"{where} nests {function.nesting} deep, at most {DEEPEST_NESTING}"
        if function.parameters > MOST_PARAMETERS:
            yield f"{where} takes {function.parameters} parameters, at most {MOST_PARAMETERS}"


@dataclass
class Function:
    name: str
    line: int
    lines: int
    nesting: int
    parameters: int


def functions(text):
    """Every function that is defined in the text, lambdas counted as part of theirs."""
    code = NOT_CODE.sub(_blank, text)
    scopes, head_start = [], 0
    for match in re.finditer(r"[{};]", code):
        at = match.start()
        if match.group() == "{":
            scopes.append(_scope(code, head_start, at, scopes))
            _note_nesting(scopes)
            if scopes[-1].kind == "initialiser":
                continue
        elif match.group() == "}" and scopes:
            scope = scopes.pop()
            if scope.kind == "function":
                yield _function(code, scope, at)
            if scope.kind == "initialiser":
                continue
        if match.group() != ";" or _parentheses_closed(code, head_start, at):
            head_start = at + 1


def _blank(match):
    return re.sub(r"[^\n]", " ", match.group())


def _parentheses_closed(code, start, end):
    """False inside the head of a for statement."""
    return code.count("(", start, end) <= code.count(")", start, end)


def _scope(code, start, brace, scopes):
    if not code[brace - 1].isspace():
        return Scope("initialiser", brace)  # the formatter puts a space before the brace of a body
    head = code[start:brace]
    while match := LABEL.match(head.lstrip()):
        head = head.lstrip()[match.end() :]
    stripped = head.strip()
    start = brace - len(head.lstrip())
    inside = any(scope.kind == "function" for scope in scopes)
    if NAMESPACE.match(stripped):
        return Scope("namespace", start)
    if TYPE.match(stripped) and "(" not in stripped.split(":")[0]:
        return Scope("type", start)
    if inside:
        return Scope("control" if CONTROL.match(stripped) else "block", start)
    if "(" in stripped and not LAMBDA.search(stripped) and not re.search(r"=\s*$", stripped):
        return Scope("function", start, stripped)
    return Scope("block", start)


def _note_nesting(scopes):
    function = next((scope for scope in scopes if scope.kind == "function"), None)
    if function:
        depth = sum(scope.kind == "control" for scope in scopes)
        function.deepest = max(function.deepest, depth)


def _function(code, scope, end):
    first = code.count("\n", 0, scope.start) + 1
    name, parameters = _signature(scope.name)
    return Function(name, first, code.count("\n", 0, end) + 2 - first, scope.deepest, parameters)


def _signature(head):
    """The name and the number of parameters."""
    opening = re.search(r"([\w:~]+|operator\s*\S+?|operator\s*\(\s*\))\s*\(", head)
    if not opening:
        return head.split("(")[0].strip(), 0
    depth, commas, anything = 0, 0, False
    for character in head[opening.end() :]:
        if character == ")" and depth == 0:
            break
        depth += (character in "(<[{") - (character in ")>]}")
        commas += character == "," and depth == 0
        anything = anything or not character.isspace()
    return opening.group(1), commas + 1 if anything else 0

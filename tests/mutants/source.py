"""The places of a source file that can be broken, and how."""
import collections
import os
import re
import sys

TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\.)*)
  | (?P<raw>R"(?P<fence>[^()\s\\]*)\(.*?\)(?P=fence)")
  | (?P<string>"(?:[^"\\\n]|\\.)*"\w*)
  | (?P<char>'(?:[^'\\\n]|\\.)+')
  | (?P<number>\d(?:'?[\w.])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<mark><=>|->|\+\+|--|<<=|>>=|<<|>>|[-+*/%&|^=!<>]=|&&|\|\||::|\.\.\.|\S)
""", re.VERBOSE | re.MULTILINE | re.DOTALL)

OTHER_OPERATOR = {
    "==": ["!="], "!=": ["=="], "<": ["<="], "<=": ["<"], ">": [">="], ">=": [">"],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "|": ["&"], "&": ["|"]}
COMPARISONS = {"==", "!=", "<", "<=", ">", ">="}
RELEASES = re.compile("^(release|close|reset|stop|cancel|remove|clear|unlock|abort|quit|erase)", re.IGNORECASE)
CLOSING = {"(": ")", "[": "]", "{": "}"}
ASSIGNMENTS = {"=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>="}
ENDS_OF_SUMS = {";", ",", "return", "<<", "&&", "||"}
PLACES_OF_STATEMENTS = {";", "{", "}", "else"}
NO_STATEMENT = {"if", "for", "while", "do", "switch", "case", "default", "return", "else", "using",
                "namespace", "class", "struct", "enum", "template", "static_assert", "try", "catch",
                "public", "private", "protected", "goto"}

Token = collections.namedtuple("Token", "kind text start end")
Mutant = collections.namedtuple("Mutant", "file line nth kind original mutant start end replacement")


class Source:
    """The places of one file that can be broken. It need not compile: the compiler says so."""

    def __init__(self, name, text):
        self.name = name
        self.text = text
        self.tokens = [Token(each.lastgroup if each.lastgroup != "fence" else "raw", each.group(),
                             each.start(), each.end())
                       for each in TOKEN.finditer(text) if each.lastgroup not in ("comment", "directive")]

    def word(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def closing(self, index):
        """Where the bracket that opens at this token closes."""
        opening = self.word(index)
        depth = 0
        for place in range(index, len(self.tokens)):
            depth += (self.word(place) == opening) - (self.word(place) == CLOSING[opening])
            if depth == 0:
                return place
        return len(self.tokens) - 1

    def opening(self, index):
        depth = 0
        for place in range(index, -1, -1):
            depth += (self.word(place) == ")") - (self.word(place) == "(")
            if depth == 0:
                return place
        return 0

    def mutants(self):
        seen = collections.Counter()
        for kind, start, end, replacement in self.edits():
            replacement += "\n" * (self.text.count("\n", start, end) - replacement.count("\n"))  # lines keep their numbers
            begin = self.text.rfind("\n", 0, start) + 1
            stop = self.text.find("\n", end)
            stop = len(self.text) if stop < 0 else stop
            original = " ".join(self.text[begin:stop].split())
            mutant = " ".join((self.text[begin:start] + replacement + self.text[end:stop]).split())
            line = self.text.count("\n", 0, start) + 1
            yield Mutant(self.name, line, seen[original, mutant], kind, original, mutant, start, end, replacement)
            seen[original, mutant] += 1

    def edits(self):
        for index, token in enumerate(self.tokens):
            if token.kind == "number":
                yield from self.other_numbers(token)
            elif token.text in ("true", "false"):
                yield "constant", token.start, token.end, "false" if token.text == "true" else "true"
            elif token.kind in ("string", "char") and self.word(index - 1) != "extern":
                yield "text", token.start, token.end, other_text(token.text)
            elif token.text in OTHER_OPERATOR and self.is_binary(token) and not self.joins_texts(index):
                kind = "comparison" if token.text in COMPARISONS else \
                    "logic" if token.text in ("&&", "||") else "arithmetic"
                for other in OTHER_OPERATOR[token.text]:
                    yield kind, token.start, token.end, other
            elif token.text in ("if", "while") and self.word(index + 1) == "(":
                yield from self.negated(index + 1)
            elif token.text == "std" and self.word(index + 1) == "::":
                yield from self.other_format(index)
            elif token.text == "void":
                yield from self.early_return(index)
        yield from self.statements_gone_and_swapped()

    def is_binary(self, token):
        """As the formatter writes it, with a space on either side: no template, no reference."""
        return self.text[token.start - 1:token.start].isspace() and self.text[token.end:token.end + 1].isspace()

    def joins_texts(self, index):
        """A sum with a literal text in it: there is no other way to put texts together."""
        if self.word(index) != "+":
            return False
        for step in (1, -1):
            place, depth = index + step, 0
            while 0 <= place < len(self.tokens) and depth >= 0:
                word = self.word(place)
                depth += step * ((word in CLOSING) - (word in CLOSING.values()))
                if depth == 0 and (word in ENDS_OF_SUMS or word in ASSIGNMENTS or word in COMPARISONS):
                    break
                if depth == 0 and (self.tokens[place].kind in ("string", "raw") or word == "to_string"):
                    return True
                place += step
        return False

    @staticmethod
    def other_numbers(token):
        parts = re.fullmatch(r"(0[xX][\da-fA-F']+|[\d']+)([A-Za-z_]\w*)?", token.text)
        if not parts:
            return
        digits = parts.group(1).replace("'", "")
        hexadecimal = digits[:2] in ("0x", "0X")
        octal = not hexadecimal and len(digits) > 1 and digits[0] == "0"
        try:
            value = int(digits, 16 if hexadecimal else 8 if octal else 10)
        except ValueError:
            return
        form = "{:#x}" if hexadecimal else "0{:o}" if octal else "{}"
        for other in (value + 1, value - 1):
            written = form.format(other) if other >= 0 else "-1"
            yield "constant", token.start, token.end, written + (parts.group(2) or "")

    def negated(self, index):
        end = self.closing(index)
        inside = self.tokens[index + 1:end]
        if inside and all(each.text not in ("=", ";") for each in inside):  # a declaration cannot be negated
            start, stop = inside[0].start, inside[-1].end
            yield "condition", start, stop, f"!({self.text[start:stop]})"

    def other_format(self, index):
        name = self.word(index + 2)
        last = index + 2
        if name in ("setw", "setfill") and self.word(index + 3) == "(":
            last = self.closing(index + 3)
        elif name in ("hex", "dec"):
            other = "dec" if name == "hex" else "hex"
            yield "format", self.tokens[last].start, self.tokens[last].end, other
        elif name not in ("uppercase", "showbase", "boolalpha", "left", "right", "internal"):
            return
        if self.word(index - 1) == "<<":
            yield "format", self.tokens[index - 1].start, self.tokens[last].end, ""

    def early_return(self, index):
        place = index + 1
        while self.tokens[place:] and (self.tokens[place].kind == "word" or self.word(place) in ("::", "~")):
            place += 1
        if place == index + 1 or self.word(place) != "(":
            return
        place = self.closing(place) + 1
        while self.word(place) in ("const", "noexcept", "override", "final"):
            place += 1
        if self.word(place) == "{" and self.word(place + 1) != "}":
            end = self.tokens[place].end
            yield "return", end, end, " return;"

    def begins_statement(self, index):
        before = self.word(index - 1)
        if before in PLACES_OF_STATEMENTS:
            return True
        return before == ")" and self.word(self.opening(index - 1) - 1) in ("if", "for", "while")

    def statement(self, index):
        """Kind and last token of the expression statement that begins here, or None."""
        first = self.tokens[index]
        if first.text in ("break", "continue") and self.word(index + 1) == ";":
            return "statement", index + 1
        if first.kind != "word" and first.text not in ("*", "++", "--", "::"):
            return None
        if first.text in NO_STATEMENT:
            return None
        if first.text in ("delete", "throw"):
            return "statement", self.end_of_statement(index)
        place = index
        while self.word(place) in ("*", "++", "--", "::"):
            place += 1
        called, kind = "", "statement" if self.word(index) in ("++", "--") else ""
        while place < len(self.tokens):
            word = self.word(place)
            following = self.word(place + 1)
            if self.tokens[place].kind == "word":
                if following not in ("::", ".", "->", "(", "[", "<", "++", "--", ";", "<<") \
                        and following not in ASSIGNMENTS:
                    return None
                called = word if following in ("(", "<") else called
                place += 1
            elif word in ("::", ".", "->"):
                place += 1
            elif word in ("(", "["):
                kind = ("release" if RELEASES.match(called) else "call") if word == "(" else kind
                place = self.closing(place) + 1
            elif word == "<" and not self.is_binary(self.tokens[place]):
                while place < len(self.tokens) and self.word(place) not in (">", ";"):
                    place += 1
                place += 1
            elif word in ("++", "--"):
                kind = "statement"
                place += 1
            elif word in ASSIGNMENTS or word == "<<":
                return "statement", self.end_of_statement(place)
            elif word == ";":
                return (kind, place) if kind else None
            else:
                return None
        return None

    def end_of_statement(self, index):
        while index < len(self.tokens) - 1 and self.word(index) != ";":
            index = self.closing(index) if self.word(index) in CLOSING else index
            index += 1
        return index

    def statements_gone_and_swapped(self):
        before = None
        for index, token in enumerate(self.tokens):
            found = self.statement(index) if self.begins_statement(index) else None
            if not found:
                continue
            kind, last = found
            start, end = token.start, self.tokens[last].end
            yield kind, start, end, ";"
            if before and before[2] == index - 1:
                first, gap = self.text[before[0]:before[1]], self.text[before[1]:start]
                if first != self.text[start:end]:
                    yield "order", before[0], end, self.text[start:end] + gap + first
            before = (start, end, last)


def other_text(literal):
    """The same, with another last letter or digit."""
    quote = literal[0]
    end = literal.rindex(quote)
    pieces = re.findall(r"\\(?:x[0-9a-fA-F]+|[0-7]{1,3}|.)|.", literal[1:end], re.DOTALL)
    if not pieces:
        return quote + "~" + literal[end:]
    plain = [place for place, piece in enumerate(pieces) if piece.isalnum()]
    place = plain[-1] if plain else len(pieces) - 1
    piece = pieces[place]
    if piece.isdigit():
        pieces[place] = str((int(piece) + 1) % 10)
    elif piece.isalpha():
        pieces[place] = "x" if piece != "x" else "y"
    else:
        pieces[place] = "~"
    return quote + "".join(pieces) + literal[end:]


def sources(root, paths):
    names = []
    for path in paths:
        whole = os.path.join(root, path)
        if os.path.isfile(whole):
            names.append(path)
        for directory, _, files in os.walk(whole):
            names += [os.path.relpath(os.path.join(directory, file), root)
                      for file in files if file.endswith(".cpp")]
    if not names:
        sys.exit(f"mutation: no .cpp file in {' '.join(paths)}")
    result = []
    for name in sorted(set(names)):
        with open(os.path.join(root, name), encoding="utf-8") as file:
            result.append(Source(name, file.read()))
    return result

"""What came of the mutants that have been tried, and how it is told."""
import collections
import json
import os
import re
import sys

from mutants.source import sources

FOUND = ("killed", "hung")
BEGIN, END = "<!-- figures -->\n", "<!-- end of figures -->\n"


def key(mutant):
    """The same wherever the line has moved to."""
    return (mutant["file"], mutant["original"], mutant["mutant"], mutant.get("nth", 0))


def read_results(path):
    results = {}
    if os.path.exists(path):
        with open(path, encoding="utf-8") as file:
            for line in file:
                if line.endswith("\n"):  # the last one may have been interrupted
                    result = json.loads(line)
                    results[key(result)] = result
    return results


def read_reasons(path):
    """Blocks of: file, "- " and the line, "+ " and the mutant, "= " and the reason."""
    reasons = {}
    if not os.path.exists(path):
        return reasons
    with open(path, encoding="utf-8") as file:
        blocks = [block.splitlines() for block in re.split(r"\n\s*\n", file.read().strip())]
    for block in blocks:
        block = [line for line in block if not line.startswith("#")]
        if not block:
            continue
        if [line[:2] for line in block[1:]] != ["- ", "+ ", "= "]:
            sys.exit(f"mutation: {path}: not a file, a line, a mutant and a reason: {block}")
        reasons[(block[0], block[1][2:], block[2][2:])] = block[3][2:]
    return reasons


class Record:
    """The results of mutants that are still in the source: each with its line of today."""

    def __init__(self, results, equivalents, root):
        present = {}
        for name in {result["file"] for result in results} | {name for name, _, _ in equivalents}:
            found = sources(root, [name])[0].mutants() if os.path.exists(os.path.join(root, name)) else []
            for mutant in found:
                present[key(mutant._asdict())] = mutant
        places = {(mutant.file, mutant.original, mutant.mutant) for mutant in present.values()}
        self.stale = [each for each in equivalents if each not in places]
        self.tried = []
        for result in results:
            if key(result) in present:
                result = {**result, "line": present[key(result)].line}
                if result["outcome"] == "survived" and key(result)[:3] in equivalents:
                    result["outcome"] = "equivalent"
                self.tried.append(result)

    def those(self, *outcomes):
        return [each for each in self.tried if each["outcome"] in outcomes]

    def survivors(self):
        return sorted(self.those("survived"), key=lambda each: (each["file"], each["line"], each["mutant"]))

    def score(self, results):
        found = sum(each["outcome"] in FOUND for each in results)
        missed = sum(each["outcome"] == "survived" for each in results)
        return 100 * found / (found + missed) if found + missed else 0

    def show(self):
        for each in self.survivors():
            print(f"{each['file']}:{each['line']}: {each['kind']}\n- {each['original']}\n+ {each['mutant']}\n")
        for name, original, mutant in self.stale:
            print(f"No such place for an equivalent mutant: {name}\n- {original}\n+ {mutant}\n")
        found, missed = len(self.those(*FOUND)), len(self.survivors())
        print(f"{self.score(self.tried):.1f} % found: {found} of {found + missed}, {len(self.those('hung'))} of them "
              f"hung; {missed} survived, {len(self.those('equivalent'))} equivalent, "
              f"{len(self.those('invalid'))} did not compile")
        return 1 if self.stale else 0

    def tables(self):
        """By folder and by kind, in Markdown."""
        lines = []
        for name, of in (("folder", lambda each: f"`{os.path.dirname(each['file']) or '.'}`"),
                         ("kind", lambda each: each["kind"])):
            groups = collections.defaultdict(list)
            for each in self.tried:
                if each["outcome"] != "invalid":
                    groups[of(each)].append(each)
            lines += [f"| {name} | tried | found | equivalent | survived | found of those not equivalent |",
                      "|---|---:|---:|---:|---:|---:|"]
            rows = [*sorted(groups.items()), ("**all**", [each for group in groups.values() for each in group])]
            for title, group in rows:
                counts = collections.Counter(each["outcome"] for each in group)
                lines.append(f"| {title} | {len(group)} | {counts['killed'] + counts['hung']} | "
                             f"{counts['equivalent']} | {counts['survived']} | {self.score(group):.0f} % |")
            lines.append("")
        return lines

    def write_page(self, path, reasons):
        """Puts the figures, the tables and what has survived between the two marks of a Markdown file."""
        with open(path, encoding="utf-8") as file:
            text = file.read()
        before, begin, rest = text.partition(BEGIN)
        _, end, after = rest.partition(END)
        if not end:
            sys.exit(f"mutation: {path} has no place for the figures: {BEGIN} and {END}")
        found, missed, equivalent = len(self.those(*FOUND)), self.survivors(), len(self.those("equivalent"))
        lines = ["", f"**{self.score(self.tried):.1f} % of {found + len(missed)} changes that somebody could see are "
                     f"found.** {found + len(missed) + equivalent} places were", f"tried. {len(self.those('hung'))} of "
                     f"the {found} that were found made a test wait for ever. {equivalent} changes are equivalent:",
                 "the compiler makes the same code of them, or `tests/mutation.equivalent` says why nobody can see",
                 f"them. {len(self.those('invalid'))} more did not compile and count for nothing.", "", *self.tables()]
        if missed:
            lines += ["What has survived:", "", "| file | kind | line | broken | why |", "|---|---|---|---|---|"]
        for each in missed:
            cells = [f"`{os.path.basename(each['file'])}`", each["kind"], code(each["original"]), code(each["mutant"]),
                     reasons.get(key(each)[:3], "")]
            lines.append(f"| {' | '.join(cells)} |")
        with open(path, "w", encoding="utf-8") as file:
            file.write(before + begin + "\n".join(lines).rstrip() + "\n\n" + end + after)


def code(text):
    """In a cell of a table in Markdown."""
    return "<code>" + text.replace("&", "&amp;").replace("<", "&lt;").replace("|", "&#124;") + "</code>"

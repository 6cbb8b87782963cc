"""One mutant after another: compiled, linked into the tests that reach it, and run."""
import collections
import json
import os
import time

from mutants.bench import Bench
from mutants.build_tree import BuildTree
from mutants.choice import choose
from mutants.laboratory import Laboratory
from mutants.programs import test_programs
from mutants.record import Record, key, read_reasons, read_results
from mutants.source import sources

SHORT = 0.5  # seconds of a program in which it is not worth while to ask its likeliest tests first


class Trials:
    def __init__(self, options, root):
        self.options = options
        self.kinds = options.kinds.split(",")
        os.makedirs(options.work, exist_ok=True)
        self.results_path = os.path.join(options.work, "results.jsonl")
        self.results = read_results(self.results_path)
        self.files = {source.name: source for source in sources(root, options.paths)}
        self.equivalents = read_reasons(options.equivalent)
        self.chosen = self.choose([each for source in self.files.values() for each in source.mutants()])
        self.waiting = collections.defaultdict(list)
        for mutant in sorted(self.chosen, key=lambda each: each.file):
            if mutant.file.startswith(tuple(options.only) or "") and self.kinds_to_try(mutant):
                self.waiting[mutant.file].append(mutant)
        self.root = root
        self.sound = {}

    def choose(self, mutants):
        if not self.options.survivors:
            return choose(mutants, self.options.count, self.options.seed)
        return [each for each in mutants if self.result_of(each).get("outcome") == "survived"
                and key(each._asdict())[:3] not in self.equivalents]

    def result_of(self, mutant):
        return self.results.get(key(mutant._asdict()), {})

    def kinds_to_try(self, mutant):
        result = self.result_of(mutant)
        if not result:
            return self.kinds
        if result["outcome"] != "survived":
            return []
        return [each for each in self.kinds if self.options.again or each not in result.get("kinds", [])]

    def run(self):
        print(f"{len(self.chosen)} mutants, {sum(map(len, self.waiting.values()))} of them to try", flush=True)
        try:
            if self.waiting:
                self.set_up()
                for name, mutants in self.waiting.items():
                    self.try_file(name, mutants)
        except KeyboardInterrupt:
            print("Interrupted.")
        ours = {key(mutant._asdict()) for mutant in self.chosen}
        record = Record([each for each in self.results.values() if key(each) in ours],
                        self.equivalents, self.root)
        return record.show()

    def set_up(self):
        self.laboratory = Laboratory(self.root, self.options.build, self.options.work)
        self.laboratory.configure()
        self.tests = test_programs(self.laboratory)
        self.tree = BuildTree(self.laboratory.inside("build.ninja"), os.path.join(self.root, self.laboratory.build))
        self.bench = Bench(self.laboratory, self.tree, os.path.join(self.options.work, "unbroken"))
        needed = set()
        for name in self.waiting:
            for program in self.programs_of(name):
                needed |= {program.output, *self.tree.started(program.output)}
        status, output = self.laboratory.make(self.options.jobs, *sorted(needed))
        if status != 0:
            raise RuntimeError("mutation: what is not broken cannot be built\n" + output)

    def programs_of(self, name):
        reached = [self.tests[each] for each in self.tree.programs(os.path.join(self.root, name)) if each in self.tests]
        return [each for each in reached if each.kind in self.kinds]

    def is_sound(self, program):
        if program.output not in self.sound:
            for each in (program.output, *self.tree.started(program.output)):
                self.bench.keep_unbroken(each)
            self.sound[program.output] = program.is_sound(self.laboratory, self.options.slowest)
        return self.sound[program.output]

    def try_file(self, name, mutants):
        programs = [each for each in self.programs_of(name) if self.is_sound(each)]
        programs.sort(key=lambda each: (self.kinds.index(each.kind), each.seconds))  # the shortest way first
        if not programs:
            print(f"{name}: no test program reaches it")
            return
        time_unbroken = self.laboratory.time_of(name)
        self.bench.begin(os.path.join(self.root, name))
        try:
            for mutant in mutants:
                began = time.monotonic()
                kinds = self.kinds_to_try(mutant)
                outcome, by = self.try_mutant(mutant, [each for each in programs if each.kind in kinds])
                before = self.result_of(mutant).get("kinds", [])
                self.add({**mutant._asdict(), "outcome": outcome, "by": by, "kinds": sorted({*before, *kinds}),
                          "seconds": round(time.monotonic() - began, 1)})
        finally:
            self.bench.end()
            self.laboratory.put_back(name, self.files[name].text, time_unbroken)

    def add(self, result):
        self.results[key(result)] = result
        with open(self.results_path, "a", encoding="utf-8") as file:
            file.write(json.dumps(result) + "\n")
        print(f"{result['outcome']} {result['file']}:{result['line']}: {result['mutant']}", flush=True)

    def try_mutant(self, mutant, programs):
        text = self.files[mutant.file].text
        self.laboratory.put(mutant.file, text[:mutant.start] + mutant.replacement + text[mutant.end:])
        compiles, changed = self.bench.compile()
        if not compiles:
            return "invalid", ""
        if not changed:
            return "equivalent", "same code"
        for program in programs:
            links, changed = self.bench.link(program.output)
            if not links:
                return "invalid", ""
            if not changed:
                continue
            likely = self.likely_tests(mutant.file, program) if program.seconds > SHORT else []
            verdict = program.verdict(self.laboratory, self.options.timeout, likely) if likely else None
            verdict = verdict or program.verdict(self.laboratory, self.options.timeout)
            if verdict:
                return verdict
        return "survived", ""

    def likely_tests(self, name, program):
        """Those that have found something in this file, and those named for it."""
        found = collections.Counter()
        for result in self.results.values():
            output, _, test = result.get("by", "").partition(" ")
            if result["file"] == name and output == program.output and "." in test:
                found[test] += 1
        stem = os.path.splitext(os.path.basename(name))[0]
        return [*(test for test, _ in found.most_common(8)), f"*{stem}*"]

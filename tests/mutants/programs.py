"""Test programs, and whether they pass unbroken."""
import json
import os
import re
import resource
import signal
import time

ATTEMPTS = 3
KILLED_BY_CPU_LIMIT = (-signal.SIGXCPU, 128 + signal.SIGXCPU)


class TestProgram:
    """One of ctest's GoogleTest programs, as it is called there."""

    def __init__(self, output, kind, command, directory, environment):
        self.output = output
        self.kind = kind
        self.command = command
        self.directory = directory
        self.environment = environment
        self.left_out = []
        self.seconds = None  # until its tests have passed unbroken
        self.cpu_seconds = None

    def run(self, laboratory, seconds, cpu_seconds=None, only=(), fail_fast=True):
        left_out = "-" + ":".join(self.left_out) if self.left_out else ""
        filters = [f"--gtest_filter={':'.join(only) or '*'}{left_out}"] if only or left_out else []
        fast = ["--gtest_fail_fast"] if fail_fast else []
        return laboratory.call([*self.command, "--gtest_brief=1", *filters, *fast], seconds, cpu_seconds,
                               self.directory, self.environment)

    def is_sound(self, laboratory, longest):
        """Passes unbroken, but for tests that cannot run together with the others."""
        for _ in range(ATTEMPTS):
            before = len(self.left_out)
            status = self.measure(laboratory, longest)
            if len(self.left_out) == before:
                break
        if status != 0:
            why = "takes too long" if status is None else "fails unbroken"
            print(f"{self.output} {why}: left out", flush=True)
            return False
        without = f", without {', '.join(self.left_out)}" if self.left_out else ""
        print(f"{self.output} passes in {self.seconds:.1f} s{without}", flush=True)
        return True

    def measure(self, laboratory, longest):
        def cpu():
            usage = resource.getrusage(resource.RUSAGE_CHILDREN)
            return usage.ru_utime + usage.ru_stime

        began, cpu_began = time.monotonic(), cpu()
        status, output = self.run(laboratory, longest, fail_fast=False)
        self.seconds, self.cpu_seconds = time.monotonic() - began, cpu() - cpu_began
        if status not in (0, None):
            self.left_out += sorted(set(re.findall(r"^\[  FAILED  \] ([^\s,]+\.[^\s,]+)", output, re.MULTILINE)))
        return status

    def verdict(self, laboratory, patience, only=()):
        """Outcome and what failed, or None if it passes. Whoever turns in a circle is told by the processor's
        time, and whoever waits by the clock, which may be slow on a machine with much to do: what fails on
        such a machine, and does not when it is asked again, has found nothing."""
        limits = (patience + 10 * self.seconds, 20 + 10 * self.cpu_seconds)
        for _ in range(ATTEMPTS):
            status, output = self.run(laboratory, *limits, only)
            if status == 0:
                return None
            if status is None or status in KILLED_BY_CPU_LIMIT:
                return "hung", self.output
            failed = re.search(r"^\[  FAILED  \] ([^\s,]+\.[^\s,]+)", output, re.MULTILINE)
            if failed is None or self.run(laboratory, *limits, [failed.group(1)])[0] != 0:
                return "killed", f"{self.output} {failed.group(1) if failed else status}"
        return None


def test_programs(laboratory):
    status, output = laboratory.call(["ctest", "--test-dir", laboratory.build, "--show-only=json-v1"], 600)
    if status != 0:
        raise RuntimeError("mutation: no list of tests\n" + output)
    build = os.path.join(laboratory.root, laboratory.build)
    programs = {}
    for test in json.loads(output[output.index("{"):])["tests"]:
        command = test.get("command", [])
        properties = {each["name"]: each["value"] for each in test.get("properties", [])}
        options = [place for place, each in enumerate(command) if each.startswith("--gtest_filter=")]
        if not options:
            continue
        command = command[:options[0]]
        output = os.path.relpath(command[-1], build)
        directory = properties["WORKING_DIRECTORY"]
        kind = os.path.relpath(directory, os.path.join(build, "tests")).split(os.sep)[0]
        programs.setdefault(output, TestProgram(output, kind, command, directory,
                                                properties.get("ENVIRONMENT", [])))
    return programs

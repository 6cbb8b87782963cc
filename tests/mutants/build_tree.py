"""What the build makes of a source file, as build.ninja says."""
import os


class BuildTree:
    def __init__(self, ninja_file, build):
        """build is where the tree stands for its own commands."""
        self.build = build
        self.edges = {}
        with open(ninja_file, encoding="utf-8") as file:
            for line in file:
                if line.startswith("build ") and ": CXX_" in line:
                    outputs, inputs = line[len("build "):].split(": ", 1)
                    inputs, _, after = inputs.strip().partition(" || ")
                    inputs, _, implicit = inputs.partition(" | ")
                    rule, *inputs = inputs.split()
                    self.edges[outputs.split(" | ")[0]] = (rule, [*inputs, *implicit.split()], after.split())

    def objects(self, source):
        return [output for output, (rule, inputs, _) in self.edges.items()
                if rule.startswith("CXX_COMPILER") and inputs
                and os.path.normpath(os.path.join(self.build, inputs[0])) == source]

    def sources_of_objects(self, directory):
        """What is compiled into that directory by a name, and not made by the build itself."""
        for output, (rule, inputs, _) in self.edges.items():
            if rule.startswith("CXX_COMPILER") and os.path.dirname(output) == directory:
                source = os.path.normpath(os.path.join(self.build, inputs[0]))
                if not source.startswith(self.build + os.sep):
                    yield source

    def archives(self, source):
        objects = set(self.objects(source))
        return [output for output, (rule, inputs, _) in self.edges.items()
                if rule.startswith("CXX_STATIC_LIBRARY") and objects & set(inputs)]

    def is_program(self, output):
        return self.edges.get(output, ("",))[0].startswith("CXX_EXECUTABLE")

    def started(self, program):
        """Other programs of the build that must be there when it runs."""
        return [each for each in self.edges[program][2] if self.is_program(each)]

    def made_of(self, source):
        """The programs whose link has the file."""
        parts = {*self.objects(source), *self.archives(source)}
        return {output for output, (_, inputs, _) in self.edges.items()
                if self.is_program(output) and parts & set(inputs)}

    def programs(self, source):
        """Those made of it, and those that start one."""
        made = self.made_of(source)
        return {output for output in self.edges
                if output in made or self.is_program(output) and made & set(self.started(output))}

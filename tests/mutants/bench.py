"""From one source file to the programs that it is in."""
import filecmp
import os
import re
import shutil


class Bench:
    """Makes the files that come of one source file, with the build's own commands."""

    def __init__(self, laboratory, tree, unbroken):
        self.laboratory = laboratory
        self.tree = tree
        self.unbroken = unbroken  # where the programs are kept as they were
        self.commands = {}
        self.headers = {}
        self.objects = self.archives = self.programs = ()
        self.original_objects = {}
        self.unbroken_objects = {}
        self.linked = set()

    def command_of(self, output):
        if output not in self.commands:
            command = self.laboratory.command_of(output)
            if self.tree.is_program(output) and shutil.which("ld.gold"):  # several times as fast
                command = command.replace(f" -o {output} ", f" -fuse-ld=gold -o {output} ", 1)
            elif output in self.objects:
                # What is left over when something was taken away is no reason not to compile.
                command += f" -w -O1 {self.compiled_headers(output, command)}"
            self.commands[output] = command
        return self.commands[output]

    def compiled_headers(self, output, command):
        """The libraries' headers that the files of a target include: most of the time goes into them."""
        target = os.path.dirname(output)
        if target not in self.headers:
            names = set()
            for source in self.tree.sources_of_objects(target):
                with open(source, encoding="utf-8") as file:
                    names |= set(re.findall(r"^#include (<(?:[^.>]+|[^>]+\.hpp)>)$", file.read(), re.MULTILINE))
            header = os.path.join(target, "mutation-headers.h")
            with open(self.laboratory.inside(header), "w", encoding="utf-8") as file:
                file.write("".join(f"#include {name}\n" for name in sorted(names)))
            made = re.sub(r" -o \S+ -c \S+$", f" -w -O1 -x c++-header -o {header}.gch -c {header}", command)
            self.headers[target] = f"-include {header}" if self.laboratory.call_in_build(made)[0] == 0 else ""
        return self.headers[target]

    def make(self, output):
        return self.laboratory.call_in_build(self.command_of(output))

    def keep_unbroken(self, program):
        """Called before anything is broken."""
        kept = os.path.join(self.unbroken, program)
        if program not in self.commands:
            status, output = self.make(program)
            if status != 0:
                raise RuntimeError(f"mutation: {program} cannot be linked\n{output}")
            os.makedirs(os.path.dirname(kept), exist_ok=True)
            shutil.copy2(self.laboratory.inside(program), kept)

    def begin(self, source):
        self.objects = self.tree.objects(source)
        self.archives = self.tree.archives(source)
        self.programs = self.tree.made_of(source)
        self.original_objects = {each: self.read(each) for each in self.objects}
        for each in self.objects:
            status, output = self.make(each)
            if status != 0:
                raise RuntimeError(f"mutation: {each} cannot be compiled\n{output}")
        self.unbroken_objects = {each: self.read(each) for each in self.objects}

    def read(self, output):
        with open(self.laboratory.inside(output), "rb") as file:
            return file.read()

    def compile(self):
        """Whether it compiles, and whether anything but the text has changed."""
        self.linked = set()
        if any(self.make(each)[0] != 0 for each in self.objects):
            return False, False
        changed = any(self.read(each) != self.unbroken_objects[each] for each in self.objects)
        return not changed or all(self.make(each)[0] == 0 for each in self.archives), changed

    def link(self, program):
        """Whether that could be done, and whether the file is in the program at all."""
        changed = False
        for each in (program, *self.tree.started(program)):
            if each in self.programs:
                if each not in self.linked and self.make(each)[0] != 0:
                    return False, False
                self.linked.add(each)
                changed = changed or not filecmp.cmp(self.laboratory.inside(each), os.path.join(self.unbroken, each),
                                                     shallow=False)
        return True, changed

    def end(self):
        for name, content in self.original_objects.items():
            with open(self.laboratory.inside(name), "wb") as file:
                file.write(content)
        for each in self.archives:
            self.make(each)
        for each in self.programs:
            kept = os.path.join(self.unbroken, each)
            if os.path.exists(kept):
                shutil.copy(kept, self.laboratory.inside(each))

"""A copy of tree and build tree in which things may break."""
import filecmp
import os
import resource
import shutil
import subprocess

LEFT_OUT = ("virtual-machine", "endurance-machine", "packages", "installed", "test-output", "unattended")


class Laboratory:
    """Stands where tree and build tree stand, for whoever is called in it."""

    def __init__(self, root, build, work):
        self.root = root
        self.build = os.path.relpath(os.path.realpath(build), root)
        self.tree = os.path.join(work, "tree")
        os.makedirs(self.tree, exist_ok=True)
        self.copy_sources()
        if not os.path.exists(self.inside("build.ninja")):
            shutil.rmtree(self.inside(), ignore_errors=True)
            shutil.copytree(os.path.join(root, self.build), self.inside(), symlinks=True,
                            ignore=shutil.ignore_patterns(*LEFT_OUT))

    def inside(self, *names):
        """A file of the copied build tree."""
        return os.path.join(self.tree, self.build, *names)

    @staticmethod
    def files(root):
        for directory, directories, files in os.walk(root):
            if directory == root:
                directories[:] = [each for each in directories if each not in (".git", "build")]
            for file in files:
                yield os.path.relpath(os.path.join(directory, file), root)

    def copy_sources(self):
        for name in set(self.files(self.tree)) - set(self.files(self.root)):
            os.remove(os.path.join(self.tree, name))
        for name in self.files(self.root):
            original, copy = os.path.join(self.root, name), os.path.join(self.tree, name)
            if not os.path.lexists(copy):
                os.makedirs(os.path.dirname(copy), exist_ok=True)
                shutil.copy2(original, copy, follow_symlinks=False)
            elif not os.path.islink(original) and not filecmp.cmp(original, copy, shallow=False):
                shutil.copyfile(original, copy)
                shutil.copymode(original, copy)

    def call(self, command, seconds, cpu_seconds=None, directory=None, environment=()):
        """Status and output; what it started ends with it. The status is None if it took too long."""
        inside = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]
        if os.geteuid() != 0:
            inside.append("--map-root-user")
        # What is broken is made once: a build with ccache need not keep it.
        script = 'mount --bind "$0" "$1" && cd "$2" && shift 2 && exec env CCACHE_DISABLE=1 "$@"'
        inside += ["sh", "-c", script, self.tree, self.root, directory or self.root, *environment, *command]
        try:
            done = subprocess.run(inside, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, timeout=seconds, check=False, errors="replace",
                                  preexec_fn=lambda: bound(cpu_seconds))
        except subprocess.TimeoutExpired:
            return None, ""
        return done.returncode, done.stdout

    def call_in_build(self, command):
        return self.call(["sh", "-c", command], 3600, directory=os.path.join(self.root, self.build),
                         environment=["CCACHE_DISABLE=1"])

    def configure(self):
        """As it is, and with the files that have come since; but each file of the product by itself, not
        several of them at a time: one is compiled again for each mutant."""
        status, output = self.call(["cmake", "-B", self.build, "-DCMAKE_UNITY_BUILD=OFF"], 600)
        if status != 0:
            raise RuntimeError("mutation: the copy cannot be configured\n" + output)

    def make(self, jobs, *targets):
        return self.call(["ninja", "-C", self.build, "-j", str(jobs), *targets], 3600)

    def command_of(self, output):
        """How the build makes this one file."""
        status, text = self.call(["ninja", "-C", self.build, "-t", "commands", "-s", output], 600)
        lines = [line for line in text.splitlines() if not line.startswith("ninja: ")]
        if status != 0 or not lines:
            raise RuntimeError(f"mutation: nothing says how {output} is made\n{text}")
        return lines[-1]

    def put(self, name, text):
        with open(os.path.join(self.tree, name), "w", encoding="utf-8") as file:
            file.write(text)

    def put_back(self, name, text, time):
        """As old as it was, so that the build makes nothing of it again."""
        self.put(name, text)
        os.utime(os.path.join(self.tree, name), ns=(time, time))

    def time_of(self, name):
        return os.stat(os.path.join(self.tree, name)).st_mtime_ns


def bound(cpu_seconds):
    resource.setrlimit(resource.RLIMIT_DATA, (4 << 30, 4 << 30))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    if cpu_seconds is not None:
        resource.setrlimit(resource.RLIMIT_CPU, (int(cpu_seconds), int(cpu_seconds) + 5))

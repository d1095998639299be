"""The build that the mutants are tested with: a copy of the tree, compiled once. A mutant compiles
what contains its file again and links only the test programs that its folder's tests are in."""

import ctypes
import json
import os
import resource
import shlex
import shutil
import signal
import subprocess
import tempfile
import time

FLAGS = "-O1 -g0"
PRODUCT_FOLDERS = ("support", "web", "tool", "platform")
PROGRAM = "tool/corvella"

# A program that takes its time is run in so many shares at once: most of that time is waiting.
SHARES = 6
MEMORY_LIMIT = 6 << 30

# Why a test program was ended. On a busy machine the second says little.
PROCESSOR_TIME = "processor time"
WAITING_TIME = "waiting time"

# Left out: they wait for the real time-out, whose code the replaced clock reaches in no time.
LEFT_OUT = ("web_timeout_tests", "tool_timeout_tests")


def tests_of(file):
    """The folders with the tests of a product file: they mirror the tree, but that what there is
    for Mac OS X is tested together, with what of the web client stands on it, and what fails call
    by call is one program."""
    if file.endswith("_macos.cpp"):
        return ["tests/platform"]
    folders = ["tests/" + os.path.dirname(file)]
    if file.startswith(("support/", "web/")):
        folders.append("tests/failures")
    if file.startswith("web/"):
        folders.append("tests/platform")
    return folders


def programs_of(file, programs):
    """Those of the test programs that are in a file's folders; there has to be one."""
    found = [name for name in programs if os.path.dirname(name) in tests_of(file)
             and os.path.basename(name) not in LEFT_OUT]
    if not found:
        raise SystemExit(f"{file}: no test program in {', '.join(tests_of(file))}")
    return found


def product_files(tree):
    """Every file of the product."""
    return sorted(str(path.relative_to(tree)) for folder in PRODUCT_FOLDERS
                  for path in (tree / folder).rglob("*") if path.suffix in (".cpp", ".h"))


def copy_tree(source, target):
    """Brings the copy up to date. A file that has not changed keeps its time."""
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=source,
                            check=True, capture_output=True, text=True).stdout
    wanted = {name for name in listed.split("\0") if name and (source / name).is_file()}
    for old in target.rglob("*"):
        if old.is_file() and str(old.relative_to(target)) not in wanted:
            old.unlink()
    for name in wanted:
        copy = target / name
        content = (source / name).read_bytes()
        if not copy.exists() or copy.read_bytes() != content:
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(source / name, copy)
            os.utime(copy)


class Build:
    def __init__(self, top, place):
        self.tree = place / "tree"
        self.dir = place / "build"
        copy_tree(top, self.tree)
        self._ninja(["cmake", "-S", self.tree, "-B", self.dir, "-G", "Ninja",
                     "-DCMAKE_BUILD_TYPE=Mutation", f"-DCMAKE_CXX_FLAGS_MUTATION={FLAGS}"])
        self._ninja(["cmake", "--build", self.dir])
        with open(self.dir / "CMakeCache.txt") as cache:
            launcher = [line for line in cache if line.startswith("CMAKE_CXX_COMPILER_LAUNCHER")]
        self.launcher = launcher[0].split("=")[1].strip() if launcher else ""
        self.commands = self._compile_commands()
        self.dependencies = self._dependencies()
        self.links = self._links()
        self.archives = self._archives()

    @staticmethod
    def _ninja(command):
        done = subprocess.run([str(word) for word in command], capture_output=True, text=True)
        if done.returncode != 0:
            raise SystemExit(done.stdout + done.stderr)

    def _output(self, *words):
        return subprocess.run(["ninja", *words], cwd=self.dir, check=True, capture_output=True,
                              text=True).stdout

    def _compile_commands(self):
        """The compiler's words for each object. Warnings do not matter to a mutant, but for the
        one of a function that ends without a value."""
        database = self.dir / "compile_commands.json"
        database.write_text(self._output("-t", "compdb"))
        commands = {}
        for entry in json.loads(database.read_text()):
            if not entry["output"].endswith(".o"):
                continue
            words = [word for word in shlex.split(entry["command"])
                     if not word.startswith("-W") and word != self.launcher]
            for flag in ("-MT", "-MF"):
                at = words.index(flag)
                del words[at:at + 2]
            words.remove("-MD")
            commands[entry["output"]] = words + ["-Wreturn-type", "-Werror=return-type"]
        return commands

    def _dependencies(self):
        """For each object the files of the tree that it is made of."""
        result = {}
        current = None
        for line in self._output("-t", "deps").splitlines():
            if line and not line[0].isspace():
                current = result.setdefault(line.split(":")[0], set())
            elif line.strip():
                path = os.path.relpath(os.path.join(self.dir, line.strip()), self.tree)
                if not path.startswith(".."):
                    current.add(path)
        return result

    def _links(self):
        """The linker's words for each program."""
        links = {}
        for line in self._output("-t", "targets", "all").splitlines():
            name, _, rule = line.partition(": ")
            if rule.startswith("CXX_EXECUTABLE_LINKER"):
                command = self._output("-t", "commands", "-s", name)
                words = shlex.split(command.split("&&")[1])
                links[name] = [word for word in words if word != self.launcher]
        return links

    def _archives(self):
        """The objects in each library."""
        archives = {}
        for line in self._output("-t", "targets", "all").splitlines():
            name, _, rule = line.partition(": ")
            if rule.startswith("CXX_STATIC_LIBRARY_LINKER"):
                inputs = self._output("-t", "query", name).splitlines()
                archives[name] = [word.strip() for word in inputs if word.strip().endswith(".o")]
        return archives

    def programs_of(self, file):
        """The test programs of a file's folders."""
        return programs_of(file, self.links)

    def objects_in(self, program):
        objects = []
        for word in self.links[program]:
            objects += self.archives.get(word, [word] if word.endswith(".o") else [])
        return objects


class Worker:
    """A place of its own in which one mutant at a time is compiled, linked and run."""

    def __init__(self, build, place):
        self.build = build
        self.place = place
        shutil.rmtree(place, ignore_errors=True)
        self.overlay = place / "overlay"
        self.overlay.mkdir(parents=True)
        self.reference = {}  # an object's bytes as this worker compiles the original
        self.with_mutant = set()  # the programs that were linked with a mutant last
        # The tool's tests look for the program where this worker links it.
        self.own_objects = {}
        for name in build.commands:
            if name.endswith("program_under_test.cpp.o"):
                assert self.compile(name, place / "own" / name) is None
                self.own_objects[name] = place / "own" / name
        for name in build.links:
            if name == PROGRAM or name.startswith("tests/tool/"):
                self.link(name, self.own_objects)

    def compile(self, name, output, extra=()):
        """Makes an object from the overlay and the tree. Returns what the compiler said if it
        refuses, or None."""
        output.parent.mkdir(parents=True, exist_ok=True)
        words = list(self.build.commands[name])
        words[words.index("-o") + 1] = str(output)
        at = words.index("-c") + 1
        replaced = self.overlay / os.path.relpath(words[at], self.build.tree)
        if replaced.exists():
            words[at] = str(replaced)
        program = str(self.build.dir / PROGRAM)
        words = [word.replace(program, str(self.place / PROGRAM)) for word in words]
        words[1:1] = [f"-I{self.overlay}", f"-ffile-prefix-map={self.overlay}={self.build.tree}"]
        done = subprocess.run(words + list(extra), cwd=self.build.dir, capture_output=True,
                              text=True, env=dict(os.environ, CCACHE_DISABLE="1"))
        return None if done.returncode == 0 else done.stderr

    def reference_object(self, name, extra=()):
        """The bytes of an object made in the same way from the original."""
        key = (name, *extra)
        if key not in self.reference:
            hidden = self.place / "hidden"
            os.rename(self.overlay, hidden)
            self.overlay.mkdir()
            for path in hidden.rglob("*"):  # the original, under the same path
                if path.is_file():
                    same = self.overlay / path.relative_to(hidden)
                    same.parent.mkdir(parents=True, exist_ok=True)
                    shutil.copy(self.build.tree / path.relative_to(hidden), same)
            refused = self.compile(name, self.place / "reference.o", extra)
            assert refused is None, refused
            shutil.rmtree(self.overlay)
            os.rename(hidden, self.overlay)
            self.reference[key] = (self.place / "reference.o").read_bytes()
        return self.reference[key]

    def link(self, program, replaced):
        """Links a program with objects replaced by others. Returns its path."""
        words = list(self.build.links[program])
        output = self.place / program
        output.parent.mkdir(parents=True, exist_ok=True)
        for at, word in enumerate(words):
            if word in replaced:
                words[at] = str(replaced[word])
            elif any(name in replaced for name in self.build.archives.get(word, ())):
                words[at] = str(self._archive(word, replaced))
            elif word == program:
                words[at] = str(output)
        done = subprocess.run(words, cwd=self.build.dir, capture_output=True, text=True)
        return output if done.returncode == 0 else None

    def _archive(self, name, replaced):
        copy = self.place / "archives" / name
        copy.parent.mkdir(parents=True, exist_ok=True)
        copy.unlink(missing_ok=True)
        objects = [str(replaced.get(member, member)) for member in self.build.archives[name]]
        subprocess.run(["ar", "qcs", str(copy), *objects], cwd=self.build.dir, check=True)
        return copy

    def clear_overlay(self):
        shutil.rmtree(self.overlay)
        self.overlay.mkdir()


C_LIBRARY = ctypes.CDLL(None)
PR_SET_PDEATHSIG = 1


# A mutant may do anything to the files that it may write, devices included: never as root.
NOBODY = 65534


def limit_resources(cpu_seconds):
    def limit():
        if os.geteuid() == 0:
            os.setgroups([])
            os.setgid(NOBODY)
            os.setuid(NOBODY)
        C_LIBRARY.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)
        resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds + 2))
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    return limit


def first_failure(output):
    for line in output.splitlines():
        if line.startswith("[  FAILED  ]"):
            return line.split("]", 1)[1].strip().split(" (")[0].rstrip(".,")
    return "ended early"


class Share:
    """One running share of a test program, in a directory and a process group of its own."""

    def __init__(self, program, number, count, cpu_seconds):
        self.directory = tempfile.TemporaryDirectory(prefix="mutant.", ignore_cleanup_errors=True)
        if os.geteuid() == 0:
            os.chown(self.directory.name, NOBODY, NOBODY)
        self.log = open(os.path.join(self.directory.name, "log"), "w+", errors="replace")
        environment = dict(os.environ, GTEST_TOTAL_SHARDS=str(count), GTEST_SHARD_INDEX=str(number),
                           TMPDIR=self.directory.name, GTEST_FAIL_FAST="1", GTEST_BRIEF="1")
        self.process = subprocess.Popen([str(program)], cwd=self.directory.name, env=environment,
                                        stdin=subprocess.DEVNULL, stdout=self.log, stderr=self.log,
                                        start_new_session=True,
                                        preexec_fn=limit_resources(cpu_seconds))

    def end(self):
        """Ends what is still running of it."""
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.process.wait()
        self.log.seek(0)
        output = self.log.read(1 << 20)
        self.log.close()
        self.directory.cleanup()
        return output


def run_program(program, seconds, cpu_seconds, shares=1):
    """Runs a test program. Returns None when it passes, or why it does not."""
    deadline = time.monotonic() + seconds
    running = [Share(program, number, shares, cpu_seconds) for number in range(shares)]
    reason = None
    while running and reason is None:
        for share in list(running):
            status = share.process.poll()
            if status is None:
                continue
            running.remove(share)
            output = share.end()
            if status != 0:
                reason = PROCESSOR_TIME if status == -signal.SIGXCPU else first_failure(output)
                break
        if reason is None and running:
            if time.monotonic() > deadline:
                reason = WAITING_TIME
            time.sleep(0.005)
    for share in running:
        share.end()
    return reason

"""examples_test.py SOURCE_DIR LIBRARIES COMPILER FLAGS: the programs that the documents show.

Every fence of C++ in a document is a whole program and compiles as it stands, without a warning. It
is run in an empty folder, and prints what the fence of text behind it shows. A program that begins
with the comment "// name ARGUMENTS" gets these; the port 8080 of this machine among them stands for
a stand-in of the maker's web service. Programs for Mac OS X are compiled only, against the
stand-ins of its frameworks; a program without a fence of text behind it, and the one of
corvella(3), are compiled and linked only.
"""

import http.server
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import threading
import urllib.parse

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Werror"]
FENCE = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


class Service(http.server.BaseHTTPRequestHandler):
    """Shows a form as it was received."""

    def do_POST(self):  # noqa: N802: the name is the library's
        length = int(self.headers["Content-Length"])
        fields = urllib.parse.parse_qsl(self.rfile.read(length).decode())
        lines = [f"POST {urllib.parse.urlparse(self.path).path}"]
        lines += [f"{name}={value}" for name, value in fields]
        body = "".join(line + "\n" for line in lines).encode()
        self.send_response(200)
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, format, *args):  # noqa: A002: the name is the library's
        pass


def documents(sources):
    for path in sorted(sources.glob("*.md")) + sorted((sources / "docs").glob("*.md")):
        yield path


def examples_of(path):
    """The programs of a document, each with what it prints, or None."""
    text = path.read_text(encoding="utf-8")
    fences = list(FENCE.finditer(text))
    for i, fence in enumerate(fences):
        if fence[1] != "cpp":
            continue
        prints = None
        if i + 1 < len(fences) and fences[i + 1][1] == "text" and \
                not text[fence.end():fences[i + 1].start()].strip():
            prints = fences[i + 1][2]
        line = text.count("\n", 0, fence.start()) + 1
        yield f"{path.name}:{line}", fence[2], prints


def example_of_man_page(sources):
    page = (sources / "docs" / "man" / "corvella.3.in").read_text(encoding="utf-8")
    for block in re.findall(r"^\.Bd -literal.*?\n(.*?)^\.Ed", page, re.MULTILINE | re.DOTALL):
        if "int main" in block:
            yield "corvella.3", block.replace("\\e", "\\"), None


class Examples:
    def __init__(self, arguments):
        self.sources = pathlib.Path(arguments[0])
        self.libraries = arguments[1].split(",")
        self.compiler = arguments[2]
        self.flags = shlex.split(arguments[3])
        self.failures = []

    def fail(self, name, text):
        self.failures.append(name)
        print(f"{name}: {text}")

    def compile(self, name, program, folder):
        source = folder / "program.cpp"
        source.write_text(program, encoding="utf-8")
        command = [self.compiler, "-std=c++17", *self.flags, *WARNINGS, f"-I{self.sources}"]
        if "platform/platform.h" in program:
            command += ["-fsyntax-only", "-isystem", str(self.sources / "tests" / "frameworks"),
                        str(source)]
        else:
            command += [str(source), "-o", str(folder / "program"), *self.libraries]
        done = subprocess.run(command, capture_output=True, text=True, timeout=120, check=False)
        if done.returncode != 0:
            self.fail(name, f"does not compile\n{done.stderr}")
        return done.returncode == 0

    def run(self, name, program, prints, folder, port):
        first = re.match(r"// \w+ (.*)\n", program)
        words = shlex.split(first[1].replace(":8080", f":{port}")) if first else []
        empty = folder / "empty"
        empty.mkdir()
        done = subprocess.run([str(folder / "program"), *words], cwd=empty, capture_output=True,
                              text=True, timeout=60, check=False)
        if done.returncode != 0 or done.stdout != prints or done.stderr:
            self.fail(name, f"status {done.returncode}, prints\n{done.stdout}{done.stderr}")
        if list(empty.iterdir()):
            self.fail(name, "leaves something behind")

    def check(self, name, program, prints, port):
        if not re.search(r"^int main\(", program, re.MULTILINE):
            self.fail(name, "is no whole program")
            return
        with tempfile.TemporaryDirectory() as folder:
            folder = pathlib.Path(folder)
            if self.compile(name, program, folder) and prints is not None:
                self.run(name, program, prints, folder, port)


def main():
    examples = Examples(sys.argv[1:])
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Service)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    count = 0
    found = [example for path in documents(examples.sources) for example in examples_of(path)]
    for name, program, prints in found + list(example_of_man_page(examples.sources)):
        examples.check(name, program, prints, server.server_address[1])
        count += 1
    server.shutdown()
    print(f"{count} programs, {len(examples.failures)} failures")
    return 1 if examples.failures or count < 8 else 0


sys.exit(main())

#!/usr/bin/env python3
"""Breaks the library in small ways, one at a time, and tells which tests notice.

    tools/mutate.py [--sample N] [--seed S] [--subject NAME]... [--jobs N] [--list] [--run-equivalents]

The mutations stand in tests/mutations/<subject>.toml. Each is compiled from a copy in build/mutation with the commands
of a built build/release (other folders: --build), linked with everything else that lies built there, and run against
its tests until one fails. Prints a line for each mutant and a summary.

Exit status: 0, every mutant is killed or listed as equivalent; 1, a mutant is alive; 2, the list is wrong (a text that
is not found exactly once, a mutant that does not compile) or the untouched library fails its tests.
"""

import argparse
import concurrent.futures
import dataclasses
import json
import os
import pathlib
import random
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time

try:
    import tomllib
except ImportError:
    print("mutate.py: needs Python 3.11 or later", file=sys.stderr)
    sys.exit(2)

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIST_FOLDER = ROOT / "tests" / "mutations"
LIBRARY_ROOMS = ("base/", "logging/", "src/map_utils/")
KINDS = {
    "comparison": "strictness or sense of a comparison",
    "condition": "a condition dropped, negated or joined otherwise",
    "constant": "a constant changed, often in its last digit",
    "index": "an index or a count changed by one",
    "order": "order of operations, operands or arguments",
    "output": "cleared or appended, written or not",
    "sign": "a sign turned, a field or a function mistaken for its neighbour",
    "statement": "a statement left out",
    "width": "float for double or double for float",
}
# A mutant may loop for ever, and may fill the memory while it does.
LEAST_TIME_LIMIT = 20.0  # seconds
TIMES_AS_LONG = 10       # as the untouched library takes
MEMORY_LIMIT = 4 << 30   # bytes of address space
# A header takes many sources with it; in a sample at most one mutant in four may ask for more than so many.
FEW_SOURCES = 4


class ListError(Exception):
    """Something in the list, or in what it needs, that only a person can mend."""


class KilledByCompiler(Exception):
    """A static assertion has noticed the mutant."""


@dataclasses.dataclass
class Mutation:
    subject: str
    number: int  # in the file of its subject, from 1
    kind: str
    file: str    # from the root
    old: str
    new: str
    tests: list
    equivalent: str
    line: int = 0  # of the replaced text, from 1
    mutated: str = ""  # the whole source

    @property
    def name(self):
        return f"{self.subject}:{self.number}"

    def __str__(self):
        return f"{self.name} {self.kind} {self.file}:{self.line}"


# ---- The list -------------------------------------------------------------------------------------------------------

def text_pattern(text):
    """Matches the text however it is wrapped into lines."""
    tokens = re.findall(r"\w+|[^\w\s]", text)
    pattern = re.escape(tokens[0])
    for previous, token in zip(tokens, tokens[1:]):
        apart = r"\s+" if previous[-1].isalnum() and token[0].isalnum() else r"\s*"
        pattern += apart + re.escape(token)
    # A name or a number is not a part of a longer one.
    before = r"(?<!\w)" if re.match(r"\w", tokens[0]) else ""
    after = r"(?!\w)" if re.match(r"\w", tokens[-1][-1]) else ""
    return re.compile(before + pattern + after)


def one_line(text):
    return " ".join(text.split())


def locate(mutation, sources):
    """Fills `line` and `mutated`."""
    if mutation.file not in sources:
        path = ROOT / mutation.file
        if not mutation.file.startswith(LIBRARY_ROOMS) or not path.is_file():
            raise ListError(f"{mutation.name}: {mutation.file} is no source of the library")
        sources[mutation.file] = path.read_text(encoding="utf-8")
    source = sources[mutation.file]
    found = list(text_pattern(mutation.old).finditer(source))
    if len(found) != 1:
        raise ListError(f"{mutation.name}: found {len(found)} times, not once, in {mutation.file}: {mutation.old}")
    match = found[0]
    # Lines stay where they are: log records name them.
    lost_lines = match.group().count("\n") - mutation.new.count("\n")
    mutation.line = source.count("\n", 0, match.start()) + 1
    mutation.mutated = source[:match.start()] + mutation.new + "\n" * max(0, lost_lines) + source[match.end():]


def read_subject(path, sources):
    try:
        content = tomllib.loads(path.read_text(encoding="utf-8"))
    except tomllib.TOMLDecodeError as error:
        raise ListError(f"{path.name}: {error}") from None
    default_file, default_tests = content.pop("file", None), content.pop("tests", None)
    entries = content.pop("mutation", [])
    if content:
        raise ListError(f"{path.name}: unknown key {next(iter(content))}")
    mutations = []
    for number, entry in enumerate(entries, 1):
        name = f"{path.stem}:{number}"
        unknown = set(entry) - {"kind", "file", "old", "new", "tests", "equivalent"}
        if unknown:
            raise ListError(f"{name}: unknown key {unknown.pop()}")
        entry = {"file": default_file, "tests": default_tests, "equivalent": "", **entry}
        for key in ("kind", "file", "old", "new", "tests"):
            if key not in entry or entry[key] is None:
                raise ListError(f"{name}: no {key}")
        if not isinstance(entry["tests"], list) or not entry["tests"]:
            raise ListError(f"{name}: tests is no list of names")
        if entry["kind"] not in KINDS:
            raise ListError(f"{name}: unknown kind {entry['kind']}; there are {', '.join(KINDS)}")
        if not entry["old"].strip() or one_line(entry["old"]) == one_line(entry["new"]):
            raise ListError(f"{name}: changes nothing")
        mutation = Mutation(path.stem, number, **entry)
        mutation.equivalent = one_line(mutation.equivalent)
        mutations.append(mutation)
    if not mutations:
        raise ListError(f"{path.name}: no mutations")
    problems = []
    for mutation in mutations:
        try:
            locate(mutation, sources)
        except ListError as problem:
            problems.append(str(problem))
    if problems:
        raise ListError("\nmutate.py: ".join(problems))
    seen = {}
    for mutation in mutations:
        twin = seen.setdefault((mutation.file, mutation.mutated), mutation)
        if twin is not mutation:
            raise ListError(f"{mutation.name}: the same as {twin.name}")
    return mutations


def read_list():
    sources = {}
    return [mutation for path in sorted(LIST_FOLDER.glob("*.toml")) for mutation in read_subject(path, sources)]


def pick_sample(mutations, count, generator, source_counts):
    """Takes the subjects in turn, so that they are spread evenly."""
    by_subject = {}
    for mutation in mutations:
        by_subject.setdefault(mutation.subject, []).append(mutation)
    for group in by_subject.values():
        generator.shuffle(group)
    subjects = list(by_subject)
    generator.shuffle(subjects)
    costly_left = max(1, count // 4)
    picked = []
    while len(picked) < count and any(by_subject.values()):
        for subject in subjects:
            group = by_subject[subject]
            while group:
                mutation = group.pop()
                is_costly = source_counts(mutation) > FEW_SOURCES
                if is_costly and costly_left == 0:
                    continue
                costly_left -= is_costly
                picked.append(mutation)
                break
            if len(picked) == count:
                break
    return picked


# ---- The build ------------------------------------------------------------------------------------------------------

def run(command, folder):
    """What a command prints; it must succeed."""
    done = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise ListError(f"{shlex.join(command)} failed:\n{done.stdout}{done.stderr}".rstrip())
    return done.stdout


@dataclasses.dataclass
class Test:
    """A test of the build."""
    name: str
    arguments: list
    program: str  # from the build folder
    environment: dict
    folder: str


class Build:
    """What is known about a build folder: its tests, its commands, and what each object is made of."""

    def __init__(self, folder):
        self.folder = folder
        if not (folder / "build.ninja").is_file():
            raise ListError(f"no build by Ninja in {folder}: run cmake --preset release && cmake --build --preset release")
        self.tests = {}
        for entry in json.loads(run(["ctest", "--show-only=json-v1"], folder))["tests"]:
            properties = {p["name"]: p["value"] for p in entry.get("properties", [])}
            program = pathlib.Path(entry.get("command", ["?"])[0])
            if folder not in program.parents:
                continue  # not built, or no program of ours
            self.tests[entry["name"]] = Test(
                entry["name"], entry["command"][1:], str(program.relative_to(folder)),
                dict(pair.split("=", 1) for pair in properties.get("ENVIRONMENT", [])),
                properties.get("WORKING_DIRECTORY", str(folder)))
        self._links = {}

    def test(self, mutation, name):
        if name not in self.tests:
            raise ListError(f"{mutation.name}: {name} is no test program in {self.folder}, or is not built")
        return self.tests[name]

    def renew(self, programs, jobs):
        """Brings programs up to date and reads how they are made."""
        run(["ninja", f"-j{jobs}", *sorted(programs)], self.folder)
        edges = json.loads(run(["ninja", "-t", "compdb"], self.folder))
        self.commands = {edge["output"]: edge["command"] for edge in edges}
        # From a file to the objects that are compiled from it.
        self.objects_of = {}
        for block in run(["ninja", "-t", "deps"], self.folder).split("\n\n"):
            head, *files = block.strip().split("\n")
            for file in files:
                path = os.path.normpath(self.folder / file.strip())
                self.objects_of.setdefault(path, set()).add(head.split(": ")[0])
        for program in programs:
            self.link_of(program)

    def link_of(self, program):
        """The link of a program: its words, and the object files in it with the archive that holds each (or None)."""
        if program not in self._links:
            words = [word for word in shlex.split(self.commands[program]) if word not in (":", "&&")]
            with tempfile.TemporaryDirectory() as scratch:
                traced = run([*words, "-o", os.path.join(scratch, "program"), "-Wl,--trace,--trace"],
                             self.folder)
            # Twice --trace names the members that the link takes from an archive: (archive)member.
            linked_members = set(re.findall(r"^\((.+)\)(.+\.o)$", traced, re.MULTILINE))
            archive_of = {word: None for word in words if word.endswith(".o")}
            for archive in (word for word in words if word.endswith(".a") and word in self.commands):
                for member in shlex.split(self.commands[archive]):
                    if member.endswith(".o") and (archive, os.path.basename(member)) in linked_members:
                        archive_of[member] = archive
            self._links[program] = (words, archive_of)
        return self._links[program]

    def objects_to_compile(self, file, program):
        """The objects in a program that are compiled from a file of the project."""
        return sorted(self.objects_of.get(str(ROOT / file), set()) & set(self.link_of(program)[1]))

    def compile_command(self, target, file, overlay, output):
        """The command that compiles an object, with the files in `overlay` put before those of the project."""
        words = shlex.split(self.commands[target])
        if os.path.basename(words[0]) == "ccache":
            del words[0]  # no mutant comes twice
        result = []
        include_seen = False
        skip = False
        for word in words:
            if skip:
                skip = False
            elif word in ("-MT", "-MF", "-o"):
                skip = True
            elif word in ("-MD", "-Werror"):
                pass
            elif word == str(ROOT / file):
                result.append(str(overlay / file))
            else:
                if word.startswith("-I") and not include_seen:
                    include_seen = True
                    result += [f"-I{overlay}", f"-I{overlay / 'src'}", f"-ffile-prefix-map={overlay}/="]
                result.append(word)
        return [*result, "-w", "-o", str(output)]


# ---- Mutants --------------------------------------------------------------------------------------------------------

@dataclasses.dataclass
class Result:
    mutation: Mutation
    verdict: str  # killed, equivalent, ALIVE or KILLED (called equivalent, and killed)
    detail: str
    seconds: float


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def failure_of(test, program, folder, time_limit):
    """Runs a test program; what failed, or None. Real data is left out: it is not there everywhere."""
    environment = {name: value for name, value in os.environ.items()
                   if not name.startswith(("GTEST_", "VOREL_"))}
    environment.update(test.environment)
    log = folder / "test.log"
    with open(log, "wb") as output:
        try:
            status = subprocess.run(
                [str(program), *test.arguments, "--gtest_fail_fast", "--gtest_color=no"], cwd=test.folder,
                env=environment, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                timeout=time_limit, preexec_fn=limit_memory, check=False).returncode
        except subprocess.TimeoutExpired:
            status = None
    if status == 0:
        return None
    text = log.read_text(encoding="utf-8", errors="replace")
    started = re.findall(r"^\[ RUN      \] (\S+)", text, re.MULTILINE)
    failed = re.findall(r"^\[  FAILED  \] ([^\s,]+)", text, re.MULTILINE)
    last = failed[0] if failed else started[-1] if started else "its start"
    if status is None:
        return f"by time limit, {test.name}: {last}"
    if status < 0:
        return f"by {signal.Signals(-status).name}, {test.name}: {last}"
    return f"by {test.name}: {last}"


def make_mutant(build, mutation, program, folder):
    """Compiles and links the mutant's form of a program. None: the program has nothing of the mutated file."""
    words, archive_of = build.link_of(program)
    targets = build.objects_to_compile(mutation.file, program)
    if not targets:
        return None
    overlay = folder / "sources"
    mutated = overlay / mutation.file
    mutated.parent.mkdir(parents=True, exist_ok=True)
    mutated.write_text(mutation.mutated, encoding="utf-8")
    replaced = {}  # words of the link
    for target in targets:
        output = folder / target
        if not output.exists():  # else another test's program has it as well
            output.parent.mkdir(parents=True, exist_ok=True)
            command = build.compile_command(target, mutation.file, overlay, output)
            done = subprocess.run(command, cwd=build.folder, capture_output=True, text=True, check=False)
            if done.returncode != 0:
                if re.search(r"static[ _]assert(ion)? failed", done.stderr):
                    raise KilledByCompiler(f"by a static assertion in {os.path.basename(target)[:-2]}")
                raise ListError(f"{mutation} does not compile:\n{done.stderr}".rstrip())
        archive = archive_of[target]
        if archive is None:
            replaced[target] = str(output)
            continue
        if archive not in replaced:
            replaced[archive] = str(folder / os.path.basename(archive))
            shutil.copy(build.folder / archive, replaced[archive])
        run(["ar", "r", replaced[archive], str(output)], build.folder)
    binary = folder / os.path.basename(program)
    words = [replaced.get(word, word) for word in words]
    words[words.index("-o") + 1] = str(binary)
    done = subprocess.run(words, cwd=build.folder, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise ListError(f"{mutation} does not link:\n{done.stderr}".rstrip())
    return binary


class Stage:
    """Where mutants are made and tried."""

    def __init__(self, build, folder):
        self.build = build
        self.folder = folder
        self.time_limits = {}  # of tests, in seconds

    def try_untouched(self, test):
        folder = self.folder / "untouched" / test.name
        folder.mkdir(parents=True)
        start = time.monotonic()
        failure = failure_of(test, self.build.folder / test.program, folder, 1800.0)
        if failure:
            raise ListError(f"the untouched library is killed {failure}")
        self.time_limits[test.name] = max(LEAST_TIME_LIMIT, TIMES_AS_LONG * (time.monotonic() - start))

    def try_mutant(self, mutation):
        start = time.monotonic()
        folder = self.folder / mutation.name.replace(":", "_")
        folder.mkdir(parents=True)
        failure = None
        is_reached = False
        for name in mutation.tests:
            test = self.build.tests[name]
            program = folder / os.path.basename(test.program)
            try:
                if not program.exists():
                    program = make_mutant(self.build, mutation, test.program, folder)
                if program is None:
                    continue
                failure = failure_of(test, program, folder, self.time_limits[name])
            except KilledByCompiler as reason:
                failure = str(reason)
            is_reached = True
            if failure:
                break
        if not is_reached:
            raise ListError(f"{mutation}: none of its tests has anything of this file: {', '.join(mutation.tests)}")
        shutil.rmtree(folder)
        verdict = ("KILLED" if mutation.equivalent else "killed") if failure else \
                  ("equivalent" if mutation.equivalent else "ALIVE")
        return Result(mutation, verdict, failure or mutation.equivalent, time.monotonic() - start)


def each(function, items, jobs):
    """Yields the results as they come; the first error ends it."""
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        futures = [pool.submit(function, item) for item in items]
        try:
            for future in concurrent.futures.as_completed(futures):
                yield future.result()
        except BaseException:
            for future in futures:
                future.cancel()
            raise


# ---- The program ----------------------------------------------------------------------------------------------------

def show(result):
    mutation = result.mutation
    print(f"{result.verdict:10} {mutation} {result.detail} ({result.seconds:.1f} s)", flush=True)
    if result.verdict.isupper():
        print(f"    - {one_line(mutation.old)}\n    + {one_line(mutation.new)}", flush=True)


def show_list(mutations):
    for mutation in mutations:
        print(mutation)
        print(f"    - {one_line(mutation.old)}\n    + {one_line(mutation.new)}")
        if mutation.equivalent:
            print(f"    equivalent: {mutation.equivalent}")
    subjects = {mutation.subject for mutation in mutations}
    equivalent = sum(bool(mutation.equivalent) for mutation in mutations)
    print(f"{len(mutations)} mutations of {len(subjects)} subjects, {equivalent} of them equivalent")
    for kind, meaning in KINDS.items():
        print(f"{sum(mutation.kind == kind for mutation in mutations):5} {kind}: {meaning}")


def try_all(stage, tests, mutations, counts, jobs):
    """Shows the verdicts as they come and counts them; gives the errors in the list."""
    for _ in each(stage.try_untouched, tests.values(), jobs):
        pass
    errors = []

    def verdict(mutation):  # an error in one entry does not hide the verdicts of the others
        try:
            return stage.try_mutant(mutation)
        except ListError as error:
            errors.append(str(error))
            return None

    for result in each(verdict, mutations, jobs):
        if result is not None:
            show(result)
            counts[result.verdict] += 1
    return errors


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--sample", type=int, metavar="N", help="only N mutants, spread over the subjects")
    parser.add_argument("--seed", type=int, metavar="S", help="of the sample; without it a new one, which is printed")
    parser.add_argument("--subject", action="append", metavar="NAME", help="only this subject; may be repeated")
    parser.add_argument("--mutant", action="append", metavar="NAME:NUMBER", help="only this one; may be repeated")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1, metavar="N", help="so many at a time")
    parser.add_argument("--list", action="store_true", help="check the list and print it; try nothing")
    parser.add_argument("--run-equivalents", action="store_true", help="try also those that are listed as equivalent")
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "release", metavar="FOLDER",
                        help="where library and tests are built")
    return parser.parse_args()


def choose(arguments, mutations):
    subjects = {mutation.subject for mutation in mutations}
    for subject in arguments.subject or []:
        if subject not in subjects:
            raise ListError(f"no subject {subject}; there are {', '.join(sorted(subjects))}")
    names = {mutation.name for mutation in mutations}
    for name in arguments.mutant or []:
        if name not in names:
            raise ListError(f"no mutant {name}; --list prints all")
    return [mutation for mutation in mutations
            if (not arguments.subject or mutation.subject in arguments.subject)
            and (not arguments.mutant or mutation.name in arguments.mutant)]


def main():
    arguments = parse_arguments()
    mutations = choose(arguments, read_list())
    if arguments.list:
        show_list(mutations)
        return 0
    counts = dict.fromkeys(("killed", "equivalent", "ALIVE", "KILLED"), 0)
    if not arguments.run_equivalents:
        if arguments.sample is None:
            for mutation in mutations:
                if mutation.equivalent:
                    show(Result(mutation, "equivalent", mutation.equivalent, 0.0))
                    counts["equivalent"] += 1
        mutations = [mutation for mutation in mutations if not mutation.equivalent]

    build = Build(arguments.build.resolve())
    tests = {name: build.test(mutation, name) for mutation in mutations for name in mutation.tests}
    build.renew({test.program for test in tests.values()}, arguments.jobs)
    if arguments.sample is not None:
        seed = random.randrange(1 << 32) if arguments.seed is None else arguments.seed
        print(f"seed {seed}", flush=True)
        mutations = pick_sample(mutations, arguments.sample, random.Random(seed), lambda mutation: len(
            {target for name in mutation.tests for target in build.objects_to_compile(mutation.file,
                                                                                      tests[name].program)}))
        tests = {name: tests[name] for mutation in mutations for name in mutation.tests}

    base = ROOT / "build" / "mutation"
    base.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(prefix="run.", dir=base) as folder:
        errors = try_all(Stage(build, pathlib.Path(folder)), tests, mutations, counts, arguments.jobs)
    for error in errors:
        print(f"mutate.py: {error}", file=sys.stderr)
    print(f"{counts['killed']} killed, {counts['equivalent']} equivalent, {counts['ALIVE']} alive"
          + (f", {counts['KILLED']} called equivalent but killed" if counts["KILLED"] else ""))
    return 2 if errors else 1 if counts["ALIVE"] or counts["KILLED"] else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except ListError as problem:
        print(f"mutate.py: {problem}", file=sys.stderr)
        sys.exit(2)
    except KeyboardInterrupt:
        sys.exit(130)

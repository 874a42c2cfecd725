"""Measures rows: the contestants of a case take turns, round by round, so that whatever else the machine does meets all."""
import contextlib
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
from dataclasses import replace

import scenes

SCENES = {"nobody": scenes.Scene, "calls": scenes.Calls, "loading": scenes.Loading, "group": scenes.Group}


class Failed(Exception):
    pass


def measured(command, core):
    """What a program has measured, by name."""
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, text=True, timeout=scenes.PATIENCE,
                          preexec_fn=scenes.beginning(core))
    if done.returncode != 0:
        raise Failed(f"{' '.join(map(str, command))} has ended with {done.returncode}")
    return {name: float(value) for name, value in (line.split() for line in done.stdout.splitlines())}


def watched(watcher, command, core):
    """What a program says that looks at another one; None when that does not work."""
    if shutil.which(watcher[0]) is None:
        return None
    with tempfile.NamedTemporaryFile("r") as said:
        done = subprocess.run([*watcher, "-o", said.name, *map(str, command)], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=scenes.PATIENCE, preexec_fn=scenes.beginning(core))
        return said.read() if done.returncode == 0 else None


def counted_by_perf(command, core):
    """System calls of a program, which runs nearly as fast as ever."""
    said = watched(["perf", "stat", "-x,", "-e", "raw_syscalls:sys_enter"], command, core)
    found = re.search(r"^(\d+),,raw_syscalls", said or "", re.M)
    return int(found.group(1)) if found else None


def counted_by_strace(command, core):
    """System calls of a program that is slow at it, so that it waits less for its server."""
    said = watched(["strace", "-f", "-c"], command, core)
    found = re.search(r"^100\.00 +\S+ +\S+ +(\d+) .*total$", said or "", re.M)
    return int(found.group(1)) if found else None


class Runner:
    def __init__(self, build, against, scale):
        self.build, self.against, self.scale = build, against, scale
        self.absent = set()

    def contestants(self, row):
        """Those that were built; the project of the other build as well."""
        for contestant in row.contestants:
            if (self.build / "bin" / contestant.program).exists():
                yield contestant
            else:
                self.absent.add(contestant.name)
            if contestant.name == "project" and self.against:
                yield replace(contestant, name="against")

    def command(self, scene, contestant, **instead):
        given = {**scene.case.given, **instead}
        return [scene.folder(contestant) / "bin" / contestant.program, contestant.scenario,
                *scene.arguments(contestant), *contestant.given, *(f"{name}={value}" for name, value in given.items())]

    @contextlib.contextmanager
    def scene(self, row, case):
        with contextlib.ExitStack() as stack:
            memory = scenes.memory_folder()
            at = self.build if case.disk else memory
            scratch = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory(prefix="bench-", dir=at)))
            if row.scene != "files":
                yield stack.enter_context(SCENES[row.scene](self.build, self.against, case, scratch))
                return
            sources = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory(prefix="bench-", dir=memory)))
            source = (scenes.file_source(sources, self.scale.file_mib) if row.contestants[0].scenario == "file"
                      else scenes.tree_source(sources, self.scale.files))
            yield stack.enter_context(scenes.Files(self.build, self.against, case, scratch, source))

    def case(self, row, case):
        """Per contestant what each round has measured."""
        taking_part = list(self.contestants(row))
        rounds = {contestant.name: [] for contestant in taking_part}
        with self.scene(row, case) as scene:
            for number in range(row.rounds):
                turn = number % len(taking_part)
                for contestant in taking_part[turn:] + taking_part[:turn]:
                    values = measured(self.command(scene, contestant), scenes.client_core(case))
                    scene.check(contestant)
                    rounds[contestant.name].append(values)
            if any(measure.name == "system_calls" for measure in row.measures):
                for contestant in taking_part:
                    calls = self.system_calls(scene, contestant)
                    if calls is not None:
                        rounds[contestant.name][0]["system_calls"] = calls
        self.look_at(row, rounds)
        return rounds

    def look_at(self, row, rounds):
        for measure in row.measures:
            for name in {"project", "against"} & rounds.keys():
                worst = max((values[measure.name] for values in rounds[name] if measure.name in values), default=0)
                if worst > measure.limit:
                    raise Failed(f"row {row.number}, {name}: {worst:g} {measure.text}")

    def system_calls(self, scene, contestant):
        """Of one call: what more calls make more of. None when they cannot be counted."""
        few, many = 200, 1200
        core = scenes.client_core(scene.case)
        for count in (counted_by_perf, counted_by_strace):
            counts = [count(self.command(scene, contestant, calls=calls, warm=10, seconds=scenes.PATIENCE), core) for calls in (few, many)]
            if None not in counts:
                return (counts[1] - counts[0]) / (many - few)
        return None


def run(runner, rows):
    """Per row its cases with what was measured. Tells how far it is."""
    results = []
    for row in rows:
        print(f"row {row.number}: {row.title}", file=sys.stderr, flush=True)
        cases = []
        for case in row.cases:
            if (row.scene == "files" and not case.disk and scenes.memory_folder() is None):
                continue
            cases.append((case, runner.case(row, case)))
        results.append((row, cases))
    return results


def spread(values):
    """Median and quartiles."""
    if len(values) < 2:
        return values[0], values[0], values[0]
    low, middle, high = statistics.quantiles(values, n=4, method="inclusive")
    return middle, low, high


def ratio(rounds, peer, measure):
    """The project's value by the peer's: the median of what each round has. None when one of them was not measured."""
    pairs = [(ours[measure.name], theirs[measure.name]) for ours, theirs in zip(rounds["project"], rounds.get(peer, []))
             if measure.name in ours and measure.name in theirs]
    return statistics.median(ours / theirs for ours, theirs in pairs if theirs) if any(t for _, t in pairs) else None

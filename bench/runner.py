"""Measures rows: the contestants of a case take turns, round by round, so that whatever else the machine does meets all."""
import contextlib
import pathlib
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
        counts = [self.traced(self.command(scene, contestant, calls=calls, warm=10)) for calls in (few, many)]
        return None if None in counts else (counts[1] - counts[0]) / (many - few)

    @staticmethod
    def traced(command):
        if shutil.which("strace") is None:
            return None
        with tempfile.NamedTemporaryFile("r") as summary:
            done = subprocess.run(["strace", "-f", "-c", "-o", summary.name, *map(str, command)],
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=scenes.PATIENCE)
            total = summary.read().splitlines()[-1].split()  # share, seconds, microseconds of one, calls, …
        return int(total[3]) if done.returncode == 0 and total[-1] == "total" else None


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

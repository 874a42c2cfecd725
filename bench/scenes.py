"""Who serves while a case is measured, and what is looked at behind each measurement."""
import contextlib
import ctypes
import filecmp
import os
import pathlib
import shutil
import signal
import subprocess

PATIENCE = 600  # seconds for a program
KIB, MIB = 1 << 10, 1 << 20
GROUP_TARGETS = 4


def cores():
    """The first two that may be used, for the client and for the server."""
    usable = sorted(os.sched_getaffinity(0))
    return usable[0], usable[min(1, len(usable) - 1)]


def beginning(core):
    """What a child does first: it goes to a core, and ends with this process."""
    libc = ctypes.CDLL(None)

    def begin():
        libc.prctl(1, signal.SIGKILL)
        if core is not None:
            os.sched_setaffinity(0, {core})
    return begin


def client_core(case):
    return None if case.place == "free" else cores()[0]


def server_core(case):
    return {"free": None, "same": cores()[0], "diff": cores()[1]}[case.place]


class Server:
    """A program that says where it listens in its first line, for as long as the context lasts."""

    def __init__(self, command, core):
        self.process = subprocess.Popen([str(part) for part in command], stdout=subprocess.PIPE, text=True,
                                        preexec_fn=beginning(core))
        self.port = self.process.stdout.readline().rstrip().rpartition(" ")[2].rpartition(":")[2]

    def __enter__(self):
        if not self.port:
            raise RuntimeError("a server does not listen")
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()


class Scene:
    """Nobody serves, and nothing is looked at."""

    def __init__(self, build, against, case, scratch):
        self.build, self.against, self.case, self.scratch = build, against, case, scratch
        self.served = contextlib.ExitStack()

    def __enter__(self):
        try:
            self.begin()
        except BaseException:
            self.served.close()
            raise
        return self

    def __exit__(self, *_):
        self.served.close()

    def folder(self, contestant):
        """Of the build that has the contestant's programs."""
        return self.against if contestant.name == "against" else self.build

    def serve(self, program, *arguments, build=None):
        return self.served.enter_context(Server([(build or self.build) / "bin" / program, *arguments],
                                                server_core(self.case))).port

    def begin(self):
        pass

    def arguments(self, contestant):
        return []

    def check(self, contestant):
        """Behind each measurement, that is not part of it."""


class Calls(Scene):
    """One plain server for the project and all peers but gRPC, which has its own."""

    def begin(self):
        self.port = self.serve("bench_calls_server", self.case.delay)
        grpc = self.build / "bin" / "bench_grpc_server"
        self.grpc = self.serve(grpc.name, self.case.delay) if grpc.exists() else None

    def arguments(self, contestant):
        port = self.grpc if contestant.name == "grpc" else self.port
        return [f"address=127.0.0.1:{port}", f"port={port}"]


class Loading(Scene):
    def arguments(self, contestant):
        return [f"library={self.folder(contestant) / 'bin' / 'libKvApplicationManagerAP.so'}"]


class Targets(Scene):
    """Simulated targets whose commands take no time."""

    def target(self, store, number=1, build=None):
        host = f"127.0.0.{10 + number}"
        port = self.serve("kvtarget", "--listen", f"{host}:0", "--store", store, "--delay", 0, build=build)
        return f"{host}:{port}"


class Group(Targets):
    def begin(self):
        self.binary = self.scratch / "binary"
        self.binary.write_bytes(os.urandom(4 * KIB))
        self.addresses = {"project": self.targets("project", self.build)}
        if self.against:
            self.addresses["against"] = self.targets("against", self.against)

    def targets(self, name, build):
        return ",".join(self.target(self.scratch / f"store-{name}-{number}", number, build)
                        for number in range(GROUP_TARGETS))

    def arguments(self, contestant):
        return [f"addresses={self.addresses[contestant.name]}", f"source={self.binary}"]


class Files(Targets):
    """A target, and a plain server that stores files. What has arrived is compared with what was sent and removed; with
    that nothing of it is left to be written to the disk while the next one is measured."""

    def __init__(self, build, against, case, scratch, source):
        super().__init__(build, against, case, scratch)
        self.source = source

    def begin(self):
        self.stores = {"project": self.scratch / "store", "plain": self.scratch / "plain"}
        for store in self.stores.values():
            store.mkdir()
        self.addresses = {"project": self.target(self.stores["project"])}
        self.addresses["plain"] = f"127.0.0.1:{self.serve('bench_files_server', self.stores['plain'])}"
        if self.against:
            self.stores["against"] = self.scratch / "store-against"
            self.addresses["against"] = self.target(self.stores["against"], build=self.against)
        for names in self.stores, self.addresses:
            names["bare"] = names["plain"]

    def arguments(self, contestant):
        return [f"address={self.addresses[contestant.name]}", f"source={self.source}"]

    def check(self, contestant):
        store = self.stores[contestant.name]
        expected = sorted(self.source.iterdir()) if self.source.is_dir() else [self.source]
        name = (lambda path: path.name) if self.source.is_dir() else (lambda path: "file")
        arrived = {path.name: path for path in store.rglob("*") if path.is_file()}
        same = len(arrived) == len(expected) and all(
            name(path) in arrived and filecmp.cmp(path, arrived[name(path)], shallow=False) for path in expected)
        if not same:
            raise RuntimeError(f"{contestant.name}: what has arrived is not what was sent")
        filecmp.clear_cache()
        for path in store.iterdir():
            shutil.rmtree(path)
        os.sync()


def file_source(scratch, mebibytes):
    path = scratch / "source"
    with open(path, "wb") as file:
        for _ in range(mebibytes):
            file.write(os.urandom(MIB))
    return path


def tree_source(scratch, count):
    folder = scratch / "sources"
    folder.mkdir()
    for number in range(count):
        (folder / f"file{number}").write_bytes(os.urandom(4 * KIB))
    return folder


def memory_folder():
    """Where files lie in memory, or None."""
    folder = pathlib.Path("/dev/shm")
    return folder if os.access(folder, os.W_OK) else None

"""What is measured: the rows of the table, who takes part, where, and how much of it."""
from dataclasses import dataclass, field


@dataclass(frozen=True)
class Scale:
    """How much is done. Times are in seconds."""
    rounds: int        # of the quick scenarios
    slow_rounds: int   # of those that write to a disk
    calls: int
    warm: int          # calls before those that count
    seconds: float
    connections: int
    outcomes: int
    foreign_outcomes: int  # with libtirpc, all of them answered: after a call that was not, every later one times out
    timeout: float         # of calls that are not answered
    codec_seconds: float
    file_mib: int
    files: int
    devices: int
    slots: tuple
    loads: int


FULL = Scale(rounds=9, slow_rounds=5, calls=20_000, warm=500, seconds=0.3, connections=300, outcomes=1_000_000,
             foreign_outcomes=100_000, timeout=0.25, codec_seconds=0.45, file_mib=256, files=2_000, devices=1_000,
             slots=(1, 8, 32, 128), loads=500)
QUICK = Scale(rounds=1, slow_rounds=1, calls=500, warm=50, seconds=0.05, connections=20, outcomes=100_000,
              foreign_outcomes=10_000, timeout=1, codec_seconds=0.05, file_mib=8, files=50, devices=100, slots=(1, 8),
              loads=20)


@dataclass(frozen=True)
class Measure:
    name: str       # as the programs report it
    text: str
    unit: str
    more: bool      # the more the better
    of: str = ""    # another value, of which this is a part; then it has no ratio
    limit: float = float("inf")  # what the project's own value must not be beyond, on any machine


@dataclass(frozen=True)
class Contestant:
    name: str       # project, plain, bare, tirpc, grpc; its column
    program: str
    scenario: str
    given: tuple = ()  # arguments


@dataclass(frozen=True)
class Case:
    text: str
    place: str = "free"  # same: both ends on one core; diff: one each; free: wherever the system puts them
    given: dict = field(default_factory=dict)  # arguments of each contestant
    delay: int = 0       # microseconds that a server takes
    disk: bool = False   # whether files go to a disk; to memory otherwise


@dataclass(frozen=True)
class Row:
    number: int
    title: str
    scene: str           # who serves: calls, nobody, files, group, loading
    contestants: tuple
    cases: tuple
    measures: tuple
    rounds: int
    plain: str = ""      # what the plain peer is
    bare: str = ""       # what the second plain peer is


SAME, DIFF, FREE = "one core", "two cores", "not pinned"


def contestants(scenario, *names, plain=None):
    """Each with its program and the scenario; the plain peer may have another scenario."""
    return tuple(Contestant(name, f"bench_{name}", plain if plain and name == "plain" else scenario) for name in names)


def placed(places, **given):
    texts = {"same": SAME, "diff": DIFF, "free": FREE}
    return tuple(Case(texts[place], place, given) for place in places)


def rows(scale):
    seconds = {"seconds": scale.seconds}
    codec = {"seconds": scale.codec_seconds}
    large = (Measure("encode_gb_s", "encode into a record that is used again", "GB/s", True),
             Measure("encode_fresh_gb_s", "encode into a new record", "GB/s", True),
             Measure("decode_gb_s", "decode", "GB/s", True))
    three = (Measure("encode_ns", "encode", "ns", False), Measure("decode_ns", "decode", "ns", False))
    rate = Measure("calls_per_s", "calls in a second", "/s", True)
    cpu = Measure("cpu_us", "client's processor time of a call", "µs", False)
    half = Measure("p50_us", "half of the calls take at most", "µs", False)

    def stored(scenario):
        return (Contestant("project", "bench_project", scenario),
                Contestant("plain", "bench_plain", scenario, ("staged=1",)),
                Contestant("bare", "bench_plain", scenario, ("staged=0",)))

    stores = (Case("store in memory (tmpfs)"), Case("store on a disk", disk=True))
    return (
        Row(1, "One small call, one thread", "calls",
            contestants("calls", "project", "plain", "tirpc", "grpc"),
            placed(("same", "diff"), calls=scale.calls, warm=scale.warm, seconds=2 * scale.seconds),
            (half, Measure("p99_us", "99 of 100 take at most", "µs", False), cpu,
             Measure("system_calls", "client's system calls of a call", "", False),
             Measure("allocations", "allocations of a call", "", False)), scale.rounds, plain="sockets"),
        Row(2, "Threads on one client, the target takes 1 ms", "calls",
            contestants("threads", "project", "plain", "tirpc", "grpc", plain="window"),
            tuple(Case(f"{threads} threads, {FREE}", "free", {"threads": threads, **seconds}, delay=1000)
                  for threads in (8, 32)),
            (rate, cpu), scale.rounds, plain="sockets, as many calls under way"),
        Row(3, "8 threads on one client, the target answers at once", "calls",
            contestants("threads", "project", "plain", "tirpc", "grpc"),
            placed(("same", "diff", "free"), threads=8, **seconds), (rate, cpu), scale.rounds, plain="multiplexer"),
        Row(4, "8 threads on one client, half of the calls are refused, some are never answered", "calls",
            (Contestant("project", "bench_project", "outcomes",
                        (f"calls={scale.outcomes}", "unanswered=1", f"timeout={scale.timeout}")),
             Contestant("tirpc", "bench_tirpc", "outcomes",
                        (f"calls={scale.foreign_outcomes}", "unanswered=0", "timeout=25"))),
            placed(("free",), threads=8),
            (Measure("wrong", "calls with a wrong outcome", "", False, of="calls", limit=0),
             Measure("late", "calls with an outcome that came too late", "", False, of="calls",
                     limit=scale.outcomes / 100)), 1),
        Row(5, "Connect and make the first call", "calls",
            contestants("connecting", "project", "plain", "tirpc", "grpc"),
            placed(("same", "diff"), times=scale.connections, seconds=2 * scale.seconds), (half,), scale.rounds, plain="sockets"),
        Row(6, "A request of three words", "nobody", contestants("three-words", "project", "plain", "tirpc"),
            (Case("", given=codec),),
            three + (Measure("head_ns", "head, encode and seal: a whole call", "ns", False),), scale.rounds, plain="loop"),
        Row(7, "1,000,000 words", "nobody", contestants("words", "project", "plain", "tirpc"),
            (Case("", given=codec),), large, scale.rounds, plain="loop"),
        Row(8, "100,000 texts of 20 characters", "nobody", contestants("texts", "project", "plain", "tirpc"),
            (Case("", given=codec),),
            (Measure("encode_ns", "encode, of a text", "ns", False),
             Measure("decode_ns", "decode and release, of a text", "ns", False)), scale.rounds, plain="loop"),
        Row(9, "16 MiB of bytes", "nobody", contestants("bytes", "project", "plain", "tirpc"),
            (Case("", given=codec),), large, scale.rounds, plain="memcpy"),
        Row(10, f"One file of {scale.file_mib} MiB into a target's store", "files", stored("file"), stores,
            (Measure("mb_s", "throughput", "MB/s", True), Measure("peak_mib", "client's memory at most", "MiB", False)),
            scale.slow_rounds, plain="sockets, which stage and synchronise", bare="sockets, which do neither"),
        Row(11, f"{scale.files:,} files of 4 KiB into a target's store", "files", stored("tree"), stores,
            (Measure("files_per_s", "files in a second", "/s", True),),
            scale.slow_rounds, plain="sockets, which stage and synchronise", bare="sockets, which do neither"),
        Row(12, "Download of a group onto four targets", "group", contestants("group", "project"),
            tuple(Case(f"{slots} slot{'s' if slots > 1 else ''}", given={"slots": slots}) for slots in scale.slots),
            (Measure("ms_per_slot", "time of a slot", "ms", False),), scale.slow_rounds),
        Row(13, f"{scale.devices:,} devices, 16 threads in turn", "calls",
            contestants("devices", "project", "plain", "tirpc"),
            placed(("free",), devices=scale.devices, threads=16, **seconds),
            (rate, cpu, Measure("kib_per_device", "client's memory of a device", "KiB", False)), scale.rounds,
            plain="sockets"),
        Row(14, "Load and unload the library", "loading",
            (Contestant("project", "bench_loading", "loading"),), (Case("", given={"times": scale.loads}),),
            (Measure("load_us", "load", "µs", False), Measure("unload_us", "unload", "µs", False)), scale.rounds),
    )

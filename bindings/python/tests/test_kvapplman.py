"""The package against a simulated target."""

from datetime import datetime, timedelta, timezone

import pytest

import kvapplman
from kvapplman import FileType, Group, Item, MessageCode, Param, State, Status, Target
from kvapplman.constants import ITEM_KINDS

pytest_plugins = ["pytester"]


@pytest.fixture
def target(kvtarget):
    with Target(kvtarget.address) as target:
        yield target


@pytest.fixture
def binary(tmp_path):
    (tmp_path / "a.bin").write_bytes(bytes(100_000))
    return tmp_path / "a.bin"


@pytest.fixture
def loaded(target, binary):
    """An application that is ready to start."""
    with Group([target]) as group:
        application = group.register(1)
        group.download([binary])
        return application


def test_an_application_lives_from_download_to_unload(target, binary):
    reports = []
    with Group([None, target]) as group:
        application = group.register(2)
        group.download([None, binary], target_paths=[None, "over\\there.bin"], progress=reports.append)
    assert reports[-1].fraction == 1.0 and {at.file_name for at in reports} >= {"a.bin"}
    assert (application.info(Item.FILE_NAME), application.info(Item.GROUP_SIZE)) == ("there.bin", 2)
    for command, state in (("start", State.RUNNING), ("pause", State.PAUSED), ("step", State.PAUSED),
                           ("start", State.RUNNING), ("stop", State.STOPPED), ("terminate", State.REGISTERED)):
        getattr(application, command)()
        assert application.state is state, command
    assert target.application_ids() == [application.id]
    assert [listed.id for listed in target.applications("there")] == [application.id]
    application.unload()
    assert target.application_ids() == [] and target.applications() == []


def test_values_are_of_the_types_of_their_kinds(target, loaded):
    written = {Param.TEXT_1002: "t" * 1000 + "\u00e9", Param.QUAD_1004: -(2**62), Param.CORES: [2, 3], Param.WORD_1008: 7,
               Param.DOUBLE_3073: 0.5}
    for param, value in written.items():
        loaded.set(param, value)
        assert loaded.info(param) == value
    loaded.set(Param.ARGUMENTS, ["a", "b"])
    assert loaded.info(Item.GROUP_ADDRESSES) == ["127.0.0.1"]
    manager = target.manager
    assert abs(manager.info(Item.START_TIME) - datetime.now(timezone.utc)) < timedelta(minutes=5)
    assert manager.info(Item.COMMAND_TIMEOUT) == timedelta(seconds=10)
    assert target.cores() == [1, 2, 3, 4] and len(ITEM_KINDS) == len(Item)


@pytest.mark.kvtarget("--flash=7:logger")
def test_files_and_flash_memory_are_reached(kvtarget, target, loaded, tmp_path):
    (tmp_path / "tree" / "deep").mkdir(parents=True)
    (tmp_path / "tree" / "deep" / "file").write_text("x")
    loaded.load_file(tmp_path / "tree", FileType.DIRECTORY, target_name="copy")
    assert [(file.name, file.type) for file in loaded.files()] == [("copy", FileType.DIRECTORY)]
    assert [path.read_text() for path in kvtarget.store.rglob("deep/file")] == ["x"]
    loaded.remove_file("copy", FileType.DIRECTORY)
    assert loaded.files() == []
    flash = target.flash_application(target.flash_application_ids()[0])
    flash.set_values([1, -2])
    assert flash.info(Item.FLASH_VALUES) == [1, -2] and flash.info(Item.FILE_NAME) == "logger"
    flash.load()
    flash.clear()
    assert target.flash_application_ids() == []


@pytest.mark.kvtarget("--require-faults", "--fault=start@1:refuse=0x14a00801")
def test_an_error_carries_status_and_messages_and_leaves_the_target_usable(kvtarget, target, loaded):
    with pytest.raises(kvapplman.Error) as caught:
        loaded.start()
    error = caught.value
    assert (error.status, error.function) == (Status.START, "KvApplMan_startAppl")
    assert [message.code for message in error.messages] == [0x14A00801, MessageCode.CANNOT_START]
    assert "failed with status -150 (START)\n  0x14a00801 " in str(error) and error.messages[1].line > 0
    loaded.start()
    kvtarget.reboot()
    with pytest.raises(kvapplman.Error) as caught:
        loaded.info(Item.FILE_NAME)
    assert kvtarget.state()["ok"] and kvtarget.requests()
    with pytest.raises(ValueError, match="no command"):
        kvtarget.command("jump")


def test_a_fault_that_never_happens_fails_the_test_that_wants_it(pytester):
    pytester.makepyfile("""
        import pytest
        @pytest.mark.kvtarget("--require-faults", "--fault=start@1:refuse")
        def test_passes_for_nothing(kvtarget): pass
    """)
    result = pytester.runpytest_subprocess()
    result.assert_outcomes(passed=1, errors=1)
    result.stdout.fnmatch_lines(["*a fault rule has never fired"])


def test_an_exception_in_a_callback_surfaces_after_the_call(target, binary):
    calls = []

    def interrupt(progress):
        calls.append(progress)
        raise KeyboardInterrupt

    with Group([target]) as group:
        application = group.register(1)
        with pytest.raises(KeyboardInterrupt):
            group.download([binary], progress=interrupt)
    assert len(calls) == 1
    assert application.state is State.READY, "the call ran to its end"



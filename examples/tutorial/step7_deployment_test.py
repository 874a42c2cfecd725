"""Step 7: what the deployment does when a target is at fault."""
import pytest
from deployment import Deployment
from kvapplman import Error, SimulatedTarget, State, Status, Target


@pytest.fixture
def healthy():
    with SimulatedTarget(host="127.0.0.2") as target:
        yield target


@pytest.fixture
def deployment(healthy, kvtarget, tmp_path):
    (tmp_path / "program").write_text("any bytes do")
    (tmp_path / "settings").write_text("likewise")
    deployment = Deployment([healthy.address, kvtarget.address], tmp_path / "program", tmp_path / "settings")
    yield deployment
    deployment.close()


@pytest.mark.kvtarget("--require-faults", "--fault=start@1:refuse")
def test_a_refused_start_is_told_and_everything_can_be_taken_away(deployment, healthy, kvtarget):
    with pytest.raises(Error) as caught:
        deployment.keep_up()
    assert caught.value.status == Status.START
    deployment.take_away()
    assert [target.state()["processes"] for target in (healthy, kvtarget)] == [[], []]


def test_a_target_that_was_restarted_is_deployed_to_again(deployment, healthy, kvtarget):
    assert deployment.keep_up()
    assert not deployment.keep_up()
    kvtarget.reboot(1100)  # longer than a second, in which start times are told
    assert deployment.keep_up()
    for target in (healthy, kvtarget):
        with Target(target.address) as host:
            assert len(host.application_ids(State.RUNNING)) == 1

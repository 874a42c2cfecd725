"""The program and its settings on several targets, as one group that is brought up again when one of them restarts."""
from kvapplman import Group, Item, State, Target

SETTINGS_TYPE = 3  # what it means is the target's business


class Place:
    """A target, and the process that was registered with it."""

    def __init__(self, address):
        self.target = Target(address)
        self.process = None
        self.started_at = None  # start time of the target when the process was registered

    def start_time(self):
        return self.target.manager.info(Item.START_TIME)

    def holds_process(self):
        """False when there is none, when the target was restarted since (its ID may then be somebody else's), and when the
        target does not know it any more."""
        if self.process is None or self.start_time() != self.started_at:
            return False
        return self.process.id in self.target.application_ids()

    def is_running(self):
        return self.holds_process() and self.process.state is State.RUNNING


class Deployment:
    def __init__(self, addresses, program, settings):
        self.places = [Place(address) for address in addresses]
        self.program = program
        self.settings = settings

    def keep_up(self):
        """Brings the program up where it is not. When it raises, the next attempt begins by clearing away what it has
        left. Result: whether there was something to do."""
        if all(place.is_running() for place in self.places):
            return False
        self.take_away()
        self._bring_up()
        return True

    def take_away(self):
        for place in self.places:
            if place.holds_process():
                place.process.unload()
            place.process = None

    def _bring_up(self):
        with Group([place.target for place in self.places]) as group:
            for number, place in enumerate(self.places, 1):
                place.started_at = place.start_time()  # before the ID, so that no restart goes unnoticed
                place.process = group.register(number)
            group.download([self.program] * len(self.places))
        for place in self.places:
            place.process.load_file(self.settings, SETTINGS_TYPE)
            place.process.start()

    def close(self):
        for place in self.places:
            place.target.close()

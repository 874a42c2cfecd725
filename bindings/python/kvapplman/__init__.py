"""The application manager access point for Python: brings applications onto real-time targets and controls them there.

    import kvapplman

    with kvapplman.Target("192.168.0.10:5000") as target, kvapplman.Group([target]) as group:
        application = group.register(1)
        group.download(["control.bin"], progress=lambda at: print(f"{at.fraction:.0%} {at.file_name}"))
        application.start()
        print(application.state.name)

Every call that fails raises an Error with a status and with messages, the innermost first. A call waits for the target and
lets other threads run meanwhile; objects may be used from several threads at a time. What each call does, how long it may
block, and what its status means, the functions in KvApplicationManagerAP.h say, which are named with the methods.
"""

from .constants import (
    CoreKind,
    FileType,
    Item,
    MessageCode,
    Param,
    PlatformMessageCode,
    State,
    Status,
    Value,
)
from .errors import Error, Message
from .host import AddedFile, Application, FlashApplication, Group, ListedApplication, Progress, Target
from .simulated import SimulatedTarget

__all__ = [
    "AddedFile",
    "Application",
    "CoreKind",
    "Error",
    "FileType",
    "FlashApplication",
    "Group",
    "Item",
    "ListedApplication",
    "Message",
    "MessageCode",
    "Param",
    "PlatformMessageCode",
    "Progress",
    "SimulatedTarget",
    "State",
    "Status",
    "Target",
    "Value",
]

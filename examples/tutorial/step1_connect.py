"""Step 1: reaches a target and asks what it is: host.py ADDRESS"""
import sys

from kvapplman import Error, Item, Target

if len(sys.argv) != 2:
    sys.exit("usage: host.py ADDRESS   (an address is a.b.c.d:port)")
try:
    with Target(sys.argv[1]) as target:
        manager = target.manager
        timeout = manager.info(Item.COMMAND_TIMEOUT)
        print(f"target {manager.info(Item.SERIAL_NUMBER)}: {len(target.cores())} cores, "
              f"{len(target.application_ids())} applications, commands take at most {timeout.seconds} s")
except Error as failure:
    sys.exit(str(failure))

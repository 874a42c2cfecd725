"""Step 2: brings a program onto a target, starts it and takes it away again: host.py ADDRESS PROGRAM"""
import sys

from kvapplman import Error, Group, Target


def run(target, program):
    with Group([target]) as group:
        application = group.register(1)
        group.download([program])
    application.start()
    print(f"the program is {application.state.name.lower()}")
    application.stop()
    print(f"the program is {application.state.name.lower()}")
    application.unload()


if len(sys.argv) != 3:
    sys.exit("usage: host.py ADDRESS PROGRAM")
try:
    with Target(sys.argv[1]) as target:
        run(target, sys.argv[2])
except Error as failure:
    sys.exit(str(failure))

"""Step 3: the same, and tells how far it is: host.py ADDRESS PROGRAM"""
import sys

from kvapplman import Error, Group, Target


# cut: progress
def show_progress(at):
    print(f"{int(at.fraction * 100)} % {at.phase_name} {at.file_name}")


def show_messages(function, messages):
    for message in messages:
        print(f"{function} says: {message.text}")
# end


# cut: run
def run(target, program):
    target.on_messages = show_messages
    with Group([target]) as group:
        application = group.register(1)
        group.download([program], progress=show_progress)
    application.start()
    print(f"the program is {application.state.name.lower()}")
    application.stop()
    application.unload()
# end


if len(sys.argv) != 3:
    sys.exit("usage: host.py ADDRESS PROGRAM")
try:
    with Target(sys.argv[1]) as target:
        run(target, sys.argv[2])
except Error as failure:
    sys.exit(str(failure))

# cut: top
"""Step 4: one group on two targets: host.py ADDRESS1 ADDRESS2 PROGRAM"""
import sys

from kvapplman import Error, Group, Item, Target
# end


def show_progress(at):
    print(f"{int(at.fraction * 100)} % {at.phase_name} {at.file_name}")


# cut: deploy
def deploy(targets, program):
    with Group(targets) as group:
        applications = [group.register(number) for number, _ in enumerate(targets, 1)]
        group.download([program] * len(targets), progress=show_progress)
    return applications
# end


# cut: tell
def tell(application):
    print(f"{application.state.name.lower()}, one of {application.info(Item.GROUP_SIZE)}, group on",
          *application.info(Item.GROUP_SERIAL_NUMBERS))
# end


# cut: main
if len(sys.argv) != 4:
    sys.exit("usage: host.py ADDRESS1 ADDRESS2 PROGRAM")
try:
    with Target(sys.argv[1]) as first, Target(sys.argv[2]) as second:
        applications = deploy([first, second], sys.argv[3])
        for application in applications:
            application.start()
        for application in applications:
            tell(application)
        for application in applications:
            application.unload()
except Error as failure:
    sys.exit(str(failure))
# end

"""Step 5: a file of settings beside the program: host.py ADDRESS1 ADDRESS2 PROGRAM SETTINGS"""
import sys

from kvapplman import Error, Group, Target


def show_progress(at):
    print(f"{int(at.fraction * 100)} % {at.phase_name} {at.file_name}")


def deploy(targets, program):
    with Group(targets) as group:
        applications = [group.register(number) for number, _ in enumerate(targets, 1)]
        group.download([program] * len(targets), progress=show_progress)
    return applications


# cut: files
SETTINGS_TYPE = 3  # what it means is the target's business


def add_settings(application, settings):
    application.load_file(settings, SETTINGS_TYPE)
    for file in application.files():
        print(f"the target holds {file.name}, type {file.type}")
# end


# cut: main
if len(sys.argv) != 5:
    sys.exit("usage: host.py ADDRESS1 ADDRESS2 PROGRAM SETTINGS")
try:
    with Target(sys.argv[1]) as first, Target(sys.argv[2]) as second:
        applications = deploy([first, second], sys.argv[3])
        for application in applications:
            add_settings(application, sys.argv[4])
            application.start()
        for application in applications:
            application.unload()
except Error as failure:
    sys.exit(str(failure))
# end

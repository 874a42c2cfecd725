"""Step 6: keeps the program up for a while, whatever becomes of the targets:
host.py ADDRESS1 ADDRESS2 PROGRAM SETTINGS SECONDS"""
import sys
import time

from deployment import Deployment
from kvapplman import Error


def keep_up(deployment, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        try:
            if deployment.keep_up():
                print("the program was brought up", flush=True)
        except Error as error:
            print(f"not yet: {error.messages[0].text}", flush=True)
        time.sleep(0.5)


if len(sys.argv) != 6:
    sys.exit("usage: host.py ADDRESS1 ADDRESS2 PROGRAM SETTINGS SECONDS")
try:
    deployment = Deployment(sys.argv[1:3], sys.argv[3], sys.argv[4])
    keep_up(deployment, float(sys.argv[5]))
    deployment.take_away()
except Error as failure:
    sys.exit(str(failure))

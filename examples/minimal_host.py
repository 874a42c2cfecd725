#!/usr/bin/env python3
"""Brings one process onto one target, starts it, reads its state and takes it away again: minimal_host.py ADDRESS FILE"""
import sys

from kvapplman import Error, Group, Target

if len(sys.argv) != 3:
    sys.exit("usage: minimal_host.py ADDRESS FILE   (an address is a.b.c.d:port)")
try:
    with Target(sys.argv[1]) as target, Group([target]) as group:
        application = group.register(1)
        group.download([sys.argv[2]])
        application.start()
        print(f"application {application.id:#x} is {application.state.name.lower()}")
        application.stop()
        application.unload()
except Error as failure:
    sys.exit(str(failure))

#!/usr/bin/env python3
"""A web server on 127.0.0.1 that has an accomplice where a download goes.

Serves the files of a folder on a port that the kernel chose. Before it answers a request for an
archive it runs the shell command PLANT in each temporary folder of the folder MASTER.

Usage: planting_site.py FOLDER MASTER PLANT
"""
import functools
import glob
import http.server
import subprocess
import sys

FOLDER, MASTER, PLANT = sys.argv[1:]


class Handler(http.server.SimpleHTTPRequestHandler):
    def do_GET(self):
        if self.path.endswith("-archive.p2.l2"):
            for folder in glob.glob(glob.escape(MASTER) + "/QuorvaneTemp-*"):
                subprocess.run(["/bin/sh", "-c", PLANT], cwd=folder, check=True)
        super().do_GET()


server = http.server.HTTPServer(("127.0.0.1", 0), functools.partial(Handler, directory=FOLDER))
print("Serving HTTP on 127.0.0.1 port", server.server_port, "at work", flush=True)
server.serve_forever()

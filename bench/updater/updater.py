#!/usr/bin/env python3
"""From the start of Java to the first line of the application's main, through an updater.

Usage: updater.py ROUNDS FOLDER APP_CLASSES JAR...
Each JAR is an updater; all are started in turn. Prints for each the median in milliseconds, and how
it differs from that of the first.
"""
import os
import statistics
import subprocess
import sys
import time


def write_fields(path, *fields):
    with open(path, "wb") as file:
        file.write(b"\0".join(field.encode() for field in fields))


def write_launch_file(folder, main, class_path):
    write_fields(f"{folder}/QuorvaneLaunch", "6", main, "", "Bench", "", "0", "0", "0", "1", class_path,
                 "0", "", "", "", "0", "0", "")


def prepare(master, jar, classes):
    """Makes a master folder with the updater and the application, and returns the command."""
    own = f"{master}/Quorvane-Quorvane-1-complete"
    app = f"{master}/Quorvane-Bench-1-complete"
    os.makedirs(own)
    os.makedirs(app)
    os.symlink(os.path.abspath(jar), f"{own}/updater.jar")
    os.symlink(os.path.abspath(classes), f"{app}/classes")
    write_launch_file(own, "org.example.updater.GenericUpdater", "updater.jar")
    write_launch_file(app, "Startup", "classes")
    # Nobody answers there. It is not looked for either, until the application has been started.
    write_fields(f"{own}/properties", "qvstat_app_dir", own, "qvstat_app_name", "Bench", "qvstat_jre_name",
                 "Mac64JRE", "qvstat_update_url", "http://127.0.0.1:1/", "qvstat_launched_from_dynprops",
                 f"{own}/updater.jar")
    return ["java", "-cp", f"{own}/updater.jar", "org.example.updater.GenericUpdater", f"{own}/properties"]


def milliseconds(command):
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.PIPE)
    process.stdout.readline()
    taken = time.perf_counter() - start
    process.kill()
    process.communicate()
    return taken * 1000


def main():
    rounds, folder, classes, *jars = sys.argv[1:]
    commands = [prepare(f"{folder}/master-{i}", jar, classes) for i, jar in enumerate(jars)]
    times = [[] for _ in jars]
    for round_number in range(int(rounds) + 2):
        for command, taken in zip(commands, times):
            value = milliseconds(command)
            if round_number >= 2:  # the first ones fill the caches
                taken.append(value)
    first = statistics.median(times[0])
    for jar, taken in zip(jars, times):
        median = statistics.median(taken)
        print(f"{median:8.1f} ms  {median - first:+6.1f} ms  {jar}")


main()

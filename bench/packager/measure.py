"""Measures builds of downloads; bench/packager.sh prepares what it needs.

Usage: measure.py ROUNDS WORK PACKAGER JDK SIZE...   (WORK: classes/)

SIZE is tiny, small or large: how much application there is, and what the runtime is made of. The tiny
one has no Java: it shows that the benchmark works.
"""

import os
import random
import shutil
import statistics
import subprocess
import sys
import time
import zipfile

ROUNDS, WORK, PACKAGER, JDK = int(sys.argv[1]), sys.argv[2], os.path.abspath(sys.argv[3]), sys.argv[4]
STAND_IN = 'folder = "runtime"'
SIZES = {  # bytes in the application's jars, and what [runtime] says
    "tiny": (20_000, STAND_IN),
    "small": (20_000, f'jdk = "{JDK}"'),  # jdeps finds the modules
    "large": (20_000_000, f'jdk = "{JDK}"\nmodules = ["java.se"]'),
}
JARS = 20
PIECE = 8000

PROJECT = """[application]
name = "Bench"
version = "1"
identifier = "org.example.bench"
folder = "app"
main_class = "Startup"

[runtime]
{runtime}

[signing]
key = "release.key"
"""


def path(*names):
    return os.path.join(WORK, *names)


def write_jar(number, size, source, rng):
    """A jar of about that size: the class, and pieces of class data, which a jar compresses."""
    with zipfile.ZipFile(path("app", f"part{number}.jar"), "w", zipfile.ZIP_DEFLATED) as jar:
        def add(name, data):
            jar.writestr(zipfile.ZipInfo(name), data, zipfile.ZIP_DEFLATED)

        with open(path("classes", "Startup.class"), "rb") as file:
            add(f"part{number}/Startup.class" if number else "Startup.class", file.read())
        piece = 0
        while jar.fp.tell() < size:
            start = rng.randrange(len(source) - PIECE)
            add(f"part{number}/data{piece}", source[start:start + PIECE])
            piece += 1


def make_project(size):
    application, runtime = SIZES[size]
    shutil.rmtree(path("app"), ignore_errors=True)
    os.mkdir(path("app"))
    with open(os.path.join(JDK, "lib", "modules"), "rb") as file:
        source = file.read(60_000_000)
    rng = random.Random(1)
    for number in range(JARS):
        write_jar(number, application // JARS, source, rng)
    if runtime == STAND_IN:
        os.makedirs(path("runtime", "bin"))
        for name, text in (("bin/java", "stands in for a java"), ("release", 'JAVA_VERSION="21.0.4"')):
            with open(path("runtime", name), "w", encoding="utf-8") as file:
                file.write(text + "\n")
    with open(path("quorvane.toml"), "w", encoding="utf-8") as file:
        file.write(PROJECT.format(runtime=runtime))


def change_application(round_number):
    """Changes a byte of an entry of the first jar."""
    jar_path = path("app", "part0.jar")
    with zipfile.ZipFile(jar_path) as jar:
        entries = [(entry, jar.read(entry)) for entry in jar.infolist()]
    entry, data = entries[-1]
    entries[-1] = entry, data[:-1] + bytes([(data[-1] + round_number + 1) % 256])
    with zipfile.ZipFile(jar_path, "w", zipfile.ZIP_DEFLATED) as jar:
        for entry, data in entries:
            jar.writestr(entry, data, zipfile.ZIP_DEFLATED)


def build(*options):
    """Wall time and processor time of all processes in seconds, and the packager's peak memory in MB."""
    command = (PACKAGER, "build", path("quorvane.toml"), "--quiet", "--output", path("dist"), *options)
    environment = dict(os.environ, XDG_CACHE_HOME=path("cache"))
    with open(path("log"), "wb") as log:
        start = time.perf_counter()
        process = subprocess.Popen(command, stdout=log, stderr=log, env=environment)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.perf_counter() - start
    if status != 0:
        with open(path("log"), encoding="utf-8") as log:
            sys.exit(f"failed: {' '.join(command)}\n{log.read()}")
    return wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def measure(size):
    make_project(size)
    results = {}
    for round_number in range(ROUNDS):
        def run(name, *options):
            results.setdefault(name, []).append(build(*options))

        shutil.rmtree(path("cache"), ignore_errors=True)
        run("first, one worker", "--jobs", "1")
        shutil.rmtree(path("cache"))
        run("first")
        run("nothing changed")
        change_application(round_number)
        run("application changed")
    return results


def report(size, results):
    application, runtime = SIZES[size]
    print(f"\n{size}: {application / 1e6:g} MB of application, [runtime] {runtime!r}; "
          f"{ROUNDS} rounds, medians, ratios of each round (largest)")
    print(f"{'build':22} {'wall s':>8} {'CPU s':>8} {'MB':>6} {'wall/first':>16} {'CPU/first':>16}")
    for name, rounds in results.items():
        median = [statistics.median(values) for values in zip(*rounds)]
        ratios = [[one[i] / first[i] for one, first in zip(rounds, results["first"])] for i in (0, 1)]
        columns = " ".join(f"{statistics.median(r):8.3f} ({max(r):.3f})" for r in ratios)
        print(f"{name:22} {median[0]:8.2f} {median[1]:8.2f} {median[2]:6.0f} {columns}")


for wanted in sys.argv[5:]:
    load = os.getloadavg()[0]
    report(wanted, measure(wanted))
    print(f"load before {load:.1f}, after {os.getloadavg()[0]:.1f}; {os.cpu_count()} processors")

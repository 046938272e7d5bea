"""Measures whole installations; bench/install.sh prepares what it needs.

Usage: measure.py ROUNDS WORK BIN MEGABYTES   (WORK: runtime/ and updater/; MEGABYTES: "10 40 160")
"""

import os
import random
import re
import shutil
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROUNDS, WORK, BIN = int(sys.argv[1]), sys.argv[2], os.path.abspath(sys.argv[3])
SIZES = [int(word) for text in sys.argv[4:] for word in text.split()]

LAUNCH = """version = 6
class = "Startup"
app_name = "Sample"
class_path = ["updater.jar"]
"""

PROJECT = Path(__file__).resolve().parents[2] / "tests/data/packager/folders.toml"


def path(*names):
    return os.path.join(WORK, *names)


def run(*command, **options):
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    if result.returncode != 0:
        sys.exit(f"failed: {' '.join(command)}\n{result.stdout.decode(errors='replace')[-2000:]}")


def write(name, text):
    with open(path(name), "w", encoding="utf-8") as file:
        file.write(text)


def make_application(size):
    """Pieces of the runtime's own class data, in an order of their own: they compress as real
    programs do, and not against each other."""
    with open(path("runtime", "lib", "modules"), "rb") as file:
        source = file.read()
    rng = random.Random(size)
    os.makedirs(path(f"app-{size}"))
    for number in range(size):
        with open(path(f"app-{size}", f"data{number}"), "wb") as file:
            for _ in range(125):
                start = rng.randrange(len(source) - 8000)
                file.write(source[start:start + 8000])
    shutil.copy(path("updater", "QuorvaneLaunch"), path(f"app-{size}", "QuorvaneLaunch"))


def pack(size):
    project = PROJECT.read_text(encoding="utf-8")
    write(f"project-{size}.toml", project.replace('folder = "app"', f'folder = "app-{size}"'))
    run(f"{BIN}/quorvane-pack", "build", path(f"project-{size}.toml"), "--output",
        path(f"dist-{size}"), "--executables", BIN)


def make_tarball(size):
    run("tar", "-cJf", path(f"{size}.tar.xz"), "-C", WORK, "runtime", f"app-{size}", "updater")


def prepare():
    pack_tool = f"{BIN}/quorvane-pack"
    run(pack_tool, "key", "new", path("release.key"))
    write("launch.toml", LAUNCH)
    run(pack_tool, "launchfile", "write", path("launch.toml"), path("updater", "QuorvaneLaunch"))
    for size in SIZES:
        make_application(size)
        pack(size)
        make_tarball(size)


def make_account():
    """A fresh account; returns the environment of its programs."""
    shutil.rmtree(path("account"), ignore_errors=True)
    os.makedirs(path("account", "home"))
    write("account/passwd", f"bench:x:{os.getuid()}:{os.getgid()}:B:{path('account/home')}:/bin/sh\n")
    write("account/group", f"bench:x:{os.getgid()}:\n")
    return dict(os.environ, HOME=path("account/home"), LD_PRELOAD="libnss_wrapper.so",
                NSS_WRAPPER_PASSWD=path("account/passwd"), NSS_WRAPPER_GROUP=path("account/group"))


def measure(command, variables=None):
    """Runs a command once; wall time in seconds, peak memory in MB, and what it printed."""
    with open(path("log"), "wb") as log:
        start = time.perf_counter()
        process = subprocess.Popen(command, stdout=log, stderr=subprocess.DEVNULL, env=variables)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.perf_counter() - start
    with open(path("log"), "rb") as log:
        output = log.read()
    if status != 0:
        sys.exit(f"failed: {' '.join(command)}\n{output.decode(errors='replace')[-2000:]}")
    return wall, usage.ru_maxrss / 1024, output


def installer(size):
    folder = path(f"dist-{size}", "Sample Installer.app", "Contents", "MacOS")
    return os.path.join(folder, os.listdir(folder)[0])


def install(size, variables):
    wall, memory, output = measure([installer(size), "-silent"], variables)
    if b"Archive signature verified." not in output or b"\nmain " not in output:
        sys.exit("the installer did not install and start the program")
    return wall, memory


def floor(size):
    """The same files decompressed, hashed, extracted, the class data written, Java started."""
    shutil.rmtree(path("floor"), ignore_errors=True)
    os.mkdir(path("floor"))
    java = path("floor", "runtime", "bin", "java")
    tarball = path(f"{size}.tar.xz")
    return measure(["sh", "-ec", f"""
        xz -dc '{tarball}' > '{path("floor", "tar")}'
        sha256sum '{path("floor", "tar")}'
        tar -xf '{path("floor", "tar")}' -C '{path("floor")}'
        rm '{path("floor", "tar")}'
        '{java}' -Xshare:dump
        '{java}' -cp '{path("floor", "updater", "updater.jar")}' Startup"""])[:2]


def quick_launch(size, variables):
    """Milliseconds from exec to the first line of Java's main of what is installed already."""
    _, _, output = measure([f"{BIN}/exec_stamp", installer(size), "-silent"], variables)
    if b"Running without extraction now" not in output:
        sys.exit("the second run installed again")
    begin, entered = (int(re.search(rb"(?:^|\n|\.)" + word + rb" (\d+)\n", output).group(1))
                      for word in (b"exec", b"main"))
    return (entered - begin) / 1e6


def measure_size(size):
    installs, floors, launches = [], [], []
    for _ in range(ROUNDS):
        floors.append(floor(size))
        variables = make_account()
        installs.append(install(size, variables))
        launches.append(quick_launch(size, variables))
    wall, least = (statistics.median(r[0] for r in rows) for rows in (installs, floors))
    print(f"| {size} MB | {wall:.2f} | {least:.2f} | {wall / least:.2f} | "
          f"{max(r[1] for r in installs):.0f} | {max(r[1] for r in floors):.0f} | {statistics.median(launches):.0f} |", flush=True)


def main():
    prepare()
    runtime = sum(os.path.getsize(os.path.join(folder, name))
                  for folder, _, names in os.walk(path("runtime")) for name in names)
    print(f"runtime of {runtime / 1e6:.0f} MB, medians of {ROUNDS} rounds\n")
    print("| application | installation, s | floor, s | ratio | peak memory, MB | floor's | quick launch, ms |")
    print("|---|---|---|---|---|---|---|")
    for size in SIZES:
        measure_size(size)


if __name__ == "__main__":
    main()

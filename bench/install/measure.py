"""Measures whole installations; bench/install.sh prepares what it needs.

Usage: measure.py ROUNDS WORK BIN FACTOR...   (WORK: runtime/ and updater/)

FACTOR says how many times 60 MB of runtime and 10 MB of application are installed. If the
environment variable BESIDE names a folder with other executables, an earlier build's, each round
installs with these too.
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
FACTORS = sys.argv[4:]
BESIDE = os.environ.get("BESIDE", "")
RUNTIME, APPLICATION = 60_000_000, 10_000_000
PIECE = 8000

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


def fill(folder, size, source, rng):
    """Files of a megabyte out of pieces of class data, in an order of their own: they compress as
    real programs do, and not against each other."""
    os.makedirs(folder)
    number = 0
    while size > 0:
        pieces = (min(size, 1_000_000) + PIECE - 1) // PIECE
        starts = [rng.randrange(len(source) - PIECE) for _ in range(pieces)]
        with open(os.path.join(folder, f"data{number}"), "wb") as file:
            file.writelines(source[start:start + PIECE] for start in starts)
        number, size = number + 1, size - pieces * PIECE


def size_of(folder):
    return sum(os.path.getsize(os.path.join(parent, name))
               for parent, _, names in os.walk(folder) for name in names)


def make_payload(factor):
    """A runtime that runs, filled up to its size, and an application of data."""
    with open(path("runtime", "lib", "modules"), "rb") as file:
        source = file.read()
    rng = random.Random(factor)
    runtime, application = path(f"runtime-{factor}"), path(f"app-{factor}")
    shutil.copytree(path("runtime"), runtime, symlinks=True)
    fill(os.path.join(runtime, "data"), int(float(factor) * RUNTIME) - size_of(runtime), source, rng)
    fill(application, int(float(factor) * APPLICATION), source, rng)
    for name in ("QuorvaneLaunch", "updater.jar"):
        shutil.copy(path("updater", name), application)


def kinds():
    return {"own": BIN, "beside": BESIDE} if BESIDE else {"own": BIN}


def pack(factor):
    project = PROJECT.read_text(encoding="utf-8")
    for folder in ("app", "runtime"):
        project = project.replace(f'folder = "{folder}"', f'folder = "{folder}-{factor}"')
    write(f"project-{factor}.toml", project)
    for kind, executables in kinds().items():
        run(f"{BIN}/quorvane-pack", "build", path(f"project-{factor}.toml"), "--output",
            path(f"dist-{factor}-{kind}"), "--executables", executables, "--bundles", "--no-cache")


def make_tarball(factor):
    run("tar", "-cJf", path(f"{factor}.tar.xz"), "-C", WORK, f"--transform=s,^runtime-{factor},runtime,",
        f"runtime-{factor}", f"app-{factor}", "updater")


def prepare(factor):
    make_payload(factor)
    pack(factor)
    make_tarball(factor)


def clean_up(factor):
    for name in (f"runtime-{factor}", f"app-{factor}", *(f"dist-{factor}-{kind}" for kind in kinds())):
        shutil.rmtree(path(name))
    os.remove(path(f"{factor}.tar.xz"))


def make_account():
    """A fresh account; returns the environment of its programs."""
    shutil.rmtree(path("account"), ignore_errors=True)
    os.makedirs(path("account", "home"))
    write("account/passwd", f"bench:x:{os.getuid()}:{os.getgid()}:B:{path('account/home')}:/bin/sh\n")
    write("account/group", f"bench:x:{os.getgid()}:\n")
    return dict(os.environ, HOME=path("account/home"), LD_PRELOAD="libnss_wrapper.so",
                NSS_WRAPPER_PASSWD=path("account/passwd"), NSS_WRAPPER_GROUP=path("account/group"))


def measure(command, variables=None):
    """Runs a command once; wall time in seconds, peak memory in MB of the largest process, and what
    it printed."""
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


def bundle_of(factor, kind="own"):
    """The offline installer, in the folder of the one target."""
    bundles = path(f"dist-{factor}-{kind}", "bundles")
    target, = os.listdir(bundles)
    return os.path.join(bundles, target, "offline", "Sample.app")


def installer(factor, kind="own"):
    folder = os.path.join(bundle_of(factor, kind), "Contents", "MacOS")
    return os.path.join(folder, os.listdir(folder)[0])


def install(factor, variables, kind="own"):
    wall, memory, output = measure([installer(factor, kind), "-silent"], variables)
    if b"Archive signature verified." not in output or b"\nmain " not in output:
        sys.exit("the installer did not install and start the program")
    return wall, memory


def floor(factor):
    """The same files decompressed, hashed, extracted, the class data written, Java started. Returns
    the wall time of all, Java's share of it, in seconds, and the peak memory."""
    shutil.rmtree(path("floor"), ignore_errors=True)
    os.mkdir(path("floor"))
    java = path("floor", "runtime", "bin", "java")
    tarball = path(f"{factor}.tar.xz")
    wall, memory, output = measure(["sh", "-ec", f"""
        xz -dc '{tarball}' > '{path("floor", "tar")}'
        sha256sum '{path("floor", "tar")}'
        tar -xf '{path("floor", "tar")}' -C '{path("floor")}'
        rm '{path("floor", "tar")}'
        echo extracted $(date +%s%N)
        '{java}' -Xshare:dump
        '{java}' -cp '{path("floor", "updater", "updater.jar")}' Startup
        echo ended $(date +%s%N)"""])
    extracted, ended = (int(re.search(rb"\b" + word + rb" (\d+)\n", output).group(1))
                        for word in (b"extracted", b"ended"))
    return wall, (ended - extracted) / 1e9, memory


def quick_launch(factor, variables, kind="own"):
    """Milliseconds from exec to the first line of the installed application's main."""
    _, _, output = measure([f"{BIN}/exec_stamp", installer(factor, kind), "-silent"], variables)
    if b"Running without extraction now" not in output:
        sys.exit("the second run installed again")
    begin, entered = (int(re.search(rb"(?:^|\n|\.)" + word + rb" (\d+)\n", output).group(1))
                      for word in (b"exec", b"main"))
    return (entered - begin) / 1e6


def own_memory(factor, variables):
    """The largest memory of the Extractor alone, in MB: Java runs as a process of its own here."""
    bundle = bundle_of(factor)
    params = (f"{BIN}/quorvane-pack", "params", "write", bundle)
    run(*params, "force_spawn=true")
    peak = 0
    process = subprocess.Popen([installer(factor), "-silent"], stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, env=variables)
    while process.poll() is None:
        with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
            found = re.search(r"VmHWM:\s*(\d+) kB", status.read())
        peak = int(found.group(1)) if found else peak
        time.sleep(0.005)
    run(*params, "--unset", "force_spawn")
    if process.returncode != 0:
        sys.exit("the installation with Java as a process of its own failed")
    return peak / 1024


def measure_beside(factor, results):
    variables = make_account()
    results.append((install(factor, variables, "beside")[0],
                    quick_launch(factor, variables, "beside")))


def print_beside(results, least, java):
    wall, launch = (statistics.median(column) for column in zip(*results))
    print(f"| beside it | {wall:.2f} | {least:.2f} | {wall / least:.2f} | {java:.2f} | "
          f"{(wall - java) / (least - java):.2f} | | | | {launch:.0f} |", flush=True)


def measure_all(factor):
    installs, floors, launches, beside = [], [], [], []
    for number in range(ROUNDS):
        floors.append(floor(factor))
        if BESIDE and number % 2 == 0:
            measure_beside(factor, beside)
        variables = make_account()
        installs.append(install(factor, variables))
        launches.append(quick_launch(factor, variables))
        if BESIDE and number % 2 == 1:
            measure_beside(factor, beside)
    own = own_memory(factor, make_account())
    wall, least = (statistics.median(r[0] for r in rows) for rows in (installs, floors))
    java = statistics.median(r[1] for r in floors)
    runtime, application = (size_of(path(f"{name}-{factor}")) / 1e6 for name in ("runtime", "app"))
    peak, other = (max(r[-1] for r in rows) for rows in (installs, floors))
    print(f"| {runtime:.0f} + {application:.0f} MB | {wall:.2f} | {least:.2f} | {wall / least:.2f} | "
          f"{java:.2f} | {(wall - java) / (least - java):.2f} | "
          f"{own:.0f} | {peak:.0f} | {other:.0f} | {statistics.median(launches):.0f} |", flush=True)
    if BESIDE:
        print_beside(beside, least, java)


def prepare_tools():
    run(f"{BIN}/quorvane-pack", "key", "new", path("release.key"))
    write("launch.toml", LAUNCH)
    run(f"{BIN}/quorvane-pack", "launchfile", "write", path("launch.toml"),
        path("updater", "QuorvaneLaunch"))


def main():
    prepare_tools()
    print(f"medians of {ROUNDS} rounds; the memory is the largest of all rounds\n")
    print("| runtime + application | installation, s | floor, s | ratio | of it Java, s | ratio without "
          "Java | Extractor's own memory, MB | largest process, MB | the floor's, MB | quick launch, ms |")
    print("|---|---|---|---|---|---|---|---|---|---|")
    for factor in FACTORS:
        prepare(factor)
        measure_all(factor)
        clean_up(factor)


if __name__ == "__main__":
    main()

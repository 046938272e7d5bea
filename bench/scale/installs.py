"""Installations that grow in bytes, and what xz, sha256sum and tar need for the same."""

import os
import random
import shutil
import subprocess

from common import (BIN, PACK, ROUNDS, Path, make_account, measure, median, own_memory, path, run,
                    sizes, write)

PROJECT = Path(__file__).resolve().parents[2] / "tests/data/packager/folders.toml"
LAUNCH = """version = 6
class = "Startup"
app_name = "Sample"
class_path = ["updater.jar"]
"""
PIECE, TIMES = 20_000, 50
RECORD_FIELDS = 11  # of a Tail, before its archives
FAST_LZMA = "--lzma1=dict=1MiB,mode=fast,mf=hc3,nice=273,depth=1"


def make_installer():
    """The smallest installer, which the larger ones are made of."""
    run(PACK, "key", "new", path("release.key"))
    write("launch.toml", LAUNCH)
    run(PACK, "launchfile", "write", path("launch.toml"), path("updater", "QuorvaneLaunch"))
    shutil.copy(path("updater", "QuorvaneLaunch"), path("app"))
    shutil.copy(PROJECT, path("project.toml"))
    run(PACK, "build", path("project.toml"), "--output", path("dist"), "--executables", BIN,
        "--bundles", "--launcher-bundle", "--no-cache")


def bundle(kind):
    folder = path("dist", "bundles")
    target, = os.listdir(folder)
    return os.path.join(folder, target, kind, "Sample.app")


def executable(app):
    folder = os.path.join(app, "Contents", "MacOS")
    return os.path.join(folder, os.listdir(folder)[0])


def fill(folder, size, source, rng):
    """Files of a megabyte, each a piece of class data of its own, again and again: packing them takes
    minutes less than real data, which is not what is measured here."""
    os.makedirs(folder)
    for number in range(size // (PIECE * TIMES)):
        start = rng.randrange(len(source) - PIECE)
        with open(os.path.join(folder, f"data{number}"), "wb") as file:
            file.write(source[start:start + PIECE] * TIMES)


def make_archive(name, below, size, source, rng):
    """The archive of a component, in the folder `below` of it, with `size` more bytes, signed and compressed; what it was made of
    is gone afterwards, except for the plain archive's length."""
    tree, plain = path(f"{name}.tree"), path(f"{name}.p2")
    shutil.copytree(path(name), os.path.join(tree, below))
    fill(os.path.join(tree, below, "data"), size, source, rng)
    run(PACK, "archive", "create", "--key", path("release.key"), tree, plain)
    shutil.rmtree(tree)
    length = os.path.getsize(plain)
    run("sh", "-c", f"xz -c --format=lzma {FAST_LZMA} '{plain}' > '{plain}.l2'")
    os.remove(plain)
    return length


def field(file):
    text = bytearray()
    while (byte := file.read(1)) not in (b"\0", b""):
        text += byte
    return bytes(text)


def splice(source, target, archives):
    """Copies a Tail, with other archives for those with these {names: files}."""
    replaced = 0
    with open(source, "rb") as old, open(target, "wb") as new:
        for _ in range(RECORD_FIELDS):
            new.write(field(old) + b"\0")
        while kind := field(old):
            name, length = field(old), field(old)
            content = old.read(int(length))
            given = archives.get(name.decode())
            replaced += given is not None
            size = os.path.getsize(given) if given else len(content)
            new.write(b"".join(text + b"\0" for text in (kind, name, str(size).encode())))
            if given:
                with open(given, "rb") as archive:
                    shutil.copyfileobj(archive, new, 1 << 20)
            else:
                new.write(content)
    if replaced != len(archives):
        raise SystemExit("the installer has other archives than these: " + " ".join(archives))


def make_larger(megabytes, source):
    """An installer of so many megabytes more, six sevenths of them in the runtime."""
    rng = random.Random(megabytes)
    app = path(f"large-{megabytes}", "Sample.app")
    shutil.copytree(bundle("offline"), app)
    if megabytes == 0:
        return app, 0
    size = megabytes * 1_000_000
    length = (make_archive("runtime", "Contents/Home", size * 6 // 7, source, rng)
              + make_archive("app", "", size // 7, source, rng))
    tail = os.path.join("Contents", "Resources", "Tail")
    splice(os.path.join(bundle("offline"), tail), os.path.join(app, tail), {
        "runtime.p2.l2": path("runtime.p2.l2"), "application.p2.l2": path("app.p2.l2")})
    return app, length


def install(app, variables):
    wall, output = measure([executable(app), "-silent"], variables)
    if b"Archive signature verified." not in output or b"\nmain " not in output:
        raise SystemExit("the installer did not install and start the program")
    return wall


def floor():
    """The same archives decompressed, hashed and extracted by other programs, which read them as
    streams of bytes: one file is made of each."""
    shutil.rmtree(path("floor"), ignore_errors=True)
    os.mkdir(path("floor"))
    steps = "".join(f"""
        xz -dc --format=lzma '{path(name + ".p2.l2")}' > '{path("floor", name)}'
        sha256sum '{path("floor", name)}'
        cp --reflink=never --sparse=never '{path("floor", name)}' '{path("floor", name + ".copy")}'
        rm '{path("floor", name)}'""" for name in ("runtime", "app"))
    return measure(["sh", "-ec", steps])[0]


def one_size(megabytes, source, rounds):
    app, length = make_larger(megabytes, source)
    walls, floors = [], []
    for _ in range(rounds):
        if megabytes:
            floors.append((floor(),))
            shutil.rmtree(path("floor"))
        walls.append((install(app, make_account("account")),))
    memory = own_memory([executable(app), "-silent"], app, make_account("account"))
    for name in (path("account"), path(f"large-{megabytes}")):
        shutil.rmtree(name)
    return length / 1e6, median(walls), median(floors) if floors else 0, memory


def measure_installs(table):
    with open(path("runtime", "lib", "modules"), "rb") as file:
        source = file.read()
    rounds = max(1, min(3, ROUNDS // 4))
    fixed = one_size(0, source, 2 * rounds)
    table.add("installation", "the smallest runtime, the fixed cost", 2 * rounds,
              (fixed[1], "", None), memory=fixed[3])
    for megabytes in sizes("INSTALLS", "100 1000 4000"):
        length, wall, least, memory = one_size(megabytes, source, rounds)
        unit, other = (wall - fixed[1]) / megabytes, least / length
        table.add("installation", f"{megabytes} MB more", rounds,
                  (wall, f"{unit * 1000:.2f} ms/MB", unit),
                  (least, f"{other * 1000:.2f} ms/MB", other), memory)

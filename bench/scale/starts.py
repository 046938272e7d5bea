"""Starts of what is installed, from exec to Java's main: with long class paths, many version folders
and many log files."""

import os
import re
import shutil
from datetime import datetime, timedelta

from common import (PACK, ROUNDS, make_account, master_folder, measure, median, own_memory, path,
                    rounds_of, run, sizes, start_of_main, write)
from installs import LAUNCH, bundle, executable

EXTRACTOR, LAUNCHER = "quick launch", "Launcher"


def installed(account):
    """An account with what the smallest installer installs."""
    variables = make_account(account)
    measure([executable(bundle("offline")), "-silent"], variables)
    return variables


def quick_launch(variables):
    result = start_of_main([executable(bundle("offline")), "-silent"], variables)
    if b"Running without extraction now" not in result[1]:
        raise SystemExit("what is installed was installed again")
    return result


def launcher(class_path, variables, folder):
    return start_of_main([executable(bundle("launcher")), "-silent", "-cp", class_path, "Startup"],
                         variables, folder)


def own(variables):
    return own_memory([executable(bundle("offline")), "-silent"], bundle("offline"), variables)


def version_folder(account, component):
    """The name of the one version folder of a component, cut at its version."""
    name, = (name for name in os.listdir(master_folder(account))
             if re.fullmatch(rf"[^-]+-{component}-\d+-complete", name))
    return re.fullmatch(r"(.*-)(\d+)(-complete)", name).groups()


def add_starts(table, kind, unit, cases, memories, what):
    """Adds rows for cases {(count, who): results}, the larger ones compared with the smallest. The
    unit's time is what is above the smallest case's."""
    least = min(count for count, _ in cases)
    for who in dict.fromkeys(who for _, who in cases):
        base = median(cases[least, who])
        for count in sorted(count for count, name in cases if name == who):
            wall = median(cases[count, who])
            each = "" if count == least else f"{(wall - base) / (count - least) * 1e6:.1f} µs{unit}"
            table.add(f"{kind}, {who}", f"{count:,} {what}", len(cases[count, who]),
                      (wall, each, wall), memory=memories.get((count, who), ""))


def make_jars(folder, count, name):
    """Real jars; the program's own is the last."""
    for number in range(count):
        shutil.copy(path("empty.jar") if number < count - 1 else path("updater", "updater.jar"),
                    os.path.join(folder, name(number)))


def jar_name(number):
    return f"{number:04}.jar"


def class_path_case(count):
    """The environments and the class path of one case. The Launcher reverses its class path, and
    leaves out the first entry, unless it is followed by the separator only."""
    account = f"path-{count}"
    variables = installed(account)
    master = master_folder(account)
    updater = os.path.join(master, "".join(version_folder(account, "Quorvane")))
    make_jars(updater, count, jar_name)
    names = ", ".join(f'"{jar_name(number)}"' for number in range(count))
    write("launch-path.toml", LAUNCH.replace('"updater.jar"', names))
    run(PACK, "launchfile", "write", "--force", path("launch-path.toml"),
        os.path.join(updater, "QuorvaneLaunch"))
    java = os.path.join(master, "".join(version_folder(account, "Mac64JRE")), "bin", "java")
    return variables, updater, java


def fits_launch_file(updater, count):
    """Whether the class path has less than the 50,000 bytes that a launch takes."""
    return (len(updater) + len("/0000.jar:")) * count < 50000


def measure_class_paths(table):
    write("empty.txt", "nothing\n")
    run("jar", "--create", "--file", path("empty.jar"), "-C", path(), "empty.txt")
    runs, accounts = {}, {}
    for count in sizes("CLASS_PATHS", "20 200 400 2000"):
        variables, updater, java = class_path_case(count)
        words = [jar_name(number) for number in range(count)]
        reverse = ":" + ":".join(reversed(words))
        runs[count, LAUNCHER] = lambda v=variables, u=updater, w=reverse: launcher(w, v, u)
        runs[count, "java -cp"] = lambda v=variables, u=updater, w=":".join(words), j=java: (
            start_of_main([j, "-cp", w, "Startup"], v, u))
        if fits_launch_file(updater, count):
            accounts[count] = variables
            runs[count, EXTRACTOR] = lambda v=variables: quick_launch(v)
    cases = rounds_of(runs, ROUNDS)
    memories = {(count, EXTRACTOR): own(variables) for count, variables in accounts.items()}
    add_starts(table, "class path", "/entry", cases, memories, "jars")
    least = min(count for count, _ in cases)
    for count in sorted({count for count, _ in cases if count != least}):
        for who in (LAUNCHER, EXTRACTOR):
            if (count, who) in cases:
                ours, java = ((median(cases[count, name]) - median(cases[least, name]))
                              for name in (who, "java -cp"))
                table.add(f"class path, {who} above java", f"{count:,} jars", ROUNDS,
                          (ours - java, f"{(ours - java) / (count - least) * 1e6:.1f} µs/entry", None))


def copy_bundle(source, home):
    """The bundle beside a runtime, with a link to the runtime of its own."""
    shutil.copytree(source, home + ".plugin", symlinks=True)
    link = os.path.join(home + ".plugin", "Contents", "Home")
    os.remove(link)
    os.symlink(home, link)


def multiply(account, component, count):
    """Makes `count` complete version folders of the one, with hard links."""
    master = master_folder(account)
    lead, version, tail = version_folder(account, component)
    source = os.path.join(master, lead + version + tail)
    for number in range(1, count):
        copy = os.path.join(master, f"{lead}{int(version) + number}{tail}")
        run("cp", "-al", source, copy)
        if os.path.exists(source + ".plugin"):
            copy_bundle(source + ".plugin", copy)


def measure_versions(table):
    runs, accounts = {}, {}
    for count in sizes("VERSIONS", "5 50 500"):
        accounts[count] = installed(f"versions-{count}")
        for component in ("Sample", "Mac64JRE", "Quorvane"):
            multiply(f"versions-{count}", component, count)
        runs[count, EXTRACTOR] = lambda v=accounts[count]: quick_launch(v)
        runs[count, LAUNCHER] = lambda v=accounts[count]: launcher(
            path("updater", "updater.jar"), v, path())
    cases = rounds_of(runs, ROUNDS)
    memories = {(count, EXTRACTOR): own(variables) for count, variables in accounts.items()}
    add_starts(table, "version folders", "/version", cases, memories,
               "of application, updater and runtime each")


def write_logs(account, prefix, count):
    folder = os.path.join(master_folder(account), "logs")
    os.makedirs(folder, exist_ok=True)
    when = datetime(2024, 1, 1)
    for number in range(count):
        stamp = (when + timedelta(hours=number)).strftime("%Y-%m-%d-%H-%M-%S-") + "042"
        with open(os.path.join(folder, f"{prefix}-{stamp}.log"), "w", encoding="ascii") as file:
            file.write("a line of an earlier start\n")


def after_a_year(account, count, variables):
    """A start by the desktop that finds `count` of the Launcher's own logs, and leaves twenty."""
    write_logs(account, "Launcher", count)
    return launcher(path("updater", "updater.jar"), variables, path())


def measure_logs(table):
    runs, accounts = {}, {}
    for count in sizes("LOGS", "10 1000 5000"):
        account = f"logs-{count}"
        accounts[count] = installed(account)
        desktop = dict(accounts[count], DESKTOP_STARTUP_ID="files-1-host_TIME5")
        write_logs(account, "Wrapper", count)
        runs[count, EXTRACTOR] = lambda v=accounts[count]: quick_launch(v)
        runs[count, "Launcher of the desktop"] = lambda v=desktop: launcher(
            path("updater", "updater.jar"), v, path())
        installed(f"old-{account}")
        old = dict(make_environment(f"old-{account}", accounts[count], account), **{
            "DESKTOP_STARTUP_ID": "files-1-host_TIME5"})
        runs[count, "Launcher that finds so many of its own"] = (
            lambda a=f"old-{account}", c=count, v=old: after_a_year(a, c, v))
    cases = rounds_of(runs, ROUNDS)
    memories = {(count, EXTRACTOR): own(variables) for count, variables in accounts.items()}
    add_starts(table, "logs", "/file", cases, memories, "files")


def make_environment(account, variables, other):
    """The environment of an account, given that of another."""
    return {name: text.replace(path(other) + "/", path(account) + "/")
            for name, text in variables.items()}

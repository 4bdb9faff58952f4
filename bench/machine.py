"""What a result depends on: machine, system, file system, versions of everything that took part."""
import os
import platform
import subprocess

PACKAGES = ["g++", "liblmdb-dev", "libprotobuf-dev", "libflatbuffers-dev", "libabsl-dev",
            "libsqlite3-dev", "redis-server", "libhiredis-dev"]


def output(*command):
    try:
        done = subprocess.run(command, capture_output=True, text=True, check=False)
    except OSError:
        return ""
    return done.stdout.strip()


def first_line(path, key):
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            if line.startswith(key):
                return line.split(":", 1)[1].strip()
    return "unknown"


def facts(directory):
    """Pairs of a name and what it is, for the machine that this runs on."""
    versions = output("dpkg-query", "-W", "-f", "${Package} ${Version}\n", *PACKAGES).splitlines()
    memory = int(first_line("/proc/meminfo", "MemTotal").split()[0]) / 1024 / 1024
    where = output("findmnt", "-n", "-o", "FSTYPE,SOURCE", "-T", directory).split()
    load = os.getloadavg()
    return [
        ("Processor", f'{first_line("/proc/cpuinfo", "model name")}, {os.cpu_count()} cores'),
        ("Memory", f"{memory:.1f} GiB"),
        ("System", f'{output("sh", "-c", ". /etc/os-release; echo $PRETTY_NAME")}, '
                   f"kernel {platform.release()}"),
        ("Databases on", f'{where[0]} ({where[1]}), {directory}' if len(where) == 2 else directory),
        ("Load at the start", ", ".join(f"{value:.2f}" for value in load)),
        ("Revision", output("git", "describe", "--always", "--dirty") or "unknown"),
        ("Versions", ", ".join(versions)),
    ]

"""Memory, CPU time and handles of a program and its child processes."""

import os
import re
from dataclasses import dataclass
from pathlib import Path

TICK = os.sysconf("SC_CLK_TCK")


@dataclass
class Usage:
    resident: int = 0  # KiB, of the program alone
    proportional: int = 0  # KiB, shared pages divided among their users
    anonymous: int = 0  # KiB, without the pages of files
    descriptors: int = 0
    threads: int = 0
    processor: float = 0  # seconds since each process started
    processes: int = 0


def children(process):
    found = []
    for task in Path(f"/proc/{process}/task").iterdir():
        found += (task / "children").read_text().split()
    return [int(child) for child in found]


def family(process):
    return [process, *(member for child in children(process) for member in family(child))]


def kib(name, text):
    return int(re.search(rf"^{name}:\s+(\d+)", text, re.M)[1])


def add_process(usage, process):
    folder = Path(f"/proc/{process}")
    memory = (folder / "smaps_rollup").read_text()
    usage.proportional += kib("Pss", memory)
    usage.anonymous += kib("Anonymous", memory)
    usage.descriptors += len(os.listdir(folder / "fd"))
    usage.threads += len(os.listdir(folder / "task"))
    after_name = (folder / "stat").read_text().rpartition(")")[2].split()
    usage.processor += (int(after_name[11]) + int(after_name[12])) / TICK
    usage.processes += 1


def usage_of(process):
    """The usage of a process and all of its descendants."""
    usage = Usage(resident=kib("VmRSS", Path(f"/proc/{process}/status").read_text()))
    for member in family(process):
        add_process(usage, member)
    return usage

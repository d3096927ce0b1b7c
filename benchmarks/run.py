#!/usr/bin/env python3
"""Runs the benchmarks of a capability and compares what they measured with the goals.

Every claim is a ratio of two times, or a counter, of one benchmark program. Both sides of a ratio run interleaved in one
process, so that what disturbs the machine disturbs both; the figure is the median over several processes.
"""

import argparse
import json
import statistics
import subprocess
import sys
from pathlib import Path


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("capability", nargs="?", help="run only the claims of this capability")
    parser.add_argument("--binaries", type=Path, required=True)
    parser.add_argument("--goals", type=Path, required=True)
    parser.add_argument("--processes", type=int, default=5)
    return parser.parse_args()


def run_once(program, prefix):
    """One process of a benchmark program: the median of each of its benchmarks, by name."""
    command = prefix + [str(program), "--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=5",
                        "--benchmark_report_aggregates_only=true", "--benchmark_format=json"]
    output = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout
    return {entry["run_name"]: entry for entry in json.loads(output)["benchmarks"]
            if entry.get("aggregate_name") == "median"}


def find(results, name):
    """The result of a benchmark, whose full name may carry options behind the given one."""
    for full, entry in results.items():
        if full == name or full.startswith(name + "/"):
            return entry
    raise KeyError(f"no benchmark {name} among {sorted(results)}")


def measure(claim, results):
    if "counter" in claim:
        return find(results, claim["benchmark"])[claim["counter"]]
    return find(results, claim["ours"])["real_time"] / find(results, claim["beside"])["real_time"]


def meets(claim, value):
    return value <= claim["at_most"] if "at_most" in claim else value >= claim["at_least"]


def report(name, claim, values):
    value = statistics.median(values)
    sign, goal = ("<=", claim["at_most"]) if "at_most" in claim else (">=", claim["at_least"])
    verdict = "ok" if meets(claim, value) else "short"
    print(f"ratio {name} {value:.3f} {sign} {goal} {verdict}", flush=True)
    return verdict == "ok"


def main():
    options = arguments()
    goals = json.loads(options.goals.read_text())
    good = True
    for program, entry in goals.items():
        if options.capability and entry["capability"] != options.capability:
            continue
        prefix = ["taskset", "-c", entry["cpus"]] if "cpus" in entry else []
        runs = [run_once(options.binaries / entry["capability"] / program, prefix) for _ in range(options.processes)]
        for name, claim in entry["claims"].items():
            good &= report(name, claim, [measure(claim, run) for run in runs])
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())

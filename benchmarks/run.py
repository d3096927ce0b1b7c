#!/usr/bin/env python3
"""Runs the benchmarks of a capability and compares what they measured with the goals.

Every claim is a ratio of two times or of two counters, or a counter alone, of one benchmark program. Both sides of a ratio
run interleaved in one process, so that what disturbs the machine disturbs both; the figure is the median over several
processes.

A goal of 1.0 says that ours is not slower. Where both sides do the same by the same code it is 1.03, which is what two
runs of one program differ by.

Some counters are the longest of many cases, such as a pause. A claim about the "worst" takes the worst repetition of a
process. By the clock that is no promise of each process: a machine that others use stands still now and then, so such a
figure too is the median over the processes, and the worst one is a note beside it. Where the counter is work of the thread
itself, which standing still does not lengthen, the claim says "each_process", and its goal holds in the worst of them.

The goals are listed by program. A program whose claims differ in what they cost has several entries, each with a "program"
and the "arguments" that choose its benchmarks.

Exits with 0 when all goals are met, with 1 when one is short, and with 2 when something could not be measured.
"""

import argparse
import json
import statistics
import subprocess
import sys
from pathlib import Path


LEAST_PROCESSES = 5


class NotMeasured(Exception):
    """A program, or what it printed, has no figure for a claim; says why."""


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("capability", nargs="?", help="run only the claims of this capability")
    parser.add_argument("--binaries", type=Path, required=True)
    parser.add_argument("--goals", type=Path, required=True)
    parser.add_argument("--processes", type=int, default=LEAST_PROCESSES, help=f"{LEAST_PROCESSES} at least")
    return parser.parse_args()


def run_once(program, prefix, arguments):
    """One process of a benchmark program: the repetitions of each of its benchmarks, by name."""
    command = prefix + [str(program), "--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=5",
                        "--benchmark_format=json"] + arguments
    try:
        output = subprocess.run(command, check=True, stdout=subprocess.PIPE, stdin=subprocess.DEVNULL).stdout
        benchmarks = json.loads(output)["benchmarks"]
    except (OSError, subprocess.CalledProcessError) as error:
        raise NotMeasured(str(error)) from error
    except (ValueError, KeyError, TypeError) as error:
        raise NotMeasured(f"{program} prints something else than benchmarks: {error}") from error
    results = {}
    for entry in benchmarks:
        if entry.get("error_occurred"):
            raise NotMeasured(f"{entry['run_name']}: {entry['error_message']}")
        if entry["run_type"] == "iteration":
            results.setdefault(entry["run_name"], []).append(entry)
    return results


def values(results, name, key):
    """One figure of all repetitions of a benchmark, whose full name may carry options behind the given one."""
    for full, repetitions in results.items():
        if full == name or full.startswith(name + "/"):
            if any(key not in repetition for repetition in repetitions):
                raise NotMeasured(f"{full} does not measure {key}")
            return [repetition[key] for repetition in repetitions]
    raise NotMeasured(f"no benchmark {name} among {sorted(results)}")


def worst_of(claim, measured):
    return (max if "at_most" in claim else min)(measured)


def measure(claim, results):
    """The figure of a claim in one process: a counter, the worst one where a single case counts, or a ratio of the medians
    of both sides, which is one of times where no counter is named."""
    if "benchmark" in claim:
        counted = values(results, claim["benchmark"], claim["counter"])
        return worst_of(claim, counted) if claim.get("worst") else statistics.median(counted)
    key = claim.get("counter", "real_time")
    ours, beside = (statistics.median(values(results, claim[side], key)) for side in ("ours", "beside"))
    if beside == 0:
        raise NotMeasured(f"{claim['beside']} is 0, which nothing can be compared with")
    return ours / beside


def figure(name, claim, measured):
    """The figure of a claim over all processes."""
    worst = worst_of(claim, measured)
    if claim.get("each_process"):
        return worst
    if claim.get("worst"):
        print(f"note {name}: {worst:.3f} in the worst process", flush=True)
    return statistics.median(measured)


def report(name, claim, measured):
    value = figure(name, claim, measured)
    sign, goal = ("<=", claim["at_most"]) if "at_most" in claim else (">=", claim["at_least"])
    good = value <= goal if sign == "<=" else value >= goal
    print(f"ratio {name} {value:.3f} {sign} {goal} {'ok' if good else 'short'}", flush=True)
    return good


def main():
    options = arguments()
    goals = json.loads(options.goals.read_text())
    chosen = {program: entry for program, entry in goals.items()
              if options.capability in (None, entry["capability"])}
    if not chosen:
        print(f"no benchmarks for {options.capability}; there are some for: "
              + ", ".join(sorted({entry["capability"] for entry in goals.values()})), file=sys.stderr)
        return 2
    good = True
    for program, entry in chosen.items():
        prefix = ["taskset", "-c", entry["cpus"]] if "cpus" in entry else []
        binary = options.binaries / entry["capability"] / entry.get("program", program)
        runs = [run_once(binary, prefix, entry.get("arguments", []))
                for _ in range(max(options.processes, LEAST_PROCESSES))]
        for name, claim in entry["claims"].items():
            good &= report(name, claim, [measure(claim, run) for run in runs])
    return 0 if good else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except NotMeasured as why:
        print(why, file=sys.stderr)
        sys.exit(2)

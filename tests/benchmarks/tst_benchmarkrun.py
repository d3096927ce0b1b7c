"""Tests of benchmarks/run.py, with programs in place of the benchmarks that print what a test has them measure."""

import contextlib
import io
import json
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

RUN = Path(__file__).resolve().parents[2] / "benchmarks" / "run.py"

# Prints the next of the outputs that lie beside it, the last one again and again, and keeps what it was started with.
PROGRAM = """#!{python}
import json, os, sys
plan = json.load(open(__file__ + ".json"))
log = __file__ + ".log"
runs = len(open(log).readlines()) if os.path.exists(log) else 0
with open(log, "a") as file:
    file.write(json.dumps({{"arguments": sys.argv[1:], "cpus": sorted(os.sched_getaffinity(0))}}) + "\\n")
print(plan["outputs"][min(runs, len(plan["outputs"]) - 1)])
sys.exit(plan["code"])
"""


def entry(name, **figures):
    return {"run_name": name, "run_type": "iteration", **figures}


def repetitions(name, key, measured):
    return [entry(name, **{key: value}) for value in measured]


def output(*benchmarks):
    """What one process of a benchmark program prints."""
    return json.dumps({"benchmarks": [each for several in benchmarks for each in several]})


def times(ours, beside):
    """One process that measures one claim called "a", with one repetition of each side."""
    return output(repetitions("a/ours", "real_time", [ours]), repetitions("a/plain", "real_time", [beside]))


def counts(*measured):
    """One process that counts so many things in its repetitions."""
    return output(repetitions("b", "things", measured))


RATIO = {"ours": "a/ours", "beside": "a/plain"}
COUNTER = {"benchmark": "b", "counter": "things"}


class BenchmarkRun(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.goals = {}

    def add(self, outputs, claims, program="bench_x", capability="spine", code=0, **more):
        """A program that measures these outputs, a process each, and what is claimed of them."""
        binary = self.folder / capability / program
        binary.parent.mkdir(exist_ok=True)
        binary.write_text(PROGRAM.format(python=sys.executable))
        binary.chmod(0o755)
        Path(f"{binary}.json").write_text(json.dumps({"outputs": outputs, "code": code}))
        self.goals[program] = {"capability": capability, "claims": claims, **more}
        return binary

    def starts(self, binary):
        log = Path(f"{binary}.log")
        return [json.loads(line) for line in log.read_text().splitlines()] if log.exists() else []

    def run_benchmarks(self, *arguments):
        goals = self.folder / "goals.json"
        goals.write_text(json.dumps(self.goals))
        return subprocess.run([sys.executable, "-B", str(RUN), "--binaries", str(self.folder), "--goals", str(goals),
                               *arguments], capture_output=True, text=True, stdin=subprocess.DEVNULL, check=False)

    def assert_prints(self, lines, code, *arguments):
        result = self.run_benchmarks(*arguments)
        self.assertEqual(result.stdout.splitlines(), lines, result.stderr)
        self.assertEqual(result.returncode, code, result.stderr)

    def assert_fails(self, mentions, *arguments):
        """Not as a goal that is short does: there is no figure, and one line says why."""
        result = self.run_benchmarks(*arguments)
        self.assertEqual(result.returncode, 2, result.stderr)
        self.assertIn(mentions, result.stderr)
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        self.assertEqual(result.stdout, "")


class Figures(BenchmarkRun):
    def test_a_ratio_is_one_of_the_medians_of_both_sides(self):
        self.add([output(repetitions("a/ours", "real_time", [90, 3, 2, 1, 4]),
                         repetitions("a/plain", "real_time", [2, 70, 1, 2, 5]))],
                 {"speed": {**RATIO, "at_most": 2}})
        self.assert_prints(["ratio speed 1.500 <= 2 ok"], 0)

    def test_a_ratio_of_counters_is_none_of_times(self):
        self.add([output([entry("a/ours", real_time=9, share=0.5)], [entry("a/plain", real_time=1, share=0.4)])],
                 {"share": {**RATIO, "counter": "share", "at_least": 1}})
        self.assert_prints(["ratio share 1.250 >= 1 ok"], 0)

    def test_a_counter_is_the_median_of_the_repetitions(self):
        self.add([counts(7, 100, 1)], {"things": {**COUNTER, "at_most": 7}})
        self.assert_prints(["ratio things 7.000 <= 7 ok"], 0)

    def test_an_even_number_of_repetitions_has_the_mean_of_its_middle_as_median(self):
        self.add([counts(1, 2, 4, 100)], {"things": {**COUNTER, "at_most": 3}})
        self.assert_prints(["ratio things 3.000 <= 3 ok"], 0)

    def test_a_figure_is_the_median_of_the_processes(self):
        self.add([times(9, 1), times(1, 1), times(3, 1), times(2, 1), times(80, 1)],
                 {"speed": {**RATIO, "at_most": 3}})
        self.assert_prints(["ratio speed 3.000 <= 3 ok"], 0)

    def test_both_sides_of_a_ratio_are_of_one_process(self):
        self.add([times(1, 1), times(10, 10), times(100, 100), times(1000, 1000), times(10000, 10000)],
                 {"speed": {**RATIO, "at_most": 1}})
        self.assert_prints(["ratio speed 1.000 <= 1 ok"], 0)

    def test_the_aggregates_of_a_program_are_no_repetitions(self):
        mean = {"run_name": "b", "run_type": "aggregate", "aggregate_name": "mean", "things": 1000}
        self.add([output(repetitions("b", "things", [1, 2, 3]), [mean, mean, mean])],
                 {"things": {**COUNTER, "at_most": 2}})
        self.assert_prints(["ratio things 2.000 <= 2 ok"], 0)

    def test_options_behind_a_name_are_none_of_the_name(self):
        self.add([output(repetitions("b/iterations:1", "things", [5]))], {"things": {**COUNTER, "at_most": 5}})
        self.assert_prints(["ratio things 5.000 <= 5 ok"], 0)

    def test_a_name_that_only_begins_alike_is_another_one(self):
        self.add([output(repetitions("bb", "things", [900]), repetitions("b", "things", [5]))],
                 {"things": {**COUNTER, "at_most": 5}})
        self.assert_prints(["ratio things 5.000 <= 5 ok"], 0)


class Goals(BenchmarkRun):
    def test_a_goal_that_is_not_met_is_short(self):
        self.add([times(3, 2)], {"speed": {**RATIO, "at_most": 1.4}})
        self.assert_prints(["ratio speed 1.500 <= 1.4 short"], 1)

    def test_a_goal_from_below_that_is_not_met_is_short(self):
        self.add([counts(3)], {"things": {**COUNTER, "at_least": 4}})
        self.assert_prints(["ratio things 3.000 >= 4 short"], 1)

    def test_what_is_short_is_not_rounded_up_to_the_goal(self):
        self.add([times(1.0004, 1)], {"speed": {**RATIO, "at_most": 1}})
        self.assert_prints(["ratio speed 1.000 <= 1 short"], 1)

    def test_one_that_is_short_does_not_hide_the_others(self):
        self.add([times(3, 2)], {"first": {**RATIO, "at_most": 1}, "second": {**RATIO, "at_most": 2}})
        self.add([counts(1)], {"third": {**COUNTER, "at_most": 1}}, program="bench_y")
        self.assert_prints(["ratio first 1.500 <= 1 short", "ratio second 1.500 <= 2 ok", "ratio third 1.000 <= 1 ok"],
                           1)


class Worst(BenchmarkRun):
    def test_the_worst_repetition_of_each_process_counts(self):
        self.add([counts(1, 8, 1)], {"pause": {**COUNTER, "worst": True, "at_most": 7}})
        self.assert_prints(["note pause: 8.000 in the worst process", "ratio pause 8.000 <= 7 short"], 1)

    def test_it_is_the_median_over_the_processes_with_the_worst_one_beside_it(self):
        self.add([counts(1, 5), counts(3, 1), counts(90, 1), counts(4, 1), counts(2, 1)],
                 {"pause": {**COUNTER, "worst": True, "at_most": 4}})
        self.assert_prints(["note pause: 90.000 in the worst process", "ratio pause 4.000 <= 4 ok"], 0)

    def test_in_each_process_the_worst_one_holds(self):
        self.add([counts(1, 5), counts(3, 1), counts(90, 1), counts(4, 1), counts(2, 1)],
                 {"pause": {**COUNTER, "worst": True, "each_process": True, "at_most": 16}})
        self.assert_prints(["ratio pause 90.000 <= 16 short"], 1)

    def test_in_each_process_the_least_one_holds_where_more_is_better(self):
        self.add([counts(9), counts(2), counts(9), counts(9), counts(9)],
                 {"share": {**COUNTER, "each_process": True, "at_least": 3}})
        self.assert_prints(["ratio share 2.000 >= 3 short"], 1)

    def test_the_worst_of_what_is_to_be_much_is_the_least(self):
        self.add([counts(9, 2, 8), counts(9, 9)], {"share": {**COUNTER, "worst": True, "at_least": 3}})
        self.assert_prints(["note share: 2.000 in the worst process", "ratio share 9.000 >= 3 ok"], 0)


class Programs(BenchmarkRun):
    def test_a_program_runs_in_five_processes_at_least(self):
        for processes, expected in (None, 5), ("2", 5), ("7", 7):
            with self.subTest(processes=processes):
                binary = self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}}, capability=f"of{processes}")
                self.run_benchmarks(*(["--processes", processes] if processes else []))
                self.assertEqual(len(self.starts(binary)), expected)

    def test_both_sides_run_interleaved_with_several_repetitions(self):
        binary = self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}})
        self.run_benchmarks()
        self.assertEqual(self.starts(binary)[0]["arguments"],
                         ["--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=5",
                          "--benchmark_format=json"])

    def test_arguments_of_an_entry_come_last_so_that_they_count(self):
        binary = self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}}, arguments=["--benchmark_repetitions=1"])
        self.run_benchmarks()
        self.assertEqual(self.starts(binary)[0]["arguments"][-1], "--benchmark_repetitions=1")

    def test_several_entries_may_have_one_program(self):
        binary = self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}})
        self.goals["bench_x_again"] = {"capability": "spine", "program": "bench_x", "arguments": ["--again"],
                                       "claims": {"again": {**COUNTER, "at_most": 1}}}
        self.assert_prints(["ratio things 1.000 <= 1 ok", "ratio again 1.000 <= 1 ok"], 0)
        self.assertEqual([start["arguments"][-1] == "--again" for start in self.starts(binary)], [False] * 5 + [True] * 5)

    def test_an_entry_may_choose_its_processors(self):
        chosen = max(os.sched_getaffinity(0))
        binary = self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}}, cpus=str(chosen))
        self.run_benchmarks()
        self.assertEqual(self.starts(binary)[0]["cpus"], [chosen])

    def test_a_capability_chooses_its_programs(self):
        other = self.add([times(9, 1)], {"speed": {**RATIO, "at_most": 1}})
        self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}}, program="bench_y", capability="replay")
        self.assert_prints(["ratio things 1.000 <= 1 ok"], 0, "replay")
        self.assertEqual(self.starts(other), [])

    def test_a_capability_that_nobody_measures_is_told_with_those_that_are(self):
        self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}})
        self.add([counts(1)], {"more": {**COUNTER, "at_most": 1}}, program="bench_y", capability="replay")
        result = self.run_benchmarks("list")
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stdout, "")
        self.assertEqual(result.stderr.splitlines(), ["no benchmarks for list; there are some for: replay, spine"])


class Failures(BenchmarkRun):
    def test_a_program_that_fails_fails_all_whatever_it_measured(self):
        self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}}, code=3)
        self.assert_fails("exit status 3")

    def test_a_program_that_fails_is_started_once(self):
        binary = self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}}, code=3)
        self.run_benchmarks()
        self.assertEqual(len(self.starts(binary)), 1)

    def test_a_program_that_is_not_there(self):
        self.add([counts(1)], {"things": {**COUNTER, "at_most": 1}}).unlink()
        self.assert_fails("bench_x")

    def test_a_program_that_prints_something_else(self):
        self.add(["no benchmarks match"], {"things": {**COUNTER, "at_most": 1}})
        self.assert_fails("bench_x prints something else than benchmarks")

    def test_a_program_that_prints_other_json(self):
        self.add(["[1]"], {"things": {**COUNTER, "at_most": 1}})
        self.assert_fails("bench_x prints something else than benchmarks")

    def test_a_benchmark_that_is_not_there_is_told_with_those_that_are(self):
        self.add([output(repetitions("c", "things", [1]))], {"things": {**COUNTER, "at_most": 1}})
        self.assert_fails("no benchmark b among ['c']")

    def test_one_side_of_a_ratio_that_is_not_there(self):
        self.add([output(repetitions("a/ours", "real_time", [1]))], {"speed": {**RATIO, "at_most": 1}})
        self.assert_fails("no benchmark a/plain among ['a/ours']")

    def test_a_counter_that_is_not_there(self):
        self.add([output(repetitions("b", "others", [1]))], {"things": {**COUNTER, "at_most": 1}})
        self.assert_fails("b does not measure things")

    def test_a_counter_that_one_repetition_lacks(self):
        self.add([output([entry("b", things=1), entry("b")])], {"things": {**COUNTER, "at_most": 1}})
        self.assert_fails("b does not measure things")

    def test_a_benchmark_that_reports_an_error_has_no_figure(self):
        failed = entry("b", things=0, error_occurred=True, error_message="the recorder did not start")
        self.add([output([failed])], {"things": {**COUNTER, "at_most": 1}})
        self.assert_fails("the recorder did not start")

    def test_a_figure_that_is_no_number_is_none(self):
        self.add([counts(float("nan"))], {"things": {**COUNTER, "at_most": 1}})
        result = self.run_benchmarks()
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout.splitlines(), ["ratio things nan <= 1 short"])

    def test_a_side_that_took_no_time_is_nothing_to_compare_with(self):
        self.add([times(1, 0)], {"speed": {**RATIO, "at_most": 1}})
        self.assert_fails("a/plain is 0")


if __name__ == "__main__":
    unittest.main()

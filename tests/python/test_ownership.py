"""An analyser belongs to one thread, is closed once, and may be collected in any order."""

import gc
import itertools
import os
import pickle
import signal
import subprocess
import sys
import threading
import weakref

import pytest

from conftest import open_sample
from info_analyze import Analyzer, ClosedError, ThreadError, UseError, curve_table

CALLS = {
    "query": lambda analyzer: analyzer.query(),
    "function_version": lambda analyzer: analyzer.function_version(0x310),
    "calibration_settings": lambda analyzer: analyzer.calibration_settings(),
    "calibration_defaults": lambda analyzer: analyzer.calibration_defaults(),
    "model_code": lambda analyzer: analyzer.model_code,
    "enter": lambda analyzer: analyzer.__enter__(),
}


def in_thread(call):
    """What a call returns or raises in a thread of its own."""
    result = []

    def run():
        try:
            result.append(call())
        except Exception as error:  # compared by the caller
            result.append(error)

    thread = threading.Thread(target=run, name="other")
    thread.start()
    thread.join()
    return result[0]


def test_all_methods_are_tried():
    public = {name for name in dir(Analyzer) if not name.startswith("_")}
    assert public - set(CALLS) == {"close", "closed", "queue"}


@pytest.mark.parametrize("name", CALLS)
def test_a_closed_analyser_is_refused(name):
    analyzer = open_sample("office-mfp")
    assert not analyzer.closed
    analyzer.close()
    assert analyzer.closed and analyzer.queue == "office-mfp"
    with pytest.raises(ClosedError) as info:
        CALLS[name](analyzer)
    assert info.value.step == "use"
    assert str(info.value) == 'analyser of queue "office-mfp": it is closed'
    analyzer.close()


@pytest.mark.parametrize("name", [*CALLS, "close"])
def test_another_thread_is_refused(name):
    call = CALLS.get(name, lambda analyzer: analyzer.close())
    with open_sample("office-mfp") as analyzer:
        error = in_thread(lambda: call(analyzer))
        assert isinstance(error, ThreadError)
        assert error.cause == "it belongs to the thread MainThread, and other uses it"
        assert analyzer.query()["QVHardDisk"] == "True"


def test_a_later_thread_with_the_same_number_is_refused():
    analyzer, owner = in_thread(lambda: (open_sample("office-mfp"), threading.get_ident()))
    for _ in range(100):
        error, user = in_thread(lambda: (pytest.raises(ThreadError, analyzer.query),
                                         threading.get_ident()))
        assert isinstance(error.value, ThreadError)
        if user == owner:
            return
    pytest.skip("no thread got the number of an earlier one")


def test_a_block_closes_the_analyser_also_on_an_exception():
    with pytest.raises(KeyError):
        with open_sample("office-mfp") as analyzer:
            analyzer.query()["none"]
    assert analyzer.closed


@pytest.mark.parametrize("use", [Analyzer.query, Analyzer.close, Analyzer.calibration_defaults])
def test_a_signal_handler_cannot_use_an_analyser_during_a_call(use):
    """Signals arrive between the calls of the library that make up a query."""
    errors = []

    def handle(*_):
        try:
            use(analyzer)
        except UseError as error:
            errors.append(error)

    previous = signal.signal(signal.SIGALRM, handle)
    try:
        for _ in range(10_000):
            with open_sample("office-mfp") as analyzer:
                signal.setitimer(signal.ITIMER_REAL, 0.0005)
                try:
                    assert analyzer.query()["QVHardDisk"] == "True"
                except ClosedError:
                    assert analyzer.closed
                signal.setitimer(signal.ITIMER_REAL, 0)
            if errors:
                break
    finally:
        signal.signal(signal.SIGALRM, previous)
    assert errors[0].cause == "a call of it is still running"


# An exception that arrives while a generator is collected is printed, and the query goes on.
@pytest.mark.filterwarnings("ignore::pytest.PytestUnraisableExceptionWarning")
def test_an_interrupted_query_closes_the_analyser():
    """An exception of a signal handler may arrive anywhere in a query."""
    closed = 0

    def handle(*_):
        raise KeyboardInterrupt

    previous = signal.signal(signal.SIGALRM, handle)
    try:
        for number in range(100):
            with open_sample("office-mfp") as analyzer:
                try:
                    signal.setitimer(signal.ITIMER_REAL, 0.00002 * (number + 1))
                    analyzer.query()
                    signal.setitimer(signal.ITIMER_REAL, 0)
                except KeyboardInterrupt:
                    closed += analyzer.closed
                if not analyzer.closed:
                    assert analyzer.query()["QVHardDisk"] == "True"
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, previous)
    assert closed > 10


@pytest.mark.parametrize("order", list(itertools.permutations(range(4))))
def test_results_outlive_the_analyser_in_any_order(order):
    analyzer = open_sample("office-mfp")
    options = analyzer.query()
    expected = dict(options)
    defaults = analyzer.calibration_defaults()
    curve = curve_table("LARCH_Def_Calib")[3]
    things = [analyzer, options, defaults, curve]
    del analyzer, options, defaults, curve
    for index in order:
        things[index] = None
        gc.collect()
        if things[1] is not None:
            assert dict(things[1]) == expected and things[1].reason("QVFinisher").inputs
        if things[2] is not None:
            assert things[2].values == (100, 100, 100, 100)
        if things[3] is not None:
            assert things[3][256] == 210


def test_an_analyser_in_a_cycle_is_collected_by_another_thread():
    def make_cycle():
        analyzer = open_sample("office-mfp")
        analyzer.query()
        cycle = [analyzer]
        cycle.append(cycle)
        return weakref.ref(analyzer), analyzer._finalizer

    gc.collect()
    reference, finalizer = in_thread(make_cycle)
    assert finalizer.alive
    gc.collect()
    assert reference() is None and not finalizer.alive


def test_results_can_be_copied_to_other_processes():
    with open_sample("office-mfp") as analyzer:
        options = analyzer.query()
    copy = pickle.loads(pickle.dumps(options))
    assert copy == options and copy.reason("QVFinisher") == options.reason("QVFinisher")


# Queries all samples in eight threads, each as often as the first argument says.
QUERY_IN_THREADS = """
import sys, threading
import conftest
expected = {sample: dict(line.split("=", 1) for line in
                         (conftest.EXAMPLES / sample / "expected-options.txt").read_text().split("\\n")
                         if line) for sample in conftest.SAMPLES}
wrong = []

def query(number):
    try:
        for i in range(int(sys.argv[1])):
            sample = conftest.SAMPLES[(number + i) % 10]
            with conftest.open_sample(sample) as analyzer:
                if dict(analyzer.query()) != expected[sample]:
                    wrong.append(sample)
                analyzer.calibration_defaults({"QVGradation": "High2"})
    except Exception as error:
        wrong.append(error)

threads = [threading.Thread(target=query, args=[number]) for number in range(8)]
for thread in threads:
    thread.start()
for thread in threads:
    thread.join()
print(wrong)
"""


def test_threads_of_two_interpreters_get_the_options_of_their_printers():
    processes = [subprocess.Popen([sys.executable, "-c", QUERY_IN_THREADS, "20"],
                                  stdout=subprocess.PIPE, text=True) for _ in range(2)]
    assert [process.communicate()[0] for process in processes] == ["[]\n", "[]\n"]
    assert [process.returncode for process in processes] == [0, 0]


# A thread calls a communication library that never returns.
HANG = """
import sys, threading, time
import conftest
from info_analyze import Analyzer
analyzer_is_made = threading.Event()

def query():
    analyzer = Analyzer(conftest.SUPPORT / "faulty/hang_when_called", "office-mfp",
                        conftest.documents_of("office-mfp"))
    analyzer_is_made.set()
    analyzer.query()
    print("the call returned")

threading.Thread(target=query, daemon=True).start()
analyzer_is_made.wait()
time.sleep(0.2)
with conftest.open_sample("office-mfp") as analyzer:
    print(analyzer.query()["QVHardDisk"])
"""


def test_other_threads_run_during_a_call_and_the_process_ends_during_one():
    done = subprocess.run([sys.executable, "-c", HANG], capture_output=True, text=True, timeout=30,
                          check=True)
    assert done.stdout == "True\n"


def test_a_forked_process_uses_the_analyser_of_its_thread():
    with open_sample("office-mfp") as analyzer:
        expected = analyzer.query()
        read, write = os.pipe()
        child = os.fork()
        if child == 0:
            os.write(write, b"1" if analyzer.query(reload=True) == expected else b"0")
            os._exit(0)
        os.waitpid(child, 0)
        assert os.read(read, 1) == b"1"
        os.close(read)
        os.close(write)

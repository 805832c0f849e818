"""The queues of CUPS and of the printer daemon, in folders of the system that a test replaces."""

import json
import os
import subprocess
import sys
import textwrap

import pytest

from conftest import TOOL

ANSWERS = """
import dataclasses, json, sys
import info_analyze

def answer_of(call):
    try:
        return call()
    except info_analyze.Error as error:
        return [type(error).__name__, error.object, error.cause]

folder = "/Library/Printers/Vorel/CUPSKAPPA2"
answers = {
    "cups": [[queue.name, queue.modified and queue.modified.isoformat()]
             for queue in info_analyze.cups_queues()],
    "daemon": answer_of(lambda: info_analyze.daemon_queues(folder)),
    "devices": {name: answer_of(lambda: dataclasses.astuple(info_analyze.daemon_device(folder, name)))
                for name in ("office", "reception", "broken", "none")},
    "find": answer_of(
        lambda: info_analyze.daemon_queue_of("net:192.0.2.11/PDLType=kappa2")),
    "find none": answer_of(
        lambda: info_analyze.daemon_queue_of("net:192.0.2.99/PDLType=kappa2")),
    "no configuration": answer_of(
        lambda: info_analyze.daemon_queues("/Library/Printers/Vorel/CUPSFAX")),
    "folders": info_analyze.driver_folders(),
}
json.dump(answers, sys.stdout)
"""

CONFIGURATION = """\
# the daemon's queues
<Printer office>
DevicePath net:192.0.2.10/PDLType=kappa2
</Printer>
<Printer reception>
DevicePath net:192.0.2.11/PDLType=kappa2
</Printer>
<Printer broken>
DevicePath none
</Printer>
"""


def run_with_folders(cups, cache, *command):
    """Runs a command for which two folders replace /etc/cups and /var/cache."""
    user_too = [] if os.geteuid() == 0 else ["--map-root-user"]
    script = 'mount --bind "$1" /etc/cups && mount --bind "$2" /var/cache && shift 2 && exec "$@"'
    return subprocess.run(["unshare", "--mount", *user_too, "sh", "-c", script, "sh", cups, cache,
                           *command], capture_output=True, text=True, check=True).stdout


@pytest.fixture(scope="module")
def folders(tmp_path_factory):
    cups, cache = tmp_path_factory.mktemp("cups"), tmp_path_factory.mktemp("cache")
    allowed = subprocess.run(["unshare", "--mount", "--map-root-user", "true"], check=False,
                             capture_output=True).returncode == 0
    if not (allowed or os.geteuid() == 0):
        pytest.skip("mount namespaces are not allowed here")
    if not os.path.isdir("/etc/cups"):
        pytest.skip("no /etc/cups")
    (cups / "ppd").mkdir()
    for number, name in enumerate(("reception", "office", "Büro")):
        (cups / f"ppd/{name}.ppd").write_text("")
        os.utime(cups / f"ppd/{name}.ppd", (0, number * 1_000_000_000))
    (cups / "ppd/other.txt").write_text("")
    (cache / "Vorel/CUPSKAPPA2/MQPD").mkdir(parents=True)
    (cache / "Vorel/CUPSKAPPA2/MQPD/mqpd.conf").write_text(CONFIGURATION)
    return cups, cache


@pytest.fixture(scope="module")
def answers(folders):
    return json.loads(run_with_folders(*folders, sys.executable, "-c", textwrap.dedent(ANSWERS)))


def ask_tool_with(folders, *arguments):
    return json.loads(run_with_folders(*folders, *TOOL, *arguments, "--format", "json"))


def test_queues_of_cups_are_those_with_a_ppd(answers):
    assert answers["cups"] == [["Büro", "2033-05-18T03:33:20+00:00"],
                               ["office", "2001-09-09T01:46:40+00:00"],
                               ["reception", None]]


def test_queues_of_the_daemon_are_those_of_the_tool(answers, folders):
    assert answers["daemon"] == ["office", "reception", "broken"]
    listed = ask_tool_with(folders, "queues", "daemon")["queues"]
    assert [queue["name"] for queue in listed] == answers["daemon"]
    assert {queue["driver_folder"] for queue in listed} <= set(answers["folders"])


def test_the_device_of_a_queue(answers):
    assert answers["devices"]["office"] == ["192.0.2.10", "net:"]
    assert answers["devices"]["reception"] == ["192.0.2.11", "net:"]
    cause = "the configuration of /Library/Printers/Vorel/CUPSKAPPA2 has no device for it"
    assert answers["devices"]["broken"] == ["QueueError", 'queue "broken"', cause]
    assert answers["devices"]["none"] == ["QueueError", 'queue "none"', cause]


def test_the_queue_of_a_device_is_that_of_the_tool(answers, folders):
    found = ask_tool_with(folders, "queues", "find", "net:192.0.2.11/PDLType=kappa2")
    assert answers["find"] == found["queue"] == "reception"
    conf = "/var/cache/Vorel/CUPSKAPPA2/MQPD/mqpd.conf"
    assert answers["find none"] == [
        "DeviceUriError", "device URI net:192.0.2.99/PDLType=kappa2",
        f"{conf}: no queue serves it"]


def test_a_family_without_configuration(answers):
    assert answers["no configuration"] == [
        "DriverFolderError", "driver folder /Library/Printers/Vorel/CUPSFAX",
        "/var/cache/Vorel/CUPSFAX/MQPD/mqpd.conf: No such file or directory"]

"""IPP devices of a test's own: ippeveprinter, and servers that answer as no device should. They need
namespaces of their own, with the services that ippeveprinter insists on."""
import collections
import contextlib
import fcntl
import os
import pathlib
import shutil
import socket
import ssl
import struct
import subprocess
import sys
import threading
import time

PROGRAMS = ("ippeveprinter", "dbus-daemon", "avahi-daemon", "unshare", "ipptool")
PATH = "/usr/sbin:/usr/bin:/sbin:/bin"
MESSAGE_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=/run/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_type="method_call"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
"""
IS_INSIDE = "IA_TEST_HAS_NAMESPACES"

# Namespaces ---------------------------------------------------------------------------------------


def missing():
    """Why no device can be played here, or nothing."""
    absent = [name for name in PROGRAMS if not shutil.which(name, path=PATH)]
    if absent:
        return "not installed: " + ", ".join(absent)
    if os.geteuid() != 0:
        return "avahi-daemon needs root"
    run = subprocess.run([*unshare(), "mount", "-t", "tmpfs", "none", "/run"], capture_output=True,
                         text=True)
    return "no namespaces: " + run.stderr.strip() if run.returncode else None


def unshare():
    return ["unshare", "--mount", "--net", "--pid", "--fork", "--kill-child", "--mount-proc", "--"]


def enter_namespaces():
    """Runs this program again in namespaces of its own, which end with it."""
    if IS_INSIDE in os.environ:
        return
    os.environ[IS_INSIDE] = "1"
    os.execvp("unshare", [*unshare(), sys.executable, *sys.argv])


def set_up_machine():
    """Nothing of the machine's services and certificates; a loopback interface."""
    for folder in ("/run", "/etc/cups"):
        if pathlib.Path(folder).is_dir():
            subprocess.run(["mount", "-t", "tmpfs", "none", folder], check=True)
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as control:
        request = struct.pack("16sH14x", b"lo", 1)  # IFF_UP
        fcntl.ioctl(control, 0x8914, request.ljust(40, b"\0"))  # SIOCSIFFLAGS
    configuration = pathlib.Path("/run/bus.conf")
    configuration.write_text(MESSAGE_BUS)
    os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=/run/bus"
    subprocess.run(["dbus-daemon", f"--config-file={configuration}", "--fork"], check=True)
    subprocess.run(["avahi-daemon", "-D", "--no-drop-root", "--no-chroot"], check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


# Devices ------------------------------------------------------------------------------------------


class Device:
    """ippeveprinter with the attributes of a file."""

    def __init__(self, root, name, attributes, port):
        self.root = pathlib.Path(root)
        self.root.mkdir()
        self.port = port
        self.process = subprocess.Popen(
            ["ippeveprinter", "-p", str(port), "-n", "localhost", "-d", self.root, "-r", "off",
             "-K", self.root, "-a", attributes, name],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=(self.root / "log").open("wb"))

    def uri(self, scheme="ipp", host="localhost"):
        return f"{scheme}://{host}:{self.port}/ipp/print"

    def wait(self):
        for _ in range(500):
            with contextlib.suppress(OSError), socket.create_connection(("localhost", self.port)):
                return
            time.sleep(0.02)
        raise RuntimeError("ippeveprinter does not start: " + (self.root / "log").read_text())

    def stop(self):
        self.process.kill()
        self.process.wait()


# Messages (RFC 8010, section 3) -------------------------------------------------------------------

INTEGER, BOOLEAN, ENUM, OCTETS, DATE, RESOLUTION = 0x21, 0x22, 0x23, 0x30, 0x31, 0x32
RANGE, COLLECTION, TEXT_WITH_LANGUAGE, END_COLLECTION = 0x33, 0x34, 0x35, 0x37
TEXT, NAME, KEYWORD, URI, CHARSET, LANGUAGE, MEMBER = 0x41, 0x42, 0x44, 0x45, 0x47, 0x48, 0x4a


def value(tag, name, data):
    name = name.encode() if isinstance(name, str) else name
    data = data.encode() if isinstance(data, str) else data
    return struct.pack(">BH", tag, len(name)) + name + struct.pack(">H", len(data)) + data


def values(tag, name, *data):
    return b"".join(value(tag, "" if i else name, each) for i, each in enumerate(data))


def nested(depth):
    inner = value(INTEGER, "", b"\0\0\0\1")
    for _ in range(depth):
        inner = value(COLLECTION, "", b"") + value(MEMBER, "", "member") + inner + \
            value(END_COLLECTION, "", b"")
    return value(COLLECTION, "media-col-ready", b"") + value(MEMBER, "", "media-source") + inner + \
        value(END_COLLECTION, "", b"")


def message(*attributes, status=0):
    return struct.pack(">BBHI", 2, 0, status, 1) + b"\x01" + \
        value(CHARSET, "attributes-charset", "utf-8") + \
        value(LANGUAGE, "attributes-natural-language", "en") + b"\x04" + b"".join(attributes) + \
        b"\x03"


def http(body, *fields, status="200 OK", length=True):
    lines = [f"HTTP/1.1 {status}", "Content-Type: application/ipp", *fields]
    if length:
        lines.append(f"Content-Length: {len(body)}")
    return "\r\n".join(lines).encode() + b"\r\n\r\n" + body


# Hostile servers ----------------------------------------------------------------------------------

Request = collections.namedtuple("Request", "head body")


def read_request(connection, answer_expectation=True):
    data = b""
    while b"\r\n\r\n" not in data:
        more = connection.recv(65536)
        if not more:
            return None
        data += more
    head, _, body = data.partition(b"\r\n\r\n")
    fields = head.decode("latin-1").lower()
    if "expect: 100-continue" in fields and answer_expectation:
        connection.sendall(b"HTTP/1.1 100 Continue\r\n\r\n")
    length = int(fields.partition("content-length:")[2].split("\r\n")[0] or 0)
    while len(body) < length:
        more = connection.recv(65536)
        if not more:
            return None
        body += more
    return Request(head.decode("latin-1"), body)


def wait_for_end(connection):
    """Stalls until the client has gone."""
    while connection.recv(65536):
        pass


class HostileServer:
    """Calls behaviour(connection) for each connection in a thread."""

    def __init__(self, behaviour):
        self.behaviour = behaviour
        self.listener = socket.create_server(("localhost", 0), backlog=200)
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        while True:
            connection, _ = self.listener.accept()
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()

    def serve(self, connection):
        with contextlib.suppress(OSError), connection:
            self.behaviour(connection)

    def uri(self, scheme="ipp", path="/ipp/print"):
        return f"{scheme}://localhost:{self.port}{path}"


def answering(answer):
    """Sends the bytes and waits for the client to close the connection."""
    def behave(connection):
        if read_request(connection):
            connection.sendall(answer)
            wait_for_end(connection)
    return behave


def closing(answer):
    """Sends the bytes and closes the connection."""
    def behave(connection):
        if read_request(connection):
            connection.sendall(answer)
    return behave


def dripping(answer):
    def behave(connection):
        read_request(connection)
        for byte in answer:
            connection.sendall(bytes([byte]))
            time.sleep(1)
    return behave


def endless(start, part):
    def behave(connection):
        read_request(connection)
        connection.sendall(start)
        while True:
            connection.sendall(part)
    return behave


def context_of(folder):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(folder / "localhost.crt", folder / "localhost.key")
    return context


def upgrading(answer, context):
    """Demands TLS by RFC 2817, and answers over it."""
    demand = http(b"", "Upgrade: TLS/1.2, HTTP/1.1", "Connection: Upgrade",
                  status="426 Upgrade Required")
    agreement = b"HTTP/1.1 101 Switching Protocols\r\nConnection: Upgrade\r\n" \
                b"Upgrade: TLS/1.2, HTTP/1.1\r\n\r\n"

    def behave(connection):
        while request := read_request(connection):
            if request.head.startswith("OPTIONS"):
                break
            connection.sendall(demand)
        else:
            return  # libcups connects again to start TLS
        connection.sendall(agreement)
        with context.wrap_socket(connection, server_side=True) as encrypted:
            encrypted.sendall(http(b""))  # to OPTIONS
            read_request(encrypted)
            encrypted.sendall(answer)
            wait_for_end(encrypted)
    return behave


def garbage_over_tls(context):
    """A handshake, then bytes that are no TLS."""
    def behave(connection):
        encrypted = context.wrap_socket(connection, server_side=True)
        encrypted.recv(100)
        with socket.socket(fileno=os.dup(encrypted.fileno())) as plain:
            plain.sendall(bytes(range(256)) * 16)
            time.sleep(0.2)
    return behave

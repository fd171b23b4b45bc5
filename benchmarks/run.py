"""Measures the built programs against the floor and prints one table. Started by ./bench, which gives it a display
and a private network:  run.py BUILD_FOLDER [--long] [--only PART,...]

Exits with 0 when every goal holds."""

import json
import os
import random
import select
import shutil
import signal
import socket
import statistics
import subprocess
import sys
import tempfile
import time

import lamps
from xclient import XClient

PAIRS = 15
LOCAL_PORT = 8094
SERVER_PORT = 8093
DIALOG_WIDTH = 200
WINDOW_WIDTH = 820
BORDER = 58
SCENE, COLOR = 8, 10
MS = 1e-6  # of a nanosecond count

now = time.monotonic_ns
median = statistics.median


class Table:
    def __init__(self):
        self.rows = []

    def add(self, figure, floor, ours, ratio, goal, holds):
        self.rows.append((figure, floor, ours, ratio, goal, "yes" if holds else "NO"))
        print("  " + " | ".join(self.rows[-1]), flush=True)

    def ratio(self, figure, pairs, limit, unit, scale=1.0):
        """Pairs of (floor, ours) and the greatest ratio that the goal allows."""
        ratio = median(ours / floor for floor, ours in pairs)
        floor, ours = (median(side) * scale for side in zip(*pairs))
        self.add(figure, f"{floor:.3g} {unit}", f"{ours:.3g} {unit}", f"{ratio:.2f}", f"<= {limit} x",
                 ratio <= limit)

    def most(self, figure, ours, limit, unit):
        self.add(figure, "", f"{ours:.3g} {unit}", "", f"<= {limit} {unit}", ours <= limit)

    def print(self):
        head = ("figure", "floor", "ours", "ratio", "goal", "holds")
        widths = [max(len(row[i]) for row in [head, *self.rows]) for i in range(len(head))]
        for row in [head, tuple("-" * width for width in widths), *self.rows]:
            print("| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |")

    def holds(self):
        return all(row[-1] == "yes" for row in self.rows)


class Program:
    """A started program and what the kernel counts for it."""

    def __init__(self, command, plain=False, **options):
        environment = dict(os.environ)
        environment.pop("QT_XCB_GL_INTEGRATION", None)
        if not plain:
            environment["QT_XCB_GL_INTEGRATION"] = "none"
        self.started = now()
        self.process = subprocess.Popen(command, env=environment, **options)
        self.proc = f"/proc/{self.process.pid}"

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def memory(self):
        """Resident and anonymous memory in kB."""
        kinds = {}
        with open(f"{self.proc}/smaps_rollup", encoding="ascii") as file:
            for line in file.readlines()[1:]:
                name, value = line.split()[:2]
                kinds[name] = int(value)
        return kinds["Rss:"], kinds["Anonymous:"]

    def cpu(self):
        """Time on a processor in ns and voluntary context switches, of all threads."""
        spent = switches = 0
        for task in os.listdir(f"{self.proc}/task"):
            with open(f"{self.proc}/task/{task}/schedstat", encoding="ascii") as file:
                spent += int(file.read().split()[0])
            with open(f"{self.proc}/task/{task}/status", encoding="ascii") as file:
                switches += next(int(line.split()[1]) for line in file if line.startswith("voluntary"))
        return spent, switches


class Peer:
    """Plays the server on a real socket, as far as a figure needs it."""

    STATE = json.dumps({"typ": 7, "content": {
        "scn": {"content": [{"n": f"Scene {i}", "id": i, "a": -1} for i in range(20)]}, "clr": {"content": {}}}})
    ANSWERS = {14: json.dumps({"typ": 15, "content": {"serial": "0042"}}), 6: STATE, 1: json.dumps({"typ": 1})}

    def __init__(self):
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.bind(("127.0.0.1", SERVER_PORT))
        self.asked = False

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.socket.close()

    def receive(self, seconds):
        """The next datagram as (time, type, text), answered; None when none comes in time."""
        if not select.select([self.socket], [], [], max(0, seconds))[0]:
            return None
        text, sender = self.socket.recvfrom(65536)
        at = now()
        kind = json.loads(text)["typ"]
        if kind in self.ANSWERS:
            self.socket.sendto(self.ANSWERS[kind].encode(), sender)
        self.asked = self.asked or kind == 6
        return at, kind, text

    def serve(self, seconds):
        """Answers for a while; what came in."""
        end = time.monotonic() + seconds
        packets = []
        while (left := end - time.monotonic()) > 0:
            packet = self.receive(left)
            if packet:
                packets.append(packet)
        return packets


class Bench:
    def __init__(self, build, room, long):
        self.build, self.room, self.long = build, room, long
        self.x = XClient()
        self.table = Table()
        # A copy, so that its settings file lies in the room and not beside the built program.
        self.remote = shutil.copy(f"{build}/corvane", room)
        self.floor = f"{build}/benchmarks/bench_floor"
        self.blank = None
        self.place = {}  # where a program's window stands on the screen

    # Starting

    def start_floor(self, plain=False):
        return self.wait_paint(Program([self.floor], plain), "floor")

    def start_remote(self):
        """The remote, its dialog answered as soon as it can be seen."""
        program = Program([self.remote], cwd=self.room)
        self.x.press_return(self.x.wait_window(DIALOG_WIDTH)[0])
        return self.wait_paint(program, "remote")

    def wait_paint(self, program, kind):
        """Notes when the first picture of the window, in its frame's left edge, is on the screen."""
        if kind not in self.place:
            self.place[kind] = self.x.wait_window(WINDOW_WIDTH)[1:]
        x, y = self.place[kind][0] + 30, self.place[kind][1] + 300
        end = time.monotonic() + 20
        while self.x.pixel(x, y) == self.blank:
            if time.monotonic() > end:
                raise RuntimeError(f"the {kind} paints nothing")
            time.sleep(0.0005)
        program.painted = now() - program.started
        return program

    def bare_screen(self):
        while self.x.window(WINDOW_WIDTH):
            time.sleep(0.005)
        time.sleep(0.02)
        self.blank = self.x.pixel(30, 300)

    def start_server(self, *options, entries=0):
        command = [f"{self.build}/corvane-server", *options]
        if entries:
            show = f"{self.room}/show.json"
            with open(show, "w", encoding="ascii") as file:
                json.dump({"scenes": [{"id": i, "name": f"Scene number {i}", "area": i // 10} for i in range(entries)],
                           "programs": [{"id": i, "name": f"Program number {i}"} for i in range(entries)]}, file)
            command += ["--show", show]
        log = f"{self.room}/server.log"
        with open(log, "wb") as file:
            server = Program(command, stdout=file)
        while not os.path.getsize(log):
            time.sleep(0.01)
        return server

    # The figures, each part on its own

    def start(self):
        pairs = []
        for i in range(PAIRS + 1):
            taken = {}
            for kind in ("floor", "ours") if i % 2 else ("ours", "floor"):
                self.bare_screen()
                with (self.start_floor(plain=True) if kind == "floor" else self.start_remote()) as program:
                    taken[kind] = program.painted
            if i > 0:  # the first pair warms the caches
                pairs.append((taken["floor"], taken["ours"]))
        self.table.ratio("Start to first paint", pairs, 0.75, "ms", MS)

    def memory(self):
        resident, anonymous, many = [], [], []
        with self.start_server():
            for _ in range(PAIRS):
                self.bare_screen()
                with self.start_floor(plain=True) as plain, self.start_floor() as lean, self.start_remote() as ours:
                    time.sleep(3)
                    resident.append((plain.memory()[0], ours.memory()[0]))
                    anonymous.append((lean.memory()[1], ours.memory()[1]))
        with self.start_server(entries=1000):
            for _ in range(3):
                self.bare_screen()
                with self.start_remote() as ours:
                    time.sleep(3)
                    many.append(ours.memory()[1])
        self.table.ratio("Resident memory, online", resident, 0.5, "MB", 1e-3)
        floor = median(pair[0] for pair in anonymous)
        for name, ours, limit in (("", median(pair[1] for pair in anonymous), 8),
                                  (", 1,000 + 1,000 entries", median(many), 12)):
            more = (ours - floor) / 1000
            self.table.add(f"Anonymous memory{name}", f"{floor / 1000:.3g} MB", f"{ours / 1000:.3g} MB",
                           f"+{more:.1f} MB", f"<= +{limit} MB", more <= limit)

    def soak(self):
        """Polls and page switches; what memory grows by between the first and the last fifth of the time."""
        seconds = 600 if self.long else 60
        self.bare_screen()
        with self.start_server(), self.start_remote() as ours:
            time.sleep(1)
            x, y = self.place["remote"]
            samples = []
            begin = time.monotonic()
            switches = 0
            while time.monotonic() < begin + seconds + 10:
                self.x.click(x + 64, y + 507)  # opens the menu
                time.sleep(0.05)
                self.x.click(x + 89, y + BORDER + 26 + 52 * (switches % 5))
                time.sleep(0.05)
                switches += 1
                if switches % 10 == 0 and time.monotonic() > begin + 10:  # when every page has been seen
                    samples.append(ours.memory()[1])
        fifth = len(samples) // 5
        growth = median(samples[-fifth:]) - median(samples[:fifth])
        self.table.most(f"Growth in {seconds} s of polls and {switches} page switches", growth / 1000, 0.1, "MB")

    def idle(self):
        pairs, switches = [], []
        self.bare_screen()
        with self.start_server(), self.start_floor() as floor, self.start_remote() as ours:
            time.sleep(3)
            before = floor.cpu(), ours.cpu()
            for _ in range(PAIRS):
                time.sleep(10)
                after = floor.cpu(), ours.cpu()
                pairs.append(tuple(after[i][0] - before[i][0] for i in (0, 1)))
                switches.append((after[1][1] - before[1][1]) / 10)
                before = after
        self.table.ratio("Idle, online: processor time in 10 s", pairs, 1.5, "ms", MS)
        self.table.most("Idle, online: voluntary context switches", median(switches), 45, "/s")

    def online(self):
        """The remote with a state from the peer."""
        self.bare_screen()
        peer = Peer()
        remote = self.start_remote()
        while not peer.asked:
            peer.receive(1)
        peer.serve(0.5)
        return peer, remote

    def clicks(self):
        waits, lost = [], 0
        peer, remote = self.online()
        with peer, remote:
            x, y = self.place["remote"]
            self.x.move(x + BORDER + 100, y + BORDER + 26)
            peer.serve(0.3)
            for _ in range(300):
                peer.serve(random.uniform(0.03, 0.06))
                wait, _ = self.click_to_wire(peer)
                if wait is None:
                    lost += 1
                else:
                    waits.append(wait)
        self.table.most("Click to wire, median of 300", median(waits) * MS, 15.7, "ms")
        self.table.most("Click to wire, worst of 100", median(max(waits[i::3]) for i in range(3)) * MS, 28, "ms")
        self.table.most("Clicks lost of 300", lost, 0, "")

    def click_to_wire(self, peer):
        """Presses where the pointer stands; how long the scene's message takes, and how many came before it."""
        pressed = now()
        self.x.button(True)
        wait = None
        others = 0
        while wait is None and (packet := peer.receive(1)):
            if packet[1] == SCENE:
                wait = packet[0] - pressed
            else:
                others += 1
        self.x.button(False)
        return wait, others

    def open_color_page(self, peer):
        x, y = self.place["remote"]
        for place in ((64, 507), (89, BORDER + 26 + 104)):
            self.x.click(x + place[0], y + place[1])
            peer.serve(0.2)

    def drag(self, peer, seconds):
        """Drags over the wheel, 200 moves a second; the datagrams that the ticks sent, as received."""
        x, y = self.place["remote"]
        left, top = x + 500, y + 250
        self.x.move(left, top)
        self.x.button(True)
        packets = []
        end = time.monotonic() + seconds
        i = 0
        while time.monotonic() < end:
            i += 1
            self.x.move(left + i % 80, top + i % 97)
            packets += peer.serve(0.005)
        return packets

    def dragging(self):
        peer, remote = self.online()
        with peer, remote:
            self.open_color_page(peer)
            packets = self.drag(peer, 10)
            # A move the wheel has not seen before, and what it must send last.
            x, y = self.place["remote"]
            self.x.move(x + 590, y + 380)
            last = [packet for packet in peer.serve(0.2) if packet[1] == COLOR][-1][2]
            self.x.button(False)
            peer.serve(0.2)
            self.x.move(x + 500, y + 250)
            self.x.click(x + 590, y + 380)
            again = [packet for packet in peer.serve(0.2) if packet[1] == COLOR][-1][2]
        self.table.most("Drag: datagrams a second", len(packets) / 10, 40, "/s")
        self.table.add("Drag: the last value leaves", "", "yes" if last == again else "no", "", "yes", last == again)

    # Flood

    @staticmethod
    def flood(rate, seconds, port=LOCAL_PORT):
        """A process that sends the remote, or another port, channel messages of 200 bytes: so many a second, or flat
        out (0)."""
        child = os.fork()
        if child:
            return child
        text = json.dumps({"typ": 12, "content": {"univ": 1, "chan": 5, "level": 7, "s": True}}).ljust(200).encode()
        sender = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        sender.connect(("127.0.0.1", port))
        begin = time.monotonic()
        sent = 0
        while (passed := time.monotonic() - begin) < seconds:
            due = min(rate * passed, rate * seconds) if rate else sent + 100
            while sent < due:
                sender.send(text)
                sent += 1
            if rate:
                time.sleep(0.0005)
        os._exit(0)

    @staticmethod
    def queue():
        """Of the remote's socket: bytes that wait, and datagrams dropped."""
        with open("/proc/net/udp", encoding="ascii") as file:
            for line in file.readlines()[1:]:
                fields = line.split()
                if int(fields[1].split(":")[1], 16) == LOCAL_PORT:
                    return int(fields[4].split(":")[1], 16), int(fields[12])
        raise RuntimeError("the remote has no socket")

    def floods(self):
        peer, remote = self.online()
        with peer, remote:
            child = self.flood(10000, 3)
            peer.serve(3.2)
            os.waitpid(child, 0)
            while self.queue()[0]:
                peer.serve(0.1)
            self.table.most("Flood of 10,000 a second for 3 s: lost", self.queue()[1], 0, "")

            x, y = self.place["remote"]
            self.x.move(x + BORDER + 100, y + BORDER + 26)
            peer.serve(0.3)
            child = self.flood(0, 8)
            worst = 0
            for _ in range(50):
                peer.serve(random.uniform(0.03, 0.06))
                wait, _ = self.click_to_wire(peer)
                worst = max(worst, wait if wait is not None else 1e9)
            os.kill(child, signal.SIGKILL)
            os.waitpid(child, 0)
            while self.queue()[0]:
                peer.serve(0.1)
            self.open_color_page(peer)
            child = self.flood(0, 5)
            times = [packet[0] for packet in self.drag(peer, 4)]
            os.kill(child, signal.SIGKILL)
            os.waitpid(child, 0)
        gap = max(late - early for early, late in zip(times, times[1:]))
        self.table.most("Flat out: worst gap between ticks", gap * MS, 75, "ms")
        self.table.most("Flat out: worst of 50 clicks to wire", worst * MS, 100, "ms")

    def lamps(self):
        lamps.measure(self)

    # In the process

    def inprocess(self):
        times, counters = self.google_benchmark()

        def pairs(floor, ours):
            return list(zip(times[floor], times[ours]))

        self.table.most("State of 1,000 + 1,000 applied, an entry", median(times["StateApplied"]) / 2e6, 2, "us")
        self.table.ratio("Universe message applied, to its bare parse", pairs("UniverseParsed", "UniverseApplied"), 1.5,
                         "us", 1e-3)
        self.table.ratio("2,000 fragments joined, to 1,000", pairs("FragmentsJoined/1000", "FragmentsJoined/2000"), 2.3,
                         "ms", MS)
        self.table.ratio("Scroll step with 1,000 tiles, to 20", pairs("ScrollStep/20", "ScrollStep/1000"), 1.3, "us",
                         1e-3)
        tiles = round(median(counters["TileChange"]), 2)
        self.table.add("One tile's change: tiles repainted", "1", f"{tiles:.3g}", f"{tiles:.2f}", "<= 1 x", tiles <= 1)
        self.table.ratio("One wheel move, to a background blit", pairs("BackgroundBlit", "WheelMove"), 1.5, "us", 1e-3)
        self.table.ratio("32 cells, to a background blit", pairs("BackgroundBlit", "CellsPainted"), 10, "us", 1e-3)
        self.table.most("Rendering 32 universes, 48 layers; one frame is 25 ms", median(times["ShowRendered"]) / 1e6, 0.5,
                        "ms")

    def google_benchmark(self):
        program = shutil.copy(f"{self.build}/benchmarks/bench_inprocess", self.room)
        out = subprocess.run(
            [program, f"--benchmark_repetitions={PAIRS}", "--benchmark_enable_random_interleaving=true",
             "--benchmark_min_time=0.05", "--benchmark_format=json"],
            env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}, stdout=subprocess.PIPE, check=True).stdout
        times, counters = {}, {}
        runs = [run for run in json.loads(out)["benchmarks"] if run["run_type"] == "iteration"]
        for run in sorted(runs, key=lambda run: run["repetition_index"]):
            times.setdefault(run["run_name"], []).append(run["cpu_time"])
            if "tiles" in run:
                counters.setdefault(run["run_name"], []).append(run["tiles"])
        return times, counters

    def binary(self):
        stripped = f"{self.room}/stripped"
        subprocess.run(["strip", "-o", stripped, f"{self.build}/corvane"], check=True)
        self.table.most("Stripped program with its pictures", os.path.getsize(stripped) / 1e6, 3, "MB")
        with open(f"{self.build}/clean-build-seconds", encoding="ascii") as file:
            self.table.most("Clean release build of everything", float(file.read()), 180, "s")


PARTS = ("start", "memory", "soak", "idle", "clicks", "dragging", "floods", "lamps", "inprocess", "binary")


def main():
    build, *options = sys.argv[1:]
    parts = next((option[7:].split(",") for option in options if option.startswith("--only=")), PARTS)
    with tempfile.TemporaryDirectory() as room:
        os.environ.update(XDG_RUNTIME_DIR=room, QT_QPA_PLATFORM="xcb")
        bench = Bench(os.path.abspath(build), room, "--long" in options)
        for part in parts:
            getattr(bench, part)()
        print()
        bench.table.print()
        return 0 if bench.table.holds() else 1


if __name__ == "__main__":
    sys.exit(main())

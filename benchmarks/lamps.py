"""The figures of what leaves for the lamps: the part "lamps" of run.py."""

import json
import os
import random
import select
import signal
import socket
import statistics
import struct
import time

LAMP_PORT = 5568
UNIVERSES = 32
FRAME_MS = 25
DATA_SIZE = 638
SLOTS_AT = 126
MS = 1e-6  # of a nanosecond count

median = statistics.median


def patch(count):
    """Dimmers on every channel of so many universes."""
    return [{"name": f"U{i}", "universe": i, "channel": 1, "layout": "i", "count": 512} for i in range(1, count + 1)]


def levels(count, level):
    return {f"U{i}": [level] for i in range(1, count + 1)}


SCENES = {"fixtures": patch(1), "scenes": [{"id": 1, "name": "Full", "area": 0, "levels": levels(1, 255)}]}
# Every level changes with every frame.
MOVING = {"fixtures": patch(UNIVERSES),
          "programs": [{"id": 1, "name": "Breath", "state": True,
                        "steps": [{"levels": levels(UNIVERSES, level), "fade": 5} for level in (255, 0)]}]}


class Lamps:
    """A receiver, of the group of universe 1 or (unicast) of everything."""

    def __init__(self, multicast):
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4 << 20)
        self.socket.bind(("", LAMP_PORT))
        if multicast:
            self.socket.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP,
                                   socket.inet_aton("239.255.0.1") + socket.inet_aton("127.0.0.1"))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.socket.close()

    def receive(self, seconds):
        """The next packet as (time, universe, first level); None when none comes in time."""
        if not select.select([self.socket], [], [], max(0, seconds))[0]:
            return None
        packet = self.socket.recv(2048)
        return time.monotonic_ns(), struct.unpack_from("!H", packet, 113)[0], packet[SLOTS_AT]

    def during(self, seconds):
        end = time.monotonic() + seconds
        packets = []
        while (left := end - time.monotonic()) > 0:
            packet = self.receive(left)
            if packet:
                packets.append(packet)
        return packets


def start(bench, show, *options):
    file = f"{bench.room}/lamps.json"
    with open(file, "w", encoding="ascii") as stream:
        json.dump(show, stream)
    return bench.start_server("--show", file, "--sacn", "--sacn-interface", "127.0.0.1", *options)


def load(server, receiver, seconds):
    """The share of a core in per cent, and the packets a second."""
    before, begin = server.cpu()[0], time.monotonic_ns()
    packets = receiver.during(seconds)
    passed = time.monotonic_ns() - begin
    return 100 * (server.cpu()[0] - before) / passed, len(packets) * 1e9 / passed


def processor(bench):
    with Lamps(multicast=True) as receiver, start(bench, {**SCENES, "scenes": [{**SCENES["scenes"][0], "state": True}]}) \
            as server:
        receiver.during(1)
        still = [load(server, receiver, 5)[0] for _ in range(5)]
    bench.table.most("Lamps, a still scene: share of a core", median(still), 0.5, "%")
    with Lamps(multicast=False) as receiver, start(bench, MOVING, "--sacn-to", "127.0.0.1") as server:
        receiver.during(1)
        moving = [load(server, receiver, 5) for _ in range(5)]
    rate = median(rate for _, rate in moving)
    full = UNIVERSES * 1000 / FRAME_MS
    bench.table.add("Lamps, 32 moving universes: packets", "", f"{rate:.4g} /s", "", f"{full:.4g} /s",
                    abs(rate - full) < 0.01 * full)
    bench.table.most("Lamps, 32 moving universes: share of a core", median(share for share, _ in moving), 3, "%")


def clicks(bench):
    """From a press on the remote's first tile to the packet whose first slot has changed."""
    waits = []
    bench.bare_screen()
    with Lamps(multicast=True) as receiver, start(bench, SCENES), bench.start_remote():
        x, y = bench.place["remote"]
        time.sleep(1)
        bench.x.move(x + 158, y + 84)
        shown = receiver.during(1)[-1][2]
        for _ in range(300):
            receiver.during(random.uniform(0.05, 0.1))
            pressed = time.monotonic_ns()
            bench.x.button(True)
            # A still picture is repeated, so that only the clock tells when a click has been lost.
            until = time.monotonic() + 1
            while (packet := receiver.receive(until - time.monotonic())) and packet[2] == shown:
                pass
            bench.x.button(False)
            waits.append(packet[0] - pressed if packet else 1e9)
            shown = packet[2] if packet else shown
    bench.table.most("Click to lamp, median of 300", median(waits) * MS, 35, "ms")
    bench.table.most("Click to lamp, worst of 100", median(max(waits[i::3]) for i in range(3)) * MS, 80, "ms")


def flood(bench):
    with Lamps(multicast=True) as receiver, start(bench, MOVING):
        receiver.during(1)
        child = bench.flood(20000, 10, 8093)
        packets = receiver.during(10)
        os.kill(child, signal.SIGKILL)
        os.waitpid(child, 0)
    times = [packet[0] for packet in packets if packet[1] == 1]
    gap = max(late - early for early, late in zip(times, times[1:]))
    bench.table.most("Lamps, 20,000 datagrams a second: worst gap between frames", gap * MS, FRAME_MS + 50, "ms")


def measure(bench):
    processor(bench)
    clicks(bench)
    flood(bench)

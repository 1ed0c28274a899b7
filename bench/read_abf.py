#!/usr/bin/python3
"""Times other programs on the recordings of bench_abf: processor time, median of the runs.

    build/release/bench/bench_abf && bench/read_abf.py

Programs that are not installed are left out (python3-neo, python3-stfio).
"""
import os
import statistics
import tempfile
import time

FOLDER = os.path.join(tempfile.gettempdir(), "zelvane-abf-bench")


def with_neo(path):
    import neo

    block = neo.io.AxonIO(path).read_block()
    return sum(segment.analogsignals[0].shape[0] for segment in block.segments)


def with_stfio(path):
    import stfio

    record = stfio.read(path, "abf")
    return sum(len(record[0][k].asarray()) for k in range(len(record[0])))


def processor_ms(read, path):
    start = time.process_time()
    samples = read(path)
    return 1e3 * (time.process_time() - start), samples


for name in ("integers.abf", "floats.abf"):
    path = os.path.join(FOLDER, name)
    for program, read, runs in (("neo", with_neo, 7), ("stfio", with_stfio, 3)):
        try:
            _, samples = processor_ms(read, path)
        except ImportError:
            print(f"{name}: {program} is not installed")
            continue
        if samples != 5_000_000:
            raise SystemExit(f"{name}: {program} read {samples} samples")
        milliseconds = statistics.median(processor_ms(read, path)[0] for _ in range(runs))
        print(f"{name}: {program} {milliseconds:.1f} ms")

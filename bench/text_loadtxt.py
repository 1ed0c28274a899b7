"""Times numpy.loadtxt on the files that bench_text has left in the temporary folder."""
import os
import sys
import tempfile
import time

try:
    import numpy
except ImportError:
    sys.exit("numpy is not installed")

for columns in (1, 2, 7):
    path = os.path.join(tempfile.gettempdir(), f"zelvane_text_{columns}.atf")
    best = float("inf")
    for _ in range(3):
        begin = time.process_time()
        numpy.loadtxt(path, skiprows=3 if columns > 1 else 0, dtype=numpy.float32)
        best = min(best, time.process_time() - begin)
    print(f"loadtxt, {columns} columns: {1000 * best:.0f} ms (numpy {numpy.__version__})")

#!/usr/bin/python3
"""Times the sum of squares of a waveform fit with NumPy and scipy.linalg.expm, as bench_fit does with the program.

fit_workload.json describes the workload: eight states (unliganded 1, liganded once 2, twice 3, three times 4;
desensitised 5 from 2 and 8 from 4; open 6 from 3 and 7 from 4), twelve free rates, five concentrations of a drug
from 1 to 6 ms, 1000 points at 0.01 ms each.

The stimulus is constant over stretches, so each stretch of each waveform has one matrix, exp(Q dt). All of them go
through expm as one stack, and all waveforms advance together. Two forms are timed:

  points    each point is the point before it times the matrix, one product for all waveforms
  doubling  the next n points of a stretch are its first n points times the n-th power of the matrix

Then, as in the program: a baseline, a search for the best alignment, and the sum of squares over every second point.

The program integrates with the Runge-Kutta method in 32 bits; expm is exact in 64 bits. So this compares the cost
of a fit, not the method.
"""
import json
import os
import sys
import time

try:
    import numpy as np
    import scipy
    from scipy.linalg import expm
except ImportError as missing:
    print(f"skipped: {missing.name} is not installed")
    sys.exit(0)

EVALUATIONS = 300
SPREAD = 0.2  # of the trial rates around the true ones, as a standard deviation of their logarithm


class Workload:
    """What does not change from one evaluation to the next."""

    def __init__(self, path):
        with open(path, encoding="utf-8") as file:
            text = json.load(file)
        self.states, self.points = text["states"], text["points"]
        interval = text["interval_ms"]
        self.seconds = 1e-3 * interval
        self.start = np.zeros(self.states)
        self.start[text["start"] - 1] = 1.0
        driving = 1e-3 * (text["holding_mV"] - text["reversal_mV"])  # pS x V = pA
        self.current = np.zeros(self.states)
        self.current[np.array(text["open"]) - 1] = text["conductance_pS"] * text["channels"] * driving

        rates = text["rates"]
        self.source = np.array([r["from"] - 1 for r in rates])
        self.target = np.array([r["to"] - 1 for r in rates])
        self.on_drug = np.array([r["drug"] > 0 for r in rates])
        self.free = np.array([r["free"] for r in rates])
        self.rates = np.array([r["rate"] for r in rates], dtype=float)

        drug = text["drug"]
        self.molar = np.array(drug["molar"])
        on, off = (round(drug[edge] / interval) for edge in ("start_ms", "stop_ms"))
        # (first point, end, drug present); the occupancies of a point follow from the stimulus before it
        self.stretches = [(0, on, False), (on, off, True), (off, self.points - 1, False)]

        window = text["window"]
        first = round(window["baseline_start_ms"] / interval)
        self.baseline = slice(first, first + window["baseline_points"])
        self.fit_start = round(window["fit_start_ms"] / interval)
        self.align = window["align_points"]
        self.compared = np.arange(0, window["fit_points"], window["parse"])
        self.offsets = np.arange(max(self.fit_start - self.align, 1), self.fit_start + self.align)


def propagators(work, rates):
    """Returns exp(Q dt) without drug (one matrix) and with it (one matrix for each concentration)."""
    molar = np.concatenate(([0.0], work.molar))
    q = np.zeros((len(molar), work.states, work.states))
    q[:, work.source, work.target] = np.where(work.on_drug, molar[:, None], 1.0) * rates
    diagonal = np.arange(work.states)
    q[:, diagonal, diagonal] = -q.sum(axis=2)
    return expm(q * work.seconds)


def by_points(occupancy, matrix):
    """Fills the points of a stretch from its first one: waveforms x points x states."""
    for point in range(1, occupancy.shape[1]):
        np.matmul(occupancy[:, point - 1 : point], matrix, out=occupancy[:, point : point + 1])


def by_doubling(occupancy, matrix):
    """Does the same with as many products as the number of points has binary digits."""
    count, done = occupancy.shape[1], 1
    while done < count:
        more = min(done, count - done)
        np.matmul(occupancy[:, :more], matrix, out=occupancy[:, done : done + more])
        done += more
        if done < count:
            matrix = matrix @ matrix


def simulate(work, rates, fill):
    """Returns the currents (pA): one row for each concentration, one column for each point."""
    matrices = propagators(work, rates)
    occupancy = np.empty((len(work.molar), work.points, work.states))
    occupancy[:, 0] = work.start
    for first, end, present in work.stretches:
        fill(occupancy[:, first : end + 1], matrices[1:] if present else matrices[:1])
    return occupancy @ work.current


def prepare(work, data):
    """Returns the side of the recordings: stretch for the alignment, points without their baseline."""
    stretch = data[:, work.fit_start : work.fit_start + work.align]
    base = data[:, work.baseline].mean(axis=1, keepdims=True)
    return stretch, data[:, work.fit_start + work.compared] - base


def sum_of_squares(work, rates, fill, stretch, compared):
    """Returns the sum of squares of all waveforms, each at its best alignment."""
    trace = simulate(work, rates, fill)
    base = trace[:, work.baseline].mean(axis=1, keepdims=True)
    windows = np.lib.stride_tricks.sliding_window_view(trace, work.align, axis=1)[:, work.offsets]
    distance = ((windows - stretch[:, None]) ** 2).sum(axis=2)
    best = work.offsets[distance.argmin(axis=1)]
    simulated = np.take_along_axis(trace, best[:, None] + work.compared, axis=1) - base
    return float(((simulated - compared) ** 2).sum())


def main():
    work = Workload(os.path.join(os.path.dirname(os.path.abspath(__file__)), "fit_workload.json"))
    stretch, compared = prepare(work, simulate(work, work.rates, by_points))
    random = np.random.default_rng(1)
    trials = np.tile(work.rates, (EVALUATIONS, 1))
    trials[:, work.free] *= np.exp(SPREAD * random.standard_normal((EVALUATIONS, work.free.sum())))

    for name, fill in (("points", by_points), ("doubling", by_doubling)):
        true = sum_of_squares(work, work.rates, fill, stretch, compared)
        if true > 1e-9:
            sys.exit(f"{name}: the true rates leave a sum of squares of {true}")
        best = float("inf")
        for _ in range(3):
            begin = time.process_time()
            for rates in trials:
                sum_of_squares(work, rates, fill, stretch, compared)
            best = min(best, time.process_time() - begin)
        print(
            f"{name}: {EVALUATIONS / best:.0f} evaluations/s, {1e3 * best / EVALUATIONS:.2f} ms each"
            f" (numpy {np.__version__}, scipy {scipy.__version__}; processor time)"
        )


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Plots the default calibration curves of a table, and how far each is from a straight line.

usage: plot_curves.py TABLE FILE

TABLE is a name such as LARCH_Def_Calib; FILE is an image, such as curves.png. Needs
python3-matplotlib. The blocks marked by "# %%" are cells for editors that run scripts as notebooks."""

# %% The curves, as an array of eight rows. NumPy uses the memory of the table and copies nothing.
import sys

import matplotlib
import numpy

from info_analyze import CURVE_TABLE_NAMES, curve_table

if len(sys.argv) != 3 or sys.argv[1] not in CURVE_TABLE_NAMES:
    sys.exit(f"{__doc__}\n\ntables: {', '.join(CURVE_TABLE_NAMES)}")
name, file = sys.argv[1:]

curves = numpy.frombuffer(curve_table(name).values, numpy.uint16).reshape(8, 1024)

# %% Several curves of a table are equal; each is drawn once.
different, first = numpy.unique(curves, axis=0, return_index=True)
levels = numpy.arange(1024)

# %% Two charts beside each other.
matplotlib.use("Agg")  # without a screen
from matplotlib import pyplot  # noqa: E402

figure, (shape, distance) = pyplot.subplots(1, 2, figsize=(10, 4), layout="constrained")
for number, curve in sorted(zip(first, different), key=lambda pair: int(pair[0])):
    shape.plot(levels, curve, label=f"curve {number}")
    distance.plot(levels, curve.astype(int) - levels, label=f"curve {number}")
shape.set(title=name, xlabel="input level", ylabel="output level")
distance.set(title="distance from a straight line", xlabel="input level", ylabel="output levels")
shape.legend()
figure.savefig(file)

# %% The same in numbers.
for number, curve in sorted(zip(first, different), key=lambda pair: int(pair[0])):
    darkest = int(numpy.argmin(curve.astype(int) - levels))
    print(f"curve {number}: lowest by {levels[darkest] - int(curve[darkest])} levels, "
          f"at input level {darkest}")

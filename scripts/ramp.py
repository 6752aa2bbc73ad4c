"""What the scripts that draw and survey the plug-in share: morvellan-render as a function of a frame, and grey ramps.

Ramps run over stops around 18 % grey, in the encoding that the plug-in is told to expect."""
import os
import subprocess
import sys

import numpy as np
from PIL import Image

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RENDER = os.path.join(ROOT, "build/release/bin/morvellan-render")
GREY = 0.18


def logc4(linear):
    """ARRI LogC4, encoding: the maker's published curve."""
    a, b, c = (2**18 - 16) / 117.45, (1023 - 95) / 1023, 95 / 1023
    return (np.log2(a * linear + 64) - 6) / 14 * b + c


ENCODINGS = {"linear": (0, lambda linear: linear), "logc4": (47, logc4)}


class Tool:
    """morvellan-render, with a folder of its own for frames and for the plug-in's configuration file."""

    def __init__(self, path, folder):
        if not os.path.exists(path):
            sys.exit(f"{os.path.basename(sys.argv[0])}: {path} is missing; build it with scripts/demo or give --render.")
        self.path, self.folder = path, folder
        self.environment = dict(os.environ, MORVELLAN_CONFIG_DIR=folder)

    def run(self, command):
        done = subprocess.run(command, env=self.environment, capture_output=True, text=True)
        if done.returncode:
            sys.exit(f"{os.path.basename(sys.argv[0])}: {' '.join(command)} ended with {done.returncode}: {done.stderr.strip()}")

    def render(self, frame, settings):
        """An H x W x 3 float frame through the plug-in; the result has the same shape."""
        source, result = (os.path.join(self.folder, name) for name in ("source.pfm", "result.exr"))
        with open(source, "wb") as file:  # a portable float map: bottom row first, little-endian
            file.write(b"PF\n%d %d\n-1.0\n" % (frame.shape[1], frame.shape[0]))
            file.write(frame[::-1].astype("<f4").tobytes())
        options = [part for setting in settings for part in ("--set", setting)]
        self.run([self.path, source, "-o", result, "--depth", "float", "--device", "cpu", "--quiet", *options])
        planes = [os.path.join(self.folder, name + ".tif") for name in "RGB"]
        split = []  # Pillow reads float pictures one channel at a time
        for name, plane in zip("RGB", planes):
            split += ["--dup", "--ch", name, "-d", "float", "--compression", "none", "-o", plane, "--pop"]
        self.run(["oiiotool", result, *split])
        return np.stack([np.asarray(Image.open(plane), dtype=np.float32) for plane in planes], axis=2)


def stops_of_ramp(top=8):
    """8 stops below to 8 (or top) stops above grey, in sixteenths; grey itself is the 129th."""
    return np.arange(-128, 16 * top + 1) / 16.0


def ramp_codes(tool, settings, encoding="linear", top=8):
    """The output codes of the ramp, one row of R, G, B for each stop value."""
    gamut, encode = ENCODINGS[encoding]
    ramp = encode(GREY * 2.0 ** stops_of_ramp(top))[None, :, None] * np.ones((8, 1, 3))
    return tool.render(ramp, [f"InputGamut={gamut}", *settings])[4]


def grey_codes(tool, settings, encoding="linear"):
    """The output codes of a frame that is 18 % grey throughout."""
    gamut, encode = ENCODINGS[encoding]
    return tool.render(encode(np.full((8, 64, 3), GREY)), [f"InputGamut={gamut}", *settings])[4, 32]

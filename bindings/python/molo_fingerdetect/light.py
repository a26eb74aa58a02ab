"""Light class of a frame, from its sensor gain and colour temperature.

The detector picks the finger tones it tries from the same figures:

- "warm": below 3000 K, or below 3900 K at gains above 4.5; the pale, nearly
  grey tone is left out;
- "bright": a gain below 1.02 in light that is not warm; every tone is tried;
- "dim": a gain of 1.02 or more in light that is not warm; the pale tone is
  left out.

The detector compares the gain as a 32-bit float; so does this.
"""

import numpy as np

CLASSES = ("bright", "dim", "warm")


def light_class(gain, cct):
    gain = np.float32(gain)
    warm_limit = 3900 if gain > np.float32(4.5) else 3000
    if cct < warm_limit:
        return "warm"
    return "bright" if gain < np.float32(1.02) else "dim"

"""Finger-on-lens detection over NV21 frames held in numpy arrays.

Detector runs the detector one frame at a time; y4m reads YUV4MPEG2 clips
into the planes it takes.
"""

from ._core import Detector
from . import y4m

__all__ = ["Detector", "y4m"]

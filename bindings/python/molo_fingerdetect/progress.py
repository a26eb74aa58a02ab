"""A one-line progress bar on standard error, drawn only on a terminal."""

import sys
import time


class ProgressBar:
    CELLS = 40

    def __init__(self, total, unit, stream=None):
        self.stream = stream or sys.stderr
        self.total = total
        self.unit = unit
        self.active = total > 0 and self.stream.isatty()
        self.drawn = False
        self.last = 0.0

    def update(self, done):
        if not self.active:
            return
        now = time.monotonic()
        if self.drawn and done < self.total and now - self.last < 0.1:
            return
        self.last = now
        filled = min(done, self.total) * self.CELLS // self.total
        self.stream.write("\r[%s%s] %d/%d %s" % ("#" * filled, "." * (self.CELLS - filled), done,
                                                 self.total, self.unit))
        self.stream.flush()
        self.drawn = True

    def finish(self):
        """Clears the bar so that the next line starts clean."""
        if self.drawn:
            self.stream.write("\r\033[K")
            self.stream.flush()
            self.drawn = False

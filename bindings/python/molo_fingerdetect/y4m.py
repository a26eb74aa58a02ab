"""YUV4MPEG2 clips (what ``ffmpeg -f yuv4mpegpipe`` writes) read frame by
frame into the planes Detector.execute takes.

Accepts what the molo-fingerdetect tool accepts, with the same messages:
progressive 4:2:0 only (C420jpeg, C420mpeg2, C420paldv, C420 or no C tag).
Each frame's planar chroma is interleaved V then U (NV21).
"""

import io
import os
from fractions import Fraction

import numpy as np

__all__ = ["Y4MError", "Y4MFrame", "Y4MReader", "open_y4m"]

MAX_EXTENT = 16384
_MAGIC = b"YUV4MPEG2"
_MAX_HEADER_LINE = 65536
_MAX_FRAME_LINE = 4096
_SUPPORTED = ("only progressive 4:2:0 (C420jpeg, C420mpeg2, C420paldv, C420, or no C tag) "
              "is read; convert with ffmpeg -pix_fmt yuv420p")
_CHROMA_420 = (b"420", b"420jpeg", b"420mpeg2", b"420paldv")


class Y4MError(ValueError):
    """A stream that cannot be read; the message names the stream and, past
    the header, the frame."""


class Y4MFrame:
    """One picture: y (height x width) and vu (NV21 chroma, (height+1)//2 x
    2*((width+1)//2)), both uint8; index counts from 0."""

    __slots__ = ("index", "y", "vu")

    def __init__(self, index, y, vu):
        self.index = index
        self.y = y
        self.vu = vu


def _excerpt(text):
    """The start of a line for a message, unprintable bytes shown as '?'."""
    shown = "".join(chr(b) if 0x20 <= b < 0x7F else "?" for b in text[:24])
    return shown + ("..." if len(text) > 24 else "")


def _read_line(stream, limit):
    """(status, line): 'line', 'empty', 'unterminated' or 'too long'; the
    newline is not kept."""
    line = stream.readline(limit + 1)
    if line.endswith(b"\n"):
        return "line", line[:-1]
    if len(line) > limit:
        return "too long", line
    return ("unterminated" if line else "empty"), line


def _extent(digits):
    if not 1 <= len(digits) <= 6 or not all(0x30 <= b <= 0x39 for b in digits):
        return None
    value = int(digits)
    return value if 1 <= value <= MAX_EXTENT else None


def _ratio(text):
    num, colon, den = text.partition(b":")
    if not colon or not num or not den:
        return None
    if len(num) > 9 or len(den) > 9 or not (num + den).isdigit():
        return None
    return int(num), int(den)


def parse_header(line):
    """(width, height, fps) of a stream header line without its newline;
    Y4MError with the reason otherwise. fps is None when the F tag is
    absent or has a zero term."""
    magic = len(_MAGIC)
    if line[:magic] != _MAGIC or (len(line) > magic and line[magic:magic + 1] != b" "):
        raise Y4MError(f'not a YUV4MPEG2 stream (it starts with "{_excerpt(line)}")')
    size = {}
    fps = None
    for token in line[magic:].split(b" "):
        if not token:
            continue
        tag, value = token[:1], token[1:]
        if tag in (b"W", b"H"):
            extent = _extent(value)
            if extent is None:
                what = "width" if tag == b"W" else "height"
                raise Y4MError(f'bad {what} "{_excerpt(token)}" in the YUV4MPEG2 header '
                               f'(1 to {MAX_EXTENT})')
            size[tag] = extent
        elif tag == b"F":
            rate = _ratio(value)
            if rate is None:
                raise Y4MError(f'bad frame rate "{_excerpt(token)}" in the YUV4MPEG2 header')
            fps = Fraction(*rate) if rate[0] > 0 and rate[1] > 0 else None
        elif tag == b"A":
            if _ratio(value) is None:
                raise Y4MError(f'bad pixel aspect "{_excerpt(token)}" in the YUV4MPEG2 header')
        elif tag == b"I":
            if value in (b"t", b"b", b"m"):
                raise Y4MError(f"interlaced YUV4MPEG2 streams (I{value.decode()}) are not "
                               f"supported: {_SUPPORTED} -vf yadif")
            if value not in (b"p", b"?"):
                raise Y4MError(f'bad interlacing "{_excerpt(token)}" in the YUV4MPEG2 header')
        elif tag == b"C":
            if value not in _CHROMA_420:
                raise Y4MError(f'chroma layout "{_excerpt(token)}" is not supported: '
                               f"{_SUPPORTED}")
        # X comments and parameters this reader does not need are skipped.
    if b"W" not in size or b"H" not in size:
        missing = "H (height)" if b"W" in size else "W (width)"
        raise Y4MError(f"the YUV4MPEG2 header has no {missing} parameter")
    return size[b"W"], size[b"H"], fps


class Y4MReader:
    """Frames of a YUV4MPEG2 stream, in order, as Y4MFrame objects.

    width, height and fps (a Fraction, or None when the stream does not
    say) come from the header. A stream that ends inside a frame, or holds
    something other than a frame where one should start, raises Y4MError
    when that frame is reached; the frames before it are yielded first.
    """

    def __init__(self, stream, name, owns_stream=False):
        self.name = name
        self._stream = stream
        self._owns = owns_stream
        self._index = 0
        try:
            self.width, self.height, self.fps = self._read_header()
        except BaseException:
            self.close()
            raise
        cw = (self.width + 1) // 2
        self._chroma_shape = ((self.height + 1) // 2, cw)
        self.picture_bytes = self.width * self.height + 2 * cw * self._chroma_shape[0]

    def _read_header(self):
        status, line = _read_line(self._stream, _MAX_HEADER_LINE)
        if status == "empty":
            raise Y4MError(f"{self.name} is empty: expected a YUV4MPEG2 stream (from ffmpeg: "
                           "-pix_fmt yuv420p -f yuv4mpegpipe -)")
        if status == "too long":
            raise Y4MError(f"{self.name}: the YUV4MPEG2 header line is longer than "
                           f"{_MAX_HEADER_LINE} bytes")
        if status == "unterminated" and line.startswith(_MAGIC):
            raise Y4MError(f"{self.name}: the stream ends inside its YUV4MPEG2 header")
        try:
            return parse_header(line)
        except Y4MError as error:
            raise Y4MError(f"{self.name}: {error}") from None

    def _read_picture(self):
        data = bytearray(self.picture_bytes)
        view = memoryview(data)
        got = 0
        while got < len(data):
            n = self._stream.readinto(view[got:])
            if not n:
                break
            got += n
        return data, got

    def __iter__(self):
        return self

    def __next__(self):
        frame = f"frame {self._index}"
        try:
            status, line = _read_line(self._stream, _MAX_FRAME_LINE)
        except OSError:
            raise Y4MError(f"{self.name}: read error before {frame}") from None
        if status == "empty":
            raise StopIteration
        if status == "unterminated" and (line.startswith(b"FRAME") or b"FRAME".startswith(line)):
            raise Y4MError(f"{self.name}: {frame} is truncated: the stream ends inside its "
                           f"FRAME marker, all {self.picture_bytes} bytes of the picture missing")
        if status == "too long":
            raise Y4MError(f"{self.name}: {frame}: FRAME marker line longer than "
                           f"{_MAX_FRAME_LINE} bytes")
        if not line.startswith(b"FRAME") or (len(line) > 5 and line[5:6] != b" "):
            raise Y4MError(f'{self.name}: {frame}: expected a FRAME marker, found '
                           f'"{_excerpt(line)}"')
        data, got = self._read_picture()
        if got != self.picture_bytes:
            raise Y4MError(f"{self.name}: {frame} is truncated: {self.picture_bytes - got} of "
                           f"{self.picture_bytes} bytes missing")
        planes = np.frombuffer(data, dtype=np.uint8)
        luma = self.width * self.height
        chroma = self._chroma_shape[0] * self._chroma_shape[1]
        y = planes[:luma].reshape(self.height, self.width)
        u = planes[luma:luma + chroma].reshape(self._chroma_shape)
        v = planes[luma + chroma:].reshape(self._chroma_shape)
        vu = np.empty((self._chroma_shape[0], 2 * self._chroma_shape[1]), dtype=np.uint8)
        vu[:, 0::2] = v
        vu[:, 1::2] = u
        self._index += 1
        return Y4MFrame(self._index - 1, y, vu)

    def close(self):
        """Closes the stream when the reader opened it."""
        if self._owns:
            self._stream.close()

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.close()
        return False


def open_y4m(source):
    """A Y4MReader over a path, or over a binary file object (which the
    caller keeps and closes). Messages name the path, "standard input" for
    standard input, or the file object's name."""
    if isinstance(source, (str, bytes, os.PathLike)):
        name = os.fsdecode(source)
        if os.path.isdir(source):
            raise Y4MError(f"cannot read {name}: it is a directory")
        try:
            stream = open(source, "rb")
        except OSError as error:
            raise Y4MError(f"cannot open {name}: {error.strerror}") from None
        return Y4MReader(stream, name, owns_stream=True)
    if isinstance(source, io.TextIOBase):
        raise TypeError("open_y4m needs a binary file object (open it with 'rb')")
    name = getattr(source, "name", None)
    if name == 0 or name == "<stdin>":
        name = "standard input"
    elif not isinstance(name, str):
        name = "stream"
    return Y4MReader(source, name)

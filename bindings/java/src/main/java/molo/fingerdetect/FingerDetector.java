package molo.fingerdetect;

import java.nio.ByteBuffer;
import java.util.concurrent.atomic.AtomicInteger;

/**
 * One finger detector for one preview size: hand it every preview frame, in
 * capture order, and it tells whether a finger covers part of the lens.
 *
 * <p>Frames come either as the three planes of a {@code YUV_420_888} image
 * ({@link #detect}) or as one NV21 byte array ({@link #detectNv21}). Planes
 * whose chroma is interleaved with the luma's row stride, V,U or U,V, are
 * read in place; any other layout is first copied into a buffer the detector
 * keeps. A frame allocates nothing but a {@link Detection} when a finger is
 * reported at a new position.
 *
 * <p>One thread at a time: a call made while another thread is inside this
 * detector throws {@link IllegalStateException} instead of waiting. Close the
 * detector to release its native memory; later calls throw
 * {@link IllegalStateException}.
 */
public final class FingerDetector implements AutoCloseable {
    /** Smallest width or height: the detector analyses 8 x 8-pixel cells in pairs. */
    public static final int MIN_EXTENT = 16;
    /** Largest width or height the detector accepts. */
    public static final int MAX_EXTENT = 16384;

    static {
        System.loadLibrary("molo_fingerdetect_jni");
    }

    private static final int IDLE = 0;
    private static final int BUSY = 1;
    private static final int CLOSED = 2;

    private final int width;
    private final int height;
    private final AtomicInteger state = new AtomicInteger(IDLE);
    private long handle;
    // The last reported answer, handed out again while the finger stays put.
    private Detection lastReport = Detection.NOT_REPORTED;
    private boolean lastFrameConverted;

    /**
     * Creates a detector for width x height frames.
     *
     * @throws IllegalArgumentException when a side is below {@link #MIN_EXTENT}
     *     or above {@link #MAX_EXTENT}
     */
    public FingerDetector(int width, int height) {
        if (width < MIN_EXTENT || height < MIN_EXTENT || width > MAX_EXTENT || height > MAX_EXTENT) {
            throw new IllegalArgumentException("frame size " + width + "x" + height
                    + " outside " + MIN_EXTENT + " to " + MAX_EXTENT + " pixels a side");
        }
        handle = nativeCreate(width, height);
        if (handle == 0) {
            throw new IllegalArgumentException("the detector refused the frame size " + width + "x" + height);
        }
        this.width = width;
        this.height = height;
    }

    public int getWidth() {
        return width;
    }

    public int getHeight() {
        return height;
    }

    /**
     * Analyses one frame given as the planes of a {@code YUV_420_888} image,
     * each a direct buffer read from its position to its limit.
     *
     * @param orientation the side the finger enters from: 0 left, 1 right
     * @param gain sensor gain, 1.0 for unity
     * @param colorTemperature white-balance colour temperature in kelvin
     * @throws IllegalArgumentException for a buffer that is not direct, a
     *     stride that does not fit the frame, a plane shorter than its rows
     *     need, or an orientation other than 0 or 1
     * @throws IllegalStateException after {@link #close()}, or while another
     *     thread is using this detector
     */
    public Detection detect(ByteBuffer y, int yRowStride, int yPixelStride,
                            ByteBuffer u, int uRowStride, int uPixelStride,
                            ByteBuffer v, int vRowStride, int vPixelStride,
                            int orientation, float gain, int colorTemperature) {
        enter();
        try {
            checkOrientation(orientation);
            if (y == null || u == null || v == null) {
                throw new NullPointerException("a plane is null");
            }
            return decode(nativeDetectPlanes(handle,
                    y, y.position(), y.limit(), yRowStride, yPixelStride,
                    u, u.position(), u.limit(), uRowStride, uPixelStride,
                    v, v.position(), v.limit(), vRowStride, vPixelStride,
                    orientation, gain, colorTemperature));
        } finally {
            state.set(IDLE);
        }
    }

    /**
     * Analyses one NV21 frame: width x height luma bytes, then (height + 1) / 2
     * rows of (width + 1) / 2 V,U pairs. Longer arrays are accepted; the bytes
     * past the frame are not read.
     *
     * @throws IllegalArgumentException for an array shorter than the frame or
     *     an orientation other than 0 or 1
     * @throws IllegalStateException as for {@link #detect}
     */
    public Detection detectNv21(byte[] frame, int orientation, float gain, int colorTemperature) {
        enter();
        try {
            checkOrientation(orientation);
            long needed = (long) width * height + 2L * ((width + 1) / 2) * ((height + 1) / 2);
            if (frame.length < needed) {
                throw new IllegalArgumentException("NV21 frame of " + frame.length + " bytes, "
                        + width + "x" + height + " needs " + needed);
            }
            return decode(nativeDetectNv21(handle, frame, orientation, gain, colorTemperature));
        } finally {
            state.set(IDLE);
        }
    }

    /** Releases the native detector. Closing again does nothing. */
    @Override
    public void close() {
        while (true) {
            int s = state.get();
            if (s == CLOSED) {
                return;
            }
            if (s == BUSY) {
                throw new IllegalStateException("FingerDetector is in use by another thread");
            }
            if (state.compareAndSet(IDLE, CLOSED)) {
                break;
            }
        }
        nativeDestroy(handle);
        handle = 0;
    }

    /** Whether the last frame's planes were copied rather than read in place. */
    boolean lastFrameConverted() {
        return lastFrameConverted;
    }

    // The detector turns itself off for good on an unknown orientation, so
    // the value never reaches it.
    private static void checkOrientation(int orientation) {
        if (orientation != 0 && orientation != 1) {
            throw new IllegalArgumentException("orientation " + orientation + " is neither 0 (left) nor 1 (right)");
        }
    }

    private void enter() {
        if (!state.compareAndSet(IDLE, BUSY)) {
            throw new IllegalStateException(state.get() == CLOSED
                    ? "FingerDetector is closed" : "FingerDetector is in use by another thread");
        }
    }

    // Unpacks the native answer: bits 0-31 the result, 32-47 the row, 48-62
    // the column, bit 63 set when the planes were converted.
    private Detection decode(long packed) {
        int result = (int) packed;
        lastFrameConverted = packed < 0;
        if (result == 0) {
            return Detection.NOT_REPORTED;
        }
        if (result != 1) {
            throw new IllegalStateException("detector returned " + result);
        }
        int row = (int) (packed >>> 32) & 0xFFFF;
        int col = (int) (packed >>> 48) & 0x7FFF;
        if (!lastReport.isReported() || lastReport.getRow() != row || lastReport.getCol() != col) {
            lastReport = Detection.reported(row, col);
        }
        return lastReport;
    }

    private static native long nativeCreate(int width, int height);

    private static native void nativeDestroy(long handle);

    private static native long nativeDetectPlanes(long handle,
            ByteBuffer y, int yPosition, int yLimit, int yRowStride, int yPixelStride,
            ByteBuffer u, int uPosition, int uLimit, int uRowStride, int uPixelStride,
            ByteBuffer v, int vPosition, int vLimit, int vRowStride, int vPixelStride,
            int orientation, float gain, int colorTemperature);

    private static native long nativeDetectNv21(long handle, byte[] frame, int orientation,
            float gain, int colorTemperature);
}

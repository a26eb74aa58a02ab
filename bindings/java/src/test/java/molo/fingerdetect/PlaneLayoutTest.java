package molo.fingerdetect;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.management.ManagementFactory;
import java.nio.ByteBuffer;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;

import org.junit.jupiter.api.Test;

/**
 * Every way a camera lays out the planes gives the decisions of
 * {@code molo-fingerdetect demo}, frame by frame, and takes the path meant
 * for it: in place or converted.
 */
class PlaneLayoutTest {
    private static final int W = DemoClip.WIDTH;
    private static final int H = DemoClip.HEIGHT;

    /** One plane layout, filled from a packed NV21 frame of the demo's size. */
    static final class Layout {
        final String name;
        final int yRowStride, chromaRowStride, pixelStride, yPosition;
        final boolean oneChromaBuffer, vFirst, inPlace;
        ByteBuffer y, u, v;

        Layout(String name, int yRowStride, int chromaRowStride, int pixelStride, boolean oneChromaBuffer,
               boolean vFirst, int yPosition, boolean inPlace) {
            this.name = name;
            this.yRowStride = yRowStride;
            this.chromaRowStride = chromaRowStride;
            this.pixelStride = pixelStride;
            this.oneChromaBuffer = oneChromaBuffer;
            this.vFirst = vFirst;
            this.yPosition = yPosition;
            this.inPlace = inPlace;
        }

        void fill(byte[] nv21) {
            y = ByteBuffer.allocateDirect(yPosition + (H - 1) * yRowStride + W);
            for (int r = 0; r < H; r++) {
                y.position(yPosition + r * yRowStride);
                y.put(nv21, r * W, W);
            }
            y.position(yPosition);
            // Chroma buffers end at their last sample, as cameras deliver them;
            // in one buffer the second component starts a byte after the first.
            int span = (H / 2 - 1) * chromaRowStride + (W / 2 - 1) * pixelStride + 1;
            ByteBuffer first = ByteBuffer.allocateDirect(span + 1);
            ByteBuffer second = oneChromaBuffer ? first : ByteBuffer.allocateDirect(span + 1);
            int offset = oneChromaBuffer ? 1 : 0;
            for (int r = 0; r < H / 2; r++) {
                for (int c = 0; c < W / 2; c++) {
                    int pair = W * H + r * W + 2 * c;
                    int at = r * chromaRowStride + c * pixelStride;
                    first.put(at, nv21[vFirst ? pair : pair + 1]);
                    second.put(at + offset, nv21[vFirst ? pair + 1 : pair]);
                }
            }
            ByteBuffer lower = slice(first, 0, span);
            ByteBuffer upper = slice(second, offset, span);
            v = vFirst ? lower : upper;
            u = vFirst ? upper : lower;
        }

        Detection run(FingerDetector detector, int orientation) {
            return detector.detect(y, yRowStride, 1, u, chromaRowStride, pixelStride,
                    v, chromaRowStride, pixelStride, orientation, 1.0f, 5000);
        }

        private static ByteBuffer slice(ByteBuffer buffer, int from, int length) {
            ByteBuffer view = buffer.duplicate();
            view.position(from).limit(from + length);
            return view.slice();
        }
    }

    static List<Layout> layouts() {
        return Arrays.asList(
                new Layout("interleaved V,U, tight rows", 640, 640, 2, true, true, 0, true),
                new Layout("interleaved V,U, padded rows", 704, 704, 2, true, true, 0, true),
                new Layout("interleaved U,V, padded rows", 704, 704, 2, true, false, 0, true),
                new Layout("interleaved V,U, chroma rows longer", 640, 672, 2, true, true, 0, false),
                new Layout("V and U apart, pixel stride 2", 640, 640, 2, false, true, 0, false),
                new Layout("planar chroma, luma from a position", 648, 336, 1, false, true, 5, false));
    }

    /**
     * Runs the whole demo clip through a new detector (null: as NV21 arrays).
     * A frame creates no Java object but the Detection of a finger reported
     * at a new position: the bytes the thread allocates inside the calls
     * stay within that.
     */
    static void runClip(Layout layout) throws Exception {
        DemoClip clip = DemoClip.get();
        String name = layout == null ? "NV21 array" : layout.name;
        com.sun.management.ThreadMXBean threads = (com.sun.management.ThreadMXBean) ManagementFactory.getThreadMXBean();
        long self = Thread.currentThread().getId();
        long allocated = 0;
        int newPositions = 0;
        Detection lastReport = Detection.NOT_REPORTED;
        try (FingerDetector detector = new FingerDetector(W, H)) {
            for (int i = 0; i < clip.frames.size(); i++) {
                if (layout != null) {
                    layout.fill(clip.frames.get(i));
                }
                long before = threads.getThreadAllocatedBytes(self);
                Detection got = layout == null ? detector.detectNv21(clip.frames.get(i), 0, 1.0f, 5000)
                        : layout.run(detector, 0);
                allocated += threads.getThreadAllocatedBytes(self) - before;
                assertEquals(clip.decisions.get(i), got, name + ", frame " + i);
                assertEquals(layout != null && !layout.inPlace, detector.lastFrameConverted(),
                        name + ", frame " + i + " converted");
                if (got.isReported() && !got.equals(lastReport)) {
                    newPositions++;
                    lastReport = got;
                }
            }
        }
        assertTrue(allocated <= 32L * newPositions, name + ": " + allocated + " bytes for " + newPositions + " positions");
    }

    /** Each layout on its own detector, two detectors running at any time. */
    @Test
    void everyLayoutGivesTheDemoDecisionsWithTwoDetectorsAtOnce() throws Exception {
        List<Layout> cases = new ArrayList<>(layouts());
        cases.add(null);
        ExecutorService pool = Executors.newFixedThreadPool(2);
        try {
            List<Future<?>> runs = new ArrayList<>();
            for (Layout layout : cases) {
                runs.add(pool.submit(() -> {
                    runClip(layout);
                    return null;
                }));
            }
            for (Future<?> run : runs) {
                run.get();
            }
        } finally {
            pool.shutdown();
        }
    }
}

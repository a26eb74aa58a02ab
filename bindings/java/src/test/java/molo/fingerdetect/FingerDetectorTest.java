package molo.fingerdetect;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.lang.management.ManagementFactory;
import java.nio.ByteBuffer;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.function.Consumer;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

import org.junit.jupiter.api.Test;

class FingerDetectorTest {
    private static final int W = 640;
    private static final int H = 480;
    private static final int FRAME_BYTES = W * H * 3 / 2;

    /**
     * The tool's demo clip as packed NV21 frames and the decisions
     * {@code molo-fingerdetect demo --json} printed for it, from the files the
     * build's test fixture writes (system properties molo.demo.frames and
     * molo.demo.decisions).
     */
    static final class DemoClip {
        final List<byte[]> frames = new ArrayList<>();
        final List<Detection> decisions = new ArrayList<>();

        DemoClip() throws IOException {
            byte[] all = Files.readAllBytes(Paths.get(System.getProperty("molo.demo.frames")));
            for (int at = 0; at + FRAME_BYTES <= all.length; at += FRAME_BYTES) {
                frames.add(Arrays.copyOfRange(all, at, at + FRAME_BYTES));
            }
            Pattern line = Pattern.compile("\\{\"frame\":\\d+,\"result\":(-?\\d+),\"row\":(null|\\d+),\"col\":(null|\\d+)\\}");
            for (String text : Files.readAllLines(Paths.get(System.getProperty("molo.demo.decisions")))) {
                Matcher m = line.matcher(text);
                if (!m.matches()) {
                    throw new IOException("unexpected demo line: " + text);
                }
                decisions.add(m.group(1).equals("1")
                        ? Detection.reported(Integer.parseInt(m.group(2)), Integer.parseInt(m.group(3)))
                        : Detection.NOT_REPORTED);
            }
            if (frames.isEmpty() || frames.size() != decisions.size()) {
                throw new IOException(frames.size() + " demo frames but " + decisions.size() + " decisions");
            }
        }
    }


    /** One way a camera lays out the planes, filled from a packed NV21 frame of the demo's size. */
    record Layout(String name, int yRowStride, int chromaRowStride, int pixelStride, boolean oneChromaBuffer,
                  boolean vFirst, int yPosition, boolean inPlace) {
        Planes fill(byte[] nv21) {
            ByteBuffer y = ByteBuffer.allocateDirect(yPosition + (H - 1) * yRowStride + W);
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
            return new Planes(this, y, vFirst ? upper : lower, vFirst ? lower : upper);
        }

        private static ByteBuffer slice(ByteBuffer buffer, int from, int length) {
            ByteBuffer view = buffer.duplicate();
            view.position(from).limit(from + length);
            return view.slice();
        }
    }

    /** A frame's planes as one layout holds them. */
    record Planes(Layout layout, ByteBuffer y, ByteBuffer u, ByteBuffer v) {
        Detection run(FingerDetector detector, int orientation) {
            return detector.detect(y, layout.yRowStride, 1, u, layout.chromaRowStride, layout.pixelStride,
                    v, layout.chromaRowStride, layout.pixelStride, orientation, 1.0f, 5000);
        }
    }

    static final List<Layout> LAYOUTS = Arrays.asList(
            new Layout("interleaved V,U, tight rows", 640, 640, 2, true, true, 0, true),
            new Layout("interleaved U,V, padded rows", 704, 704, 2, true, false, 0, true),
            new Layout("interleaved V,U, chroma rows longer", 640, 672, 2, true, true, 0, false),
            new Layout("V and U apart, pixel stride 2", 640, 640, 2, false, true, 0, false),
            new Layout("planar chroma, luma from a position", 648, 336, 1, false, true, 5, false));

    /**
     * Each layout (and the NV21 array, null) gives the tool's decisions on the
     * demo clip, frame by frame, and takes the path meant for it: in place or
     * converted. A frame creates no Java object but the Detection of a finger
     * reported at a new position: the bytes the thread allocates inside the
     * calls stay within that. Before every frame of the first layout, each
     * refused call is made: none may change what the detector decides.
     */
    @Test
    void everyLayoutGivesTheDemoDecisionsWithoutAllocatingAndRefusalsChangeNothing() throws Exception {
        DemoClip clip = new DemoClip();
        com.sun.management.ThreadMXBean threads = (com.sun.management.ThreadMXBean) ManagementFactory.getThreadMXBean();
        List<Layout> cases = new ArrayList<>(LAYOUTS);
        cases.add(null);
        for (Layout layout : cases) {
            String name = layout == null ? "NV21 array" : layout.name();
            long allocated = 0;
            int newPositions = 0;
            Detection lastReport = Detection.NOT_REPORTED;
            try (FingerDetector detector = new FingerDetector(W, H)) {
                for (int i = 0; i < clip.frames.size(); i++) {
                    Planes planes = layout == null ? null : layout.fill(clip.frames.get(i));
                    if (layout == LAYOUTS.get(0)) {
                        for (Consumer<FingerDetector> call : refusals(planes)) {
                            assertThrows(IllegalArgumentException.class, () -> call.accept(detector));
                        }
                    }
                    long before = threads.getCurrentThreadAllocatedBytes();
                    Detection got = layout == null ? detector.detectNv21(clip.frames.get(i), 0, 1.0f, 5000)
                            : planes.run(detector, 0);
                    allocated += threads.getCurrentThreadAllocatedBytes() - before;
                    assertEquals(clip.decisions.get(i), got, name + ", frame " + i);
                    assertEquals(layout != null && !layout.inPlace(), detector.lastFrameConverted(), name + " converted");
                    if (got.isReported() && !got.equals(lastReport)) {
                        newPositions++;
                        lastReport = got;
                    }
                }
            }
            assertTrue(allocated <= 32L * newPositions, name + ": " + allocated + " bytes for " + newPositions + " positions");
        }
    }

    @Test
    void sizesOutside16To16384AreRefusedOddOnesWorkClosedOnesRefuse() {
        int[][] sizes = {{0, H}, {W, 0}, {15, H}, {W, 15}, {-640, H}, {16385, H}, {W, 16385}};
        for (int[] size : sizes) {
            assertThrows(IllegalArgumentException.class, () -> new FingerDetector(size[0], size[1]),
                    size[0] + "x" + size[1]);
        }
        // Odd sides: chroma rows hold (17 + 1) / 2 pairs, so the array's
        // planes have different row strides and are converted.
        // Closing twice is allowed; a closed detector refuses every call.
        FingerDetector odd = new FingerDetector(17, 17);
        int bytes = 17 * 17 + 2 * 9 * 9;
        assertEquals(Detection.NOT_REPORTED, odd.detectNv21(new byte[bytes], 0, 1f, 5000));
        assertTrue(odd.lastFrameConverted());
        assertThrows(IllegalArgumentException.class, () -> odd.detectNv21(new byte[bytes - 1], 0, 1f, 5000));
        odd.close();
        odd.close();
        assertThrows(IllegalStateException.class, () -> odd.detectNv21(new byte[bytes], 0, 1f, 5000));
    }

    /** Calls that must be refused, filled in from good: none may reach the detector. */
    private static List<Consumer<FingerDetector>> refusals(Planes good) {
        return List.of(
                // Orientations the detector would turn itself off for.
                d -> good.run(d, 2),
                d -> good.run(d, -1),
                // A heap buffer has no address the native side may read.
                d -> d.detect(ByteBuffer.allocate(W * H), W, 1, good.u(), W, 2, good.v(), W, 2, 0, 1f, 5000),
                // Each plane one byte short of its last sample.
                d -> d.detect(shorter(good.y()), W, 1, good.u(), W, 2, good.v(), W, 2, 0, 1f, 5000),
                d -> d.detect(good.y(), W, 1, shorter(good.u()), W, 2, good.v(), W, 2, 0, 1f, 5000),
                d -> d.detect(good.y(), W, 1, good.u(), W, 2, shorter(good.v()), W, 2, 0, 1f, 5000),
                // Strides that do not fit the frame.
                d -> d.detect(good.y(), W - 1, 1, good.u(), W, 2, good.v(), W, 2, 0, 1f, 5000),
                d -> d.detect(good.y(), W, 1, good.u(), W, 0, good.v(), W, 0, 0, 1f, 5000),
                d -> d.detect(good.y(), W, 1, good.u(), W - 2, 2, good.v(), W - 2, 2, 0, 1f, 5000),
                d -> d.detectNv21(new byte[W * H * 3 / 2 - 1], 0, 1f, 5000));
    }

    private static ByteBuffer shorter(ByteBuffer plane) {
        ByteBuffer view = plane.duplicate();
        view.limit(view.limit() - 1);
        return view;
    }
}

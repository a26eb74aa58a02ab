package molo.fingerdetect;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.ByteBuffer;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicBoolean;
import java.util.function.Consumer;

import org.junit.jupiter.api.Test;

class FingerDetectorTest {
    private static final int W = DemoClip.WIDTH;
    private static final int H = DemoClip.HEIGHT;

    @Test
    void sizesOutside16To16384AreRefusedOddOnesWork() {
        int[][] sizes = {{0, H}, {W, 0}, {15, H}, {W, 15}, {-640, H}, {16385, H}, {W, 16385}};
        for (int[] size : sizes) {
            assertThrows(IllegalArgumentException.class, () -> new FingerDetector(size[0], size[1]),
                    size[0] + "x" + size[1]);
        }
        // Odd sides: chroma rows hold (17 + 1) / 2 pairs, so the array's
        // planes have different row strides and are converted.
        try (FingerDetector odd = new FingerDetector(17, 17)) {
            int bytes = 17 * 17 + 2 * 9 * 9;
            assertEquals(Detection.NOT_REPORTED, odd.detectNv21(new byte[bytes], 0, 1f, 5000));
            assertTrue(odd.lastFrameConverted());
            assertThrows(IllegalArgumentException.class, () -> odd.detectNv21(new byte[bytes - 1], 0, 1f, 5000));
        }
    }

    /**
     * Calls that must be refused, each made before every frame of the demo
     * clip: none may reach the detector or change what it decides.
     */
    @Test
    void refusedCallsLeaveTheDecisionsAlone() throws Exception {
        DemoClip clip = DemoClip.get();
        PlaneLayoutTest.Layout good = PlaneLayoutTest.layouts().get(0);
        List<Consumer<FingerDetector>> refused = new ArrayList<>();
        // Orientations the detector would turn itself off for.
        refused.add(d -> good.run(d, 2));
        refused.add(d -> good.run(d, -1));
        // A heap buffer has no address the native side may read.
        refused.add(d -> d.detect(ByteBuffer.allocate(W * H), W, 1, good.u, W, 2, good.v, W, 2, 0, 1f, 5000));
        // Each plane one byte short of its last sample.
        refused.add(d -> d.detect(shorter(good.y), W, 1, good.u, W, 2, good.v, W, 2, 0, 1f, 5000));
        refused.add(d -> d.detect(good.y, W, 1, shorter(good.u), W, 2, good.v, W, 2, 0, 1f, 5000));
        refused.add(d -> d.detect(good.y, W, 1, good.u, W, 2, shorter(good.v), W, 2, 0, 1f, 5000));
        // Strides that do not fit the frame.
        refused.add(d -> d.detect(good.y, W - 1, 1, good.u, W, 2, good.v, W, 2, 0, 1f, 5000));
        refused.add(d -> d.detect(good.y, W, 1, good.u, W, 0, good.v, W, 0, 0, 1f, 5000));
        refused.add(d -> d.detect(good.y, W, 1, good.u, W - 2, 2, good.v, W - 2, 2, 0, 1f, 5000));
        refused.add(d -> d.detectNv21(new byte[W * H * 3 / 2 - 1], 0, 1f, 5000));

        try (FingerDetector detector = new FingerDetector(W, H)) {
            for (int i = 0; i < clip.frames.size(); i++) {
                good.fill(clip.frames.get(i));
                for (int k = 0; k < refused.size(); k++) {
                    Consumer<FingerDetector> call = refused.get(k);
                    assertThrows(IllegalArgumentException.class, () -> call.accept(detector), "refusal " + k);
                }
                assertEquals(clip.decisions.get(i), good.run(detector, 0), "frame " + i);
            }
        }
    }

    private static ByteBuffer shorter(ByteBuffer plane) {
        ByteBuffer view = plane.duplicate();
        view.limit(view.limit() - 1);
        return view;
    }

    @Test
    void closedDetectorRefusesEveryCall() {
        FingerDetector detector = new FingerDetector(W, H);
        detector.close();
        detector.close();
        ByteBuffer plane = ByteBuffer.allocateDirect(W * H);
        assertThrows(IllegalStateException.class, () -> detector.detectNv21(new byte[W * H * 2], 0, 1f, 5000));
        assertThrows(IllegalStateException.class,
                () -> detector.detect(plane, W, 1, plane, W, 2, plane, W, 2, 2, 1f, 5000));
    }

    /** Two threads on one detector: sooner or later one is turned away, never both let in. */
    @Test
    void concurrentUseOfOneDetectorIsRefused() throws Exception {
        byte[] frame = DemoClip.get().frames.get(20);
        AtomicBoolean refused = new AtomicBoolean();
        long deadline = System.nanoTime() + TimeUnit.SECONDS.toNanos(60);
        try (FingerDetector detector = new FingerDetector(W, H)) {
            Runnable hammer = () -> {
                while (!refused.get() && System.nanoTime() < deadline) {
                    try {
                        detector.detectNv21(frame, 0, 1f, 5000);
                    } catch (IllegalStateException e) {
                        assertTrue(e.getMessage().contains("in use"), e.getMessage());
                        refused.set(true);
                    }
                }
            };
            CompletableFuture.allOf(CompletableFuture.runAsync(hammer), CompletableFuture.runAsync(hammer)).get();
        }
        assertTrue(refused.get(), "no call was refused in 60 s of overlapping use");
    }
}

package molo.fingerdetect;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.nio.ByteBuffer;
import java.util.Arrays;
import java.util.List;
import java.util.stream.Stream;

import org.junit.jupiter.api.DynamicTest;
import org.junit.jupiter.api.TestFactory;

/**
 * Every way a camera lays out the planes gives the decisions of
 * {@code molo-fingerdetect demo}, frame by frame, and takes the path meant
 * for it: in place or converted.
 */
class PlaneLayoutTest {
    enum Chroma { VU, UV, PLANAR, APART }

    /** One plane layout, filled from a packed NV21 frame of the demo's size. */
    static final class Layout {
        final String name;
        final Chroma chroma;
        final int yRowStride;
        final int chromaRowStride;
        final int yPosition;
        final boolean inPlace;
        final int pixelStride;
        ByteBuffer y;
        ByteBuffer u;
        ByteBuffer v;

        Layout(String name, Chroma chroma, int yRowStride, int chromaRowStride, int yPosition, boolean inPlace) {
            this.name = name;
            this.chroma = chroma;
            this.yRowStride = yRowStride;
            this.chromaRowStride = chromaRowStride;
            this.yPosition = yPosition;
            this.inPlace = inPlace;
            this.pixelStride = chroma == Chroma.PLANAR ? 1 : 2;
        }

        void fill(byte[] nv21) {
            int w = DemoClip.WIDTH;
            int h = DemoClip.HEIGHT;
            int cw = w / 2;
            int ch = h / 2;
            ByteBuffer luma = ByteBuffer.allocateDirect(yPosition + (h - 1) * yRowStride + w);
            for (int r = 0; r < h; r++) {
                luma.position(yPosition + r * yRowStride);
                luma.put(nv21, r * w, w);
            }
            luma.position(yPosition);
            y = luma;
            // Chroma buffers end at their last sample, as cameras deliver them.
            int span = (ch - 1) * chromaRowStride + (cw - 1) * pixelStride + 1;
            ByteBuffer first = ByteBuffer.allocateDirect(chroma == Chroma.VU || chroma == Chroma.UV ? span + 1 : span);
            ByteBuffer second = chroma == Chroma.VU || chroma == Chroma.UV ? null : ByteBuffer.allocateDirect(span);
            for (int r = 0; r < ch; r++) {
                for (int c = 0; c < cw; c++) {
                    byte vSample = nv21[w * h + r * w + 2 * c];
                    byte uSample = nv21[w * h + r * w + 2 * c + 1];
                    int at = r * chromaRowStride + c * pixelStride;
                    if (chroma == Chroma.VU || chroma == Chroma.UV) {
                        first.put(at, chroma == Chroma.VU ? vSample : uSample);
                        first.put(at + 1, chroma == Chroma.VU ? uSample : vSample);
                    } else {
                        first.put(at, vSample);
                        second.put(at, uSample);
                    }
                }
            }
            if (second == null) {
                ByteBuffer lower = slice(first, 0, span);
                ByteBuffer upper = slice(first, 1, span);
                v = chroma == Chroma.VU ? lower : upper;
                u = chroma == Chroma.VU ? upper : lower;
            } else {
                v = first;
                u = second;
            }
        }

        Detection run(FingerDetector detector, int orientation) {
            return detector.detect(y, yRowStride, 1, u, chromaRowStride, pixelStride,
                    v, chromaRowStride, pixelStride, orientation, 1.0f, 5000);
        }

        private static ByteBuffer slice(ByteBuffer buffer, int from, int length) {
            ByteBuffer view = buffer.duplicate();
            view.position(from);
            view.limit(from + length);
            return view.slice();
        }
    }

    static List<Layout> layouts() {
        return Arrays.asList(
                new Layout("interleaved V,U, tight rows", Chroma.VU, 640, 640, 0, true),
                new Layout("interleaved V,U, padded rows", Chroma.VU, 704, 704, 0, true),
                new Layout("interleaved U,V, padded rows", Chroma.UV, 704, 704, 0, true),
                new Layout("interleaved V,U, chroma rows longer than luma rows", Chroma.VU, 640, 672, 0, false),
                new Layout("V and U in separate buffers, pixel stride 2", Chroma.APART, 640, 640, 0, false),
                new Layout("planar chroma, luma read from a buffer position", Chroma.PLANAR, 648, 336, 5, false));
    }

    /** Runs the whole demo clip through a new detector; checks each frame. */
    static void runClip(Layout layout) throws Exception {
        DemoClip clip = DemoClip.get();
        try (FingerDetector detector = new FingerDetector(DemoClip.WIDTH, DemoClip.HEIGHT)) {
            for (int i = 0; i < clip.frames.size(); i++) {
                Detection got;
                if (layout == null) {
                    got = detector.detectNv21(clip.frames.get(i), 0, 1.0f, 5000);
                } else {
                    layout.fill(clip.frames.get(i));
                    got = layout.run(detector, 0);
                }
                assertEquals(clip.decisions.get(i), got, "frame " + i);
                assertEquals(layout != null && !layout.inPlace, detector.lastFrameConverted(),
                        "frame " + i + " converted");
            }
        }
    }

    @TestFactory
    Stream<DynamicTest> everyLayoutGivesTheDemoDecisions() {
        Stream<DynamicTest> array = Stream.of(DynamicTest.dynamicTest("NV21 byte array", () -> runClip(null)));
        return Stream.concat(array, layouts().stream()
                .map(layout -> DynamicTest.dynamicTest(layout.name, () -> runClip(layout))));
    }
}

package molo.fingerdetect;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * The tool's demo clip as packed NV21 frames and the decisions
 * {@code molo-fingerdetect demo --json} printed for it, from the files the
 * build's test fixture writes (system properties molo.demo.frames and
 * molo.demo.decisions).
 */
final class DemoClip {
    static final int WIDTH = 640;
    static final int HEIGHT = 480;
    static final int FRAME_BYTES = WIDTH * HEIGHT * 3 / 2;

    final List<byte[]> frames = new ArrayList<>();
    final List<Detection> decisions = new ArrayList<>();

    private static DemoClip loaded;

    static synchronized DemoClip get() throws IOException {
        if (loaded == null) {
            loaded = new DemoClip();
        }
        return loaded;
    }

    private DemoClip() throws IOException {
        byte[] all = Files.readAllBytes(Paths.get(System.getProperty("molo.demo.frames")));
        for (int at = 0; at + FRAME_BYTES <= all.length; at += FRAME_BYTES) {
            byte[] frame = new byte[FRAME_BYTES];
            System.arraycopy(all, at, frame, 0, FRAME_BYTES);
            frames.add(frame);
        }
        Pattern line = Pattern.compile(
                "\\{\"frame\":(\\d+),\"result\":(-?\\d+),\"row\":(null|\\d+),\"col\":(null|\\d+)\\}");
        for (String text : Files.readAllLines(Paths.get(System.getProperty("molo.demo.decisions")))) {
            Matcher m = line.matcher(text);
            if (!m.matches() || Integer.parseInt(m.group(1)) != decisions.size()) {
                throw new IOException("unexpected demo line: " + text);
            }
            decisions.add(m.group(2).equals("1")
                    ? Detection.reported(Integer.parseInt(m.group(3)), Integer.parseInt(m.group(4)))
                    : Detection.NOT_REPORTED);
        }
        if (frames.isEmpty() || frames.size() != decisions.size()) {
            throw new IOException(frames.size() + " demo frames but " + decisions.size() + " decisions");
        }
    }
}

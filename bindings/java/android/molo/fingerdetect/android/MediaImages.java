package molo.fingerdetect.android;

import android.graphics.ImageFormat;
import android.media.Image;

import molo.fingerdetect.Detection;
import molo.fingerdetect.FingerDetector;

/**
 * Feeds {@link Image}s from Camera2's {@code ImageReader} or CameraX's
 * {@code ImageAnalysis} ({@code ImageProxy.getImage()}) to a
 * {@link FingerDetector}. The planes are passed as the camera delivers them;
 * the detector reads them in place when their layout allows.
 */
public final class MediaImages {
    private MediaImages() {
    }

    /**
     * Analyses one {@code YUV_420_888} image of the detector's size.
     *
     * @param orientation the side the finger enters from in the image as the
     *     sensor delivers it: 0 left, 1 right
     * @param gain sensor gain, 1.0 for unity (e.g. the capture result's
     *     sensitivity divided by the sensor's base sensitivity)
     * @param colorTemperature white-balance colour temperature in kelvin
     * @throws IllegalArgumentException for another format or size
     * @throws IllegalStateException as {@link FingerDetector#detect} does
     */
    public static Detection detect(FingerDetector detector, Image image, int orientation,
                                   float gain, int colorTemperature) {
        if (image.getFormat() != ImageFormat.YUV_420_888) {
            throw new IllegalArgumentException("image format " + image.getFormat()
                    + " is not YUV_420_888");
        }
        if (image.getWidth() != detector.getWidth() || image.getHeight() != detector.getHeight()) {
            throw new IllegalArgumentException("image of " + image.getWidth() + "x" + image.getHeight()
                    + " for a detector of " + detector.getWidth() + "x" + detector.getHeight());
        }
        Image.Plane[] planes = image.getPlanes();
        Image.Plane y = planes[0];
        Image.Plane u = planes[1];
        Image.Plane v = planes[2];
        return detector.detect(y.getBuffer(), y.getRowStride(), y.getPixelStride(),
                u.getBuffer(), u.getRowStride(), u.getPixelStride(),
                v.getBuffer(), v.getRowStride(), v.getPixelStride(),
                orientation, gain, colorTemperature);
    }
}

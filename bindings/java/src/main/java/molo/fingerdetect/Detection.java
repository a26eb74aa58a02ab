package molo.fingerdetect;

/**
 * What the detector answered for one frame: whether a finger is reported and,
 * when it is, the centroid of the covered region in frame pixels.
 * Instances are immutable.
 */
public final class Detection {
    /** The answer for every frame on which no finger is reported. */
    public static final Detection NOT_REPORTED = new Detection(false, -1, -1);

    private final boolean reported;
    private final int row;
    private final int col;

    private Detection(boolean reported, int row, int col) {
        this.reported = reported;
        this.row = row;
        this.col = col;
    }

    /** A reported finger centred on (row, col). */
    public static Detection reported(int row, int col) {
        return new Detection(true, row, col);
    }

    /** True when the detector reports a finger on the lens for this frame. */
    public boolean isReported() {
        return reported;
    }

    /** Row of the finger's centroid in frame pixels; -1 when not reported. */
    public int getRow() {
        return row;
    }

    /** Column of the finger's centroid in frame pixels; -1 when not reported. */
    public int getCol() {
        return col;
    }

    @Override
    public boolean equals(Object other) {
        if (!(other instanceof Detection)) {
            return false;
        }
        Detection d = (Detection) other;
        return reported == d.reported && row == d.row && col == d.col;
    }

    @Override
    public int hashCode() {
        return reported ? 31 * row + col + 1 : 0;
    }

    @Override
    public String toString() {
        return reported ? "Detection(row=" + row + ", col=" + col + ")" : "Detection(not reported)";
    }
}

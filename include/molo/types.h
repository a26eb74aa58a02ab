// Plain records shared by the detector's stages.
#ifndef MOLO_TYPES_H
#define MOLO_TYPES_H

// A cell of the working grid: seed and queue entry of region growing.
struct Pixel {
    int row;
    int col;
};

// Measurements kept per region label.
struct RegionStat {
    float area;           // pixel count of the region
    int border_length;    // frame-edge cells the region touches (GetBorderLength)
    int border_position;  // position of the region's first border cell
    float compactness;    // perimeter / sqrt(area), only for a chosen candidate
};

// One finger tone of the colour table.
struct FingerColor {
    float ref_u;   // compared with the first chroma byte of a working pair
    float ref_v;   // compared with the second chroma byte
    float radius;  // chroma distance below which a pixel matches
    int kind;      // 1 to 4: seed map, area factor, compactness and light exclusions
};

#endif  // MOLO_TYPES_H

#ifndef MOLO_DETECTOR_SEED_MAPS_H
#define MOLO_DETECTOR_SEED_MAPS_H

namespace molo {

// Fills the two seed-zone maps of a w x h grid (both zeroed beforehand):
// value 1 in the left strip (columns 0..9), 2 in the right strip (last 10
// columns). The full map seeds the whole left edge; every other zone covers
// only the corner squares (10 rows) and the middle band, leaving out the
// quarter-height bands between them; this asymmetry is kept (pinned by
// Initialize.SeedZonesOfASixtyRowGrid). On narrow grids the strips overlap:
// the left strip is written first, then the right (the 16-wide clip of
// PlatformDigest.SyntheticClipsMatchTheCommittedDigest depends on it).
void build_seed_maps(unsigned char* full, unsigned char* band, int w, int h);

}  // namespace molo

#endif  // MOLO_DETECTOR_SEED_MAPS_H

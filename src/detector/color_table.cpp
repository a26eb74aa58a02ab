// The built-in colour table of finger tones, and its reserved companions.
#include "detector/colour_rules.h"
#include "molo/detector.h"

using molo::kKindBandGrey;
using molo::kKindFull;
using molo::kKindFullGrey;

int Molo_FingerDetect::ReadDB(char* /*db_path*/) {
    static const FingerColor kTable[MOLO_FINGER_DB_SIZE] = {
        {146.89f, 116.58f, 14.0f, kKindFull},    {155.18f, 110.43f, 14.0f, kKindFull},
        {164.86f, 101.66f, 14.0f, kKindFull},    {130.29f, 131.49f, 8.0f, kKindBandGrey},
        {136.29f, 125.64f, 8.0f, kKindFullGrey},
    };
    for (int i = 0; i < MOLO_FINGER_DB_SIZE; ++i) finger_db[i] = kTable[i];
    return 0;
}

int Molo_FingerDetect::WriteDB(char* /*db_path*/) { return 0; }

void Molo_FingerDetect::Sort_FingerDB() {}

int Molo_FingerDetect::Verification(unsigned char* /*y_plane*/, unsigned char* /*vu_plane*/, int,
                                    int, int, int) {
    return 0;
}

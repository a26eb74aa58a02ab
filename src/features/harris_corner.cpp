#include "molo/detector.h"

int Molo_FingerDetect::HarrisCorner() { return 0; }

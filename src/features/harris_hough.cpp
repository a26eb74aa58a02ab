#include "molo/detector.h"

bool Molo_FingerDetect::HarrisHough() { return true; }

#include "molo/detector.h"

double Molo_FingerDetect::HoughLine() { return 0.0; }

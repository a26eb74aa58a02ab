#include "molo/detector.h"

unsigned int Molo_FingerDetect::compute_perimeter(unsigned int*, int, int, int) { return 0; }

#include "molo/detector.h"

void Molo_FingerDetect::StraitLineDetect(int, int) {}

#include "molo/detector.h"

void Molo_FingerDetect::FillInGap() {}

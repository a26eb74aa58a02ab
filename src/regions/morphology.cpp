#include "molo/detector.h"

void Molo_FingerDetect::Erode() {}
void Molo_FingerDetect::Dilate() {}

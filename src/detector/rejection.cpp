#include "detector/rejection.h"

#include "molo/detector.h"
#include "support/log.h"

namespace molo {

int reject(Molo_FingerDetect& d, const char* format, int extra) {
    d.have_detect = 0;
    if (d.log_enabled != 0) log_print(kLogDebug, format, d.db_index, extra);
    return 0;
}

}  // namespace molo

#include "result_writer.h"

namespace fingerdetect {

void ResultWriter::begin() {
    if (!json_) std::fputs("frame,result,row,col\n", out_);
}

// A frame without a report has no position: empty CSV fields, JSON null.
void ResultWriter::write(const FrameResult& r) {
    const bool reported = r.result == 1;
    if (json_) {
        if (reported) {
            std::fprintf(out_, "{\"frame\":%ld,\"result\":%d,\"row\":%d,\"col\":%d}\n", r.frame,
                         r.result, r.row, r.col);
        } else {
            std::fprintf(out_, "{\"frame\":%ld,\"result\":%d,\"row\":null,\"col\":null}\n", r.frame,
                         r.result);
        }
    } else if (reported) {
        std::fprintf(out_, "%ld,%d,%d,%d\n", r.frame, r.result, r.row, r.col);
    } else {
        std::fprintf(out_, "%ld,%d,,\n", r.frame, r.result);
    }
}

}  // namespace fingerdetect

/* A client that knows only the umbrella header and the shared library:
 * creates a detector, feeds it NV21 frames and finalises it. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "MoloFingerDetect.h"

int main(void) {
    const int width = 640;
    const int height = 480;
    unsigned char* y = malloc((size_t)width * height);
    unsigned char* vu = malloc((size_t)width * height / 2);
    memset(y, 128, (size_t)width * height);
    memset(vu, 128, (size_t)width * height / 2);

    void* handle = MoloFinDetect_Initialize(NULL, width, height, NULL);
    if (handle == NULL) {
        fprintf(stderr, "no handle\n");
        return 1;
    }
    int failures = 0;
    for (int frame = 0; frame < 3; ++frame) {
        int row = -1;
        int col = -1;
        const int found = MoloFinDetect_Execute(handle, y, vu, 0, width, 1, 2.0f, 5000, &row, &col);
        if (found != 0) ++failures; /* a flat grey frame holds no finger */
    }
    if (MoloFinDetect_Verification(handle, y, vu, 0, 0, 0, 0) != 0) ++failures;
    if (MoloFinDetect_Finalize(handle, NULL, 0) != 0) ++failures;
    free(y);
    free(vu);
    printf("consumer: %s\n", failures == 0 ? "ok" : "FAILED");
    return failures == 0 ? 0 : 1;
}

// Creating and releasing TIFF_IMG records. Each plane is a block of height
// row pointers into one zero-filled height x width byte block.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "debug/tiff_format.h"
#include "molo/debug.h"

namespace {

unsigned char** allocate_plane(int rows, int cols) {
    const uint64_t bytes = static_cast<uint64_t>(rows) * static_cast<uint64_t>(cols);
    if (bytes > SIZE_MAX || static_cast<uint64_t>(rows) > SIZE_MAX / sizeof(unsigned char*))
        return nullptr;
    unsigned char** plane = static_cast<unsigned char**>(std::calloc(rows, sizeof(unsigned char*)));
    unsigned char* data = static_cast<unsigned char*>(std::calloc(static_cast<size_t>(bytes), 1));
    if (plane == nullptr || data == nullptr) {
        std::free(plane);
        std::free(data);
        return nullptr;
    }
    for (int r = 0; r < rows; ++r)
        plane[r] = data + static_cast<size_t>(r) * static_cast<size_t>(cols);
    return plane;
}

void free_plane(unsigned char**& plane) {
    if (plane != nullptr) {
        std::free(plane[0]);
        std::free(plane);
    }
    plane = nullptr;
}

// Only the planes of the record's type are touched: the other pointers of a
// record filled by hand may hold anything.
void free_planes(TIFF_IMG* img) {
    const char type = img->TIFF_type;
    if (type == 'g' || type == 'p' || type == '4') free_plane(img->mono);
    if (type == 'c' || type == '4') {
        for (auto& plane : img->color) free_plane(plane);
    }
    if (type == 'p') free_plane(img->cmap);
}

}  // namespace

// 'g' and 'p' records have mono (and 'p' the 256 x 3 palette cmap); 'c' has
// the R, G, B planes color[0..2]; '4' has color[0..2] for its first three
// samples and mono for the fourth. Pointers a type does not use are null.
int get_TIFF(TIFF_IMG* img, int height, int width, char type) {
    if (img == nullptr) return molo::tiff_fail("get_TIFF", "no image record to set up\n");
    if (height <= 0 || width <= 0) {
        return molo::tiff_fail("get_TIFF", "image height and width must be positive\n");
    }
    if (type != 'g' && type != 'p' && type != 'c' && type != '4') {
        return molo::tiff_fail("get_TIFF", "allocation for image of type %c is not supported",
                               type);
    }
    img->height = height;
    img->width = width;
    img->TIFF_type = type;
    img->compress_type = 'u';
    img->mono = nullptr;
    img->color[0] = img->color[1] = img->color[2] = nullptr;
    img->cmap = nullptr;

    bool ok = true;
    if (type != 'c') ok = (img->mono = allocate_plane(height, width)) != nullptr;
    if (type == 'c' || type == '4') {
        for (auto& plane : img->color)
            ok = ok && (plane = allocate_plane(height, width)) != nullptr;
    }
    if (type == 'p') ok = ok && (img->cmap = allocate_plane(256, 3)) != nullptr;
    if (!ok) {
        free_planes(img);
        return molo::tiff_fail("get_TIFF", "couldn't allocate the planes of a %d x %d image\n",
                               height, width);
    }
    return 0;
}

void free_TIFF(TIFF_IMG* img) {
    if (img == nullptr) return;
    free_planes(img);
}

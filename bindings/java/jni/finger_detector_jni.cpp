// Native side of molo.fingerdetect.FingerDetector. The methods are bound in
// JNI_OnLoad, the library's only visible symbol. The Java class checks sizes,
// orientation and which thread calls; this side checks what only it can see
// (buffer addresses and capacities), picks the plane layout and runs the
// detector. Nothing here allocates per frame: the conversion buffer is made
// on the first frame that needs it and kept with the handle.
#include <jni.h>

#include <cstdint>
#include <cstdio>
#include <new>

#include "MoloFingerDetect.h"
#include "frame_layout.h"

namespace {

struct NativeDetector {
    void* detector = nullptr;
    int width = 0;
    int height = 0;
    uint8_t* converted = nullptr;  // converted_bytes(width, height), or null until needed
};

NativeDetector* from_handle(jlong handle) {
    return reinterpret_cast<NativeDetector*>(static_cast<intptr_t>(handle));
}

void throw_new(JNIEnv* env, const char* class_name, const char* message) {
    jclass type = env->FindClass(class_name);
    if (type != nullptr) env->ThrowNew(type, message);
}

void throw_illegal_argument(JNIEnv* env, const char* message) {
    throw_new(env, "java/lang/IllegalArgumentException", message);
}

// Result, position and path of one frame in a jlong, so that a frame
// creates no Java object: bits 0-31 the detector's result, 32-47 the row,
// 48-62 the column (both below 16384), bit 63 set when the planes were
// converted rather than read in place.
jlong pack(int result, int row, int col, bool converted) {
    uint64_t bits = static_cast<uint32_t>(result);
    if (result == 1) {
        bits |= static_cast<uint64_t>(row & 0xFFFF) << 32;
        bits |= static_cast<uint64_t>(col & 0x7FFF) << 48;
    }
    if (converted) bits |= uint64_t{1} << 63;
    return static_cast<jlong>(bits);
}

// Runs one frame of checked planes; returns false with an exception pending
// when the conversion buffer cannot be had. Makes no JNI call but on that
// failure, so it may run inside a critical array region (the caller throws).
bool run_frame(NativeDetector& d, const molo_jni::Plane& y, const molo_jni::Plane& u,
               const molo_jni::Plane& v, jint orientation, jfloat gain, jint cct, jlong& packed) {
    molo_jni::DetectorInput input;
    const bool converted = !molo_jni::in_place(y, u, v, input);
    if (converted) {
        if (d.converted == nullptr) {
            d.converted =
                new (std::nothrow) uint8_t[molo_jni::converted_bytes(d.width, d.height)]();
            if (d.converted == nullptr) return false;
        }
        input = molo_jni::convert(y, u, v, d.width, d.height, d.converted);
    }
    int row = 0;
    int col = 0;
    const int result = MoloFinDetect_Execute(d.detector, const_cast<unsigned char*>(input.y),
                                             const_cast<unsigned char*>(input.vu), orientation,
                                             input.stride, input.ds_mode, gain, cct, &row, &col);
    packed = pack(result, row, col, converted);
    return true;
}

jlong JNICALL native_create(JNIEnv*, jclass, jint width, jint height) {
    auto* d = new (std::nothrow) NativeDetector;
    if (d == nullptr) return 0;
    d->detector = MoloFinDetect_Initialize(nullptr, width, height, nullptr);
    if (d->detector == nullptr) {
        delete d;
        return 0;
    }
    d->width = width;
    d->height = height;
    return static_cast<jlong>(reinterpret_cast<intptr_t>(d));
}

void JNICALL native_destroy(JNIEnv*, jclass, jlong handle) {
    NativeDetector* d = from_handle(handle);
    if (d == nullptr) return;
    MoloFinDetect_Finalize(d->detector, nullptr, 0);
    delete[] d->converted;
    delete d;
}

// The bytes [position, limit) of a direct buffer, or false with an
// IllegalArgumentException pending.
bool plane_of(JNIEnv* env, jobject buffer, jint position, jint limit, jint row_stride,
              jint pixel_stride, const char* name, molo_jni::Plane& plane) {
    char message[160];
    auto* address = static_cast<uint8_t*>(env->GetDirectBufferAddress(buffer));
    const jlong capacity = env->GetDirectBufferCapacity(buffer);
    if (address == nullptr || capacity < 0) {
        std::snprintf(message, sizeof message, "%s plane: not a direct ByteBuffer", name);
        throw_illegal_argument(env, message);
        return false;
    }
    if (position < 0 || position > limit || limit > capacity) {
        std::snprintf(message, sizeof message,
                      "%s plane: position %d and limit %d outside capacity %lld", name, position,
                      limit, static_cast<long long>(capacity));
        throw_illegal_argument(env, message);
        return false;
    }
    plane = molo_jni::Plane{address + position, limit - position, row_stride, pixel_stride};
    return true;
}

bool check_planes(JNIEnv* env, const NativeDetector& d, const molo_jni::Plane& y,
                  const molo_jni::Plane& u, const molo_jni::Plane& v) {
    char message[200];
    const int chroma_cols = (d.width + 1) / 2;
    const int chroma_rows = (d.height + 1) / 2;
    const char* fault = molo_jni::check_plane(y, "Y", d.width, d.height, message, sizeof message);
    if (fault == nullptr) {
        fault = molo_jni::check_plane(u, "U", chroma_cols, chroma_rows, message, sizeof message);
    }
    if (fault == nullptr) {
        fault = molo_jni::check_plane(v, "V", chroma_cols, chroma_rows, message, sizeof message);
    }
    if (fault != nullptr) throw_illegal_argument(env, fault);
    return fault == nullptr;
}

jlong JNICALL native_detect_planes(JNIEnv* env, jclass, jlong handle, jobject y_buffer,
                                   jint y_position, jint y_limit, jint y_row_stride,
                                   jint y_pixel_stride, jobject u_buffer, jint u_position,
                                   jint u_limit, jint u_row_stride, jint u_pixel_stride,
                                   jobject v_buffer, jint v_position, jint v_limit,
                                   jint v_row_stride, jint v_pixel_stride, jint orientation,
                                   jfloat gain, jint cct) {
    NativeDetector& d = *from_handle(handle);
    molo_jni::Plane y, u, v;
    if (!plane_of(env, y_buffer, y_position, y_limit, y_row_stride, y_pixel_stride, "Y", y) ||
        !plane_of(env, u_buffer, u_position, u_limit, u_row_stride, u_pixel_stride, "U", u) ||
        !plane_of(env, v_buffer, v_position, v_limit, v_row_stride, v_pixel_stride, "V", v) ||
        !check_planes(env, d, y, u, v)) {
        return 0;
    }
    jlong packed = 0;
    if (!run_frame(d, y, u, v, orientation, gain, cct, packed)) {
        throw_new(env, "java/lang/OutOfMemoryError", "no memory for the frame conversion buffer");
    }
    return packed;
}

// One NV21 frame in a byte array: width x height luma bytes, then rows of
// V,U pairs. The Java side has checked the array's length; the array is
// read in place (no copy, unless the width is odd and the planes need one
// common row pitch).
jlong JNICALL native_detect_nv21(JNIEnv* env, jclass, jlong handle, jbyteArray frame,
                                 jint orientation, jfloat gain, jint cct) {
    NativeDetector& d = *from_handle(handle);
    const int64_t length = env->GetArrayLength(frame);
    const int64_t luma = static_cast<int64_t>(d.width) * d.height;
    const int chroma_stride = 2 * ((d.width + 1) / 2);
    auto* bytes = static_cast<uint8_t*>(env->GetPrimitiveArrayCritical(frame, nullptr));
    if (bytes == nullptr) return 0;  // OutOfMemoryError pending
    const molo_jni::Plane y{bytes, luma, d.width, 1};
    const molo_jni::Plane v{bytes + luma, length - luma, chroma_stride, 2};
    const molo_jni::Plane u{bytes + luma + 1, length - luma - 1, chroma_stride, 2};
    char message[200];
    const int chroma_cols = (d.width + 1) / 2;
    const int chroma_rows = (d.height + 1) / 2;
    const bool fits =
        molo_jni::check_plane(y, "Y", d.width, d.height, message, sizeof message) == nullptr &&
        molo_jni::check_plane(u, "U", chroma_cols, chroma_rows, message, sizeof message) ==
            nullptr &&
        molo_jni::check_plane(v, "V", chroma_cols, chroma_rows, message, sizeof message) == nullptr;
    jlong packed = 0;
    const bool ran = fits && run_frame(d, y, u, v, orientation, gain, cct, packed);
    env->ReleasePrimitiveArrayCritical(frame, bytes, JNI_ABORT);
    if (!fits) {
        throw_illegal_argument(env, message);
    } else if (!ran) {
        throw_new(env, "java/lang/OutOfMemoryError", "no memory for the frame conversion buffer");
    }
    return packed;
}

const JNINativeMethod kMethods[] = {
    {const_cast<char*>("nativeCreate"), const_cast<char*>("(II)J"),
     reinterpret_cast<void*>(native_create)},
    {const_cast<char*>("nativeDestroy"), const_cast<char*>("(J)V"),
     reinterpret_cast<void*>(native_destroy)},
    {const_cast<char*>("nativeDetectPlanes"),
     const_cast<char*>("(JLjava/nio/ByteBuffer;IIIILjava/nio/ByteBuffer;IIII"
                       "Ljava/nio/ByteBuffer;IIIIIFI)J"),
     reinterpret_cast<void*>(native_detect_planes)},
    {const_cast<char*>("nativeDetectNv21"), const_cast<char*>("(J[BIFI)J"),
     reinterpret_cast<void*>(native_detect_nv21)},
};

}  // namespace

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void*) {
    JNIEnv* env = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&env), JNI_VERSION_1_6) != JNI_OK) return JNI_ERR;
    jclass type = env->FindClass("molo/fingerdetect/FingerDetector");
    if (type == nullptr) return JNI_ERR;
    if (env->RegisterNatives(type, kMethods, sizeof kMethods / sizeof kMethods[0]) != JNI_OK) {
        return JNI_ERR;
    }
    return JNI_VERSION_1_6;
}

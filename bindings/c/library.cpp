#include <kx/kx.h>

uint32_t kx_version() {
    return KX_VERSION_MAJOR << 16U | KX_VERSION_MINOR << 8U | KX_VERSION_PATCH;
}

const char* kx_status_text(kx_status status) {
    switch (status) {
        case KX_OK:
            return "success";
        case KX_UNKNOWN_TYPE:
            return "unknown type";
        case KX_UNKNOWN_FIELD:
            return "unknown field";
        case KX_NOT_THERE:
            return "not there";
        case KX_WRONG_TYPE:
            return "the field holds another type of value";
        case KX_OUT_OF_RANGE:
            return "number out of range";
        case KX_BAD_RECORD:
            return "no identifier can be written from this record";
        case KX_NO_FACTS:
            return "the identifier depends on a fact that is not known";
        case KX_NO_MEMORY:
            return "no memory";
        case KX_BAD_ARGUMENT:
            return "bad argument";
        case KX_FAILED:
            return "failed";
        default:
            return "unknown status";
    }
}

#include "toolbox/result_codes.h"

#include <cerrno>

namespace corvane {

OSErr resultOf(int error) {
    switch (error) {
    case 0:
        return noErr;
    case ENOSPC:
    case EDQUOT:
    case EFBIG: // past the process's file size limit
        return dskFulErr;
    case ENODEV:
    case ENXIO:
        return nsvErr;
    case EILSEQ:
    case ENAMETOOLONG:
        return bdNamErr;
    case EMFILE:
    case ENFILE:
        return tmfoErr;
    case ENOENT:
    case ELOOP:
        return fnfErr;
    case EPERM: // immutable or append-only
        return fLckdErr;
    case EROFS:
        return vLckdErr;
    case EBUSY:
        return fBsyErr;
    case EEXIST:
        return dupFNErr;
    case ETXTBSY:
    case EAGAIN: // a lock that another process holds
        return opWrErr;
    case EINVAL:
        return paramErr;
    case EBADF:
        return rfNumErr;
    case EACCES:
        return permErr;
    case ENOMEM:
        return memFullErr;
    case ENOTDIR:
        return dirNFErr;
    case EISDIR:
        return notAFileErr;
    case EOVERFLOW:
        return fileBoundsErr;
    default:
        return ioErr;
    }
}

OSErr lastResult() {
    return resultOf(errno);
}

} // namespace corvane

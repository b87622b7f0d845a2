// The one way to trace and to record a fault: with the base name of the source file and the line
// of the call site.
#ifndef WAP_COMMON_REPORT_H
#define WAP_COMMON_REPORT_H

#include <stdint.h>
#include <vt_ssp_basic.h>

namespace wap {

/// Where something happened.
struct SourceSpot {
    const char *pcFile;  ///< base name only: what ships must not show where it was built
    uint32_t uiLine;
};

/// Records a fault with up to four numbers. Never hand a secret to it.
inline void RecordFault(SourceSpot stSpot, uint32_t uiStatus, uint32_t uiArg1, uint32_t uiArg2 = 0,
                        uint32_t uiArg3 = 0, uint32_t uiArg4 = 0) {
    VT_PROC_DBG_LastWord(stSpot.pcFile, stSpot.uiLine, uiStatus, uiArg1, uiArg2, uiArg3, uiArg4);
}

/// Records a fault by its code alone.
inline void RecordFault(SourceSpot stSpot, uint32_t uiStatus) {
    VT_PROC_DBG_LastWord_1(stSpot.pcFile, stSpot.uiLine, uiStatus);
}

/// Records a code unless it is 0, with up to four numbers, and passes it on.
template <class... Numbers>
inline uint32_t Recorded(SourceSpot stSpot, uint32_t uiResult, Numbers... uiNumbers) {
    if (uiResult != 0) {
        RecordFault(stSpot, uiResult, uiNumbers...);
    }
    return uiResult;
}

/// A pointer as the fault log's 32-bit number: its low half on a 64-bit host.
inline uint32_t AsNumber(const void *pvPointer) {
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(pvPointer));
}

}  // namespace wap

#define WAP_SPOT (::wap::SourceSpot{__FILE_NAME__, static_cast<uint32_t>(__LINE__)})

/// Writes a trace line. A macro, so that the compiler checks the format against its arguments.
#define WAP_TRACE(uiModule, ...) \
    VT_PROC_DBG_TraceS((uiModule), __FILE_NAME__, static_cast<uint32_t>(__LINE__), 0, __VA_ARGS__)

/// The trace that every Java entry begins with.
#define WAP_TRACE_ENTRY() WAP_TRACE(::wap::kTraceEntries, "\r\n %s called \r\n", __func__)

#endif

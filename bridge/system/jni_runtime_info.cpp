#include "system/jni_runtime_info.h"

#include <pthread.h>
#include <string.h>
#include <vt_ssp_basic.h>

#include "common/fields.h"
#include "common/owners.h"
#include "common/report.h"

using namespace wap;

namespace {

constexpr char kOutputPath[] = "/var/osgi/java_version.pipe";

/// The gateway's own folders. Two blanks come before the redirection, one of them the command's.
constexpr char kCommandFormat[] =
    "export LD_LIBRARY_PATH=/lib:/lib/omci_module:/lib/oam_module:/usr/osgi/lib:"
    "/var/osgi_app/osgi/lib:/usr/osgi/lib/aarch32:/var/osgi_app/osgi/lib/aarch32:"
    "/usr/osgi/lib/aarch32/jli:/var/osgi_app/osgi/lib/aarch32/jli:/usr/osgi/lib/aarch32/server:"
    "/var/osgi_app/osgi/lib/aarch32/server:/var/felix-temp/dlna/dlna/lib; %s 2> %s";
constexpr char kVersionCommand[] = "java -version ";
constexpr uint32_t kCommandCap = 512;

/// Lines are read in parts of this size at most, the zero included; each part counts as a line.
constexpr uint32_t kLineCap = 128;

/// Every call writes the same file, so within this process they take turns.
pthread_mutex_t g_stOutputLock = PTHREAD_MUTEX_INITIALIZER;

/// A file of the platform's.
class PlatformFile {
  public:
    /// Adopts; null is allowed.
    explicit PlatformFile(void *pvFile) : m_pvFile(pvFile) {}
    PlatformFile(const PlatformFile &) = delete;
    PlatformFile &operator=(const PlatformFile &) = delete;
    ~PlatformFile() {
        if (m_pvFile != nullptr) {
            (void)VT_OS_Fclose(m_pvFile);
        }
    }
    void *Lend() const { return m_pvFile; }
    explicit operator bool() const { return m_pvFile != nullptr; }

  private:
    void *m_pvFile;
};

/// Takes the part of a text up to pcEnd into a field; one that does not fit is not taken.
template <size_t kSize>
bool TakePiece(char (&acField)[kSize], const char *pcPiece, const char *pcEnd) {
    return VT_OS_StrNCpy_S(acField, kSize, pcPiece, static_cast<uint32_t>(pcEnd - pcPiece)) == 0;
}

/// The version stands between the first two quotes of its line.
void TakeVersion(const char *pcLine, RuntimeNames &stNames) {
    const char *pcFirst = strchr(pcLine, '"');
    const char *pcSecond = pcFirst == nullptr ? nullptr : strchr(pcFirst + 1, '"');
    if (pcSecond != nullptr && TakePiece(stNames.acVersion, pcFirst + 1, pcSecond)) {
        WAP_TRACE(kTraceEntries, "VT_JNI_GetJVMInfo acVersion[%s] \r\n", stNames.acVersion);
    }
}

/// The name ends at the parenthesis; the blank before it belongs to it, deliberately.
void TakeName(const char *pcLine, RuntimeNames &stNames) {
    const char *pcEnd = strchr(pcLine, '(');
    if (pcEnd != nullptr && TakePiece(stNames.acName, pcLine, pcEnd)) {
        WAP_TRACE(kTraceEntries, "VT_JNI_GetJVMInfo acName[%s] \r\n", stNames.acName);
    }
}

void TakeLine(const char *pcLine, RuntimeNames &stNames) {
    if (VT_OS_StrStr(pcLine, "version") != nullptr) {
        TakeVersion(pcLine, stNames);
    } else if (VT_OS_StrStr(pcLine, "VM") != nullptr) {
        TakeName(pcLine, stNames);
    } else if (VT_OS_StrStr(pcLine, "OpenJDK") != nullptr) {
        // Deliberately this vendor for every such runtime, and none for the others.
        PutField(stNames.acVendor, "Oracle");
    }
}

/// Reads the runtime's words; one thread at a time.
bool ReadNamesLocked(RuntimeNames &stNames) {
    const PlatformFile stFile(VT_JNI_GetPipeFileHandle(kOutputPath));
    if (!stFile) {
        return false;
    }
    char acLine[kLineCap] = {};
    while (VT_OS_Fgets(acLine, sizeof(acLine), stFile.Lend()) != nullptr) {
        TakeLine(acLine, stNames);
    }
    return true;
}

/// Writes the object of the names into the caller's buffer.
uint32_t RenderNames(SourceSpot stSpot, const RuntimeNames &stNames, int32_t iResult, char *pcBuf,
                     uint32_t uiCap) {
    json_object *pstObj = nullptr;
    const uint32_t uiResult = VT_OSGI_JNI_BuildJsonObj(&stNames, &pstObj, iResult);
    if (uiResult != 0) {
        return Recorded(stSpot, uiResult);
    }
    const JsonValue stObj(pstObj);
    const PrintedText stText = PrintInto(stObj.Lend(), pcBuf, uiCap);
    if (stText.pcText == nullptr) {
        return Recorded(stSpot, 1);
    }
    if (!stText.bCopied) {
        return Recorded(stSpot, kErrTooLong, uiCap, stText.uiLength);
    }
    VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0, "pcOutBuffer:%s\r\n", pcBuf);
    return 0;
}

}  // namespace

void *VT_JNI_GetPipeFileHandle(const char *pcPath) {
    if (pcPath == nullptr) {
        return nullptr;
    }
    char acCommand[kCommandCap] = {};
    // A command that was cut would write somewhere else, so it is not run.
    const bool bWhole = VT_OS_Snprintf_S(acCommand, sizeof(acCommand), sizeof(acCommand) - 1,
                                         kCommandFormat, kVersionCommand, pcPath) >= 0;
    (void)Recorded(WAP_SPOT, bWhole ? VT_OS_ExecShellCmdEx(acCommand) : kErrTooLong);
    return VT_OS_Fopen(pcPath, "r");
}

uint32_t VT_JNI_GetJvmDataByCmd(RuntimeNames *pstNames) {
    if (pstNames == nullptr) {
        return Recorded(WAP_SPOT, 1);
    }
    *pstNames = {};
    (void)pthread_mutex_lock(&g_stOutputLock);
    const bool bRead = ReadNamesLocked(*pstNames);
    (void)pthread_mutex_unlock(&g_stOutputLock);
    return Recorded(WAP_SPOT, bRead ? 0 : 1);
}

uint32_t VT_JNI_GetJVMInfo(char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr) {
        return Recorded(WAP_SPOT, 1);
    }
    RuntimeNames stNames = {};
    // Java gets an object all the same: its result tells that the names are missing.
    const uint32_t uiResult = Recorded(WAP_SPOT, VT_JNI_GetJvmDataByCmd(&stNames));
    return RenderNames(WAP_SPOT, stNames, uiResult == 0 ? 0 : 1, pcBuf, uiCap);
}

uint32_t VT_JNI_GetOSGiInfo(char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr) {
        return Recorded(WAP_SPOT, 1);
    }
    constexpr RuntimeNames kFramework = {"Felix OSGi", "4.4.0", "Apache Software Foundation"};
    return RenderNames(WAP_SPOT, kFramework, 0, pcBuf, uiCap);
}

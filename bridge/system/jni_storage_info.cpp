#include "system/jni_storage_info.h"

#include <sys/vfs.h>
#include <vt_ssp_basic.h>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"

using namespace wap;

namespace {

// The build sees to it: with narrower ones a volume of a few terabytes can't be measured.
static_assert(sizeof(statfs::f_blocks) == 8, "the system's wide file system figures");

uint64_t Bounded(uint64_t ullBytes) {
    constexpr uint64_t kMost = INT64_MAX;
    return ullBytes < kMost ? ullBytes : kMost;
}

uint64_t BytesOf(uint64_t ullBlocks, uint64_t ullBlockSize) {
    uint64_t ullBytes = 0;
    return __builtin_mul_overflow(ullBlocks, ullBlockSize, &ullBytes) ? Bounded(UINT64_MAX)
                                                                      : Bounded(ullBytes);
}

void Give(uint64_t *pullTo, uint64_t ullValue) {
    if (pullTo != nullptr) {
        *pullTo = ullValue;
    }
}

/// A JSON number as an item, which takes it over.
JsonItem BytesItem(const char *pcKey, uint64_t ullBytes) {
    json_object *pstBytes = json_object_new_int64(static_cast<int64_t>(Bounded(ullBytes)));
    return {pcKey, reinterpret_cast<uintptr_t>(pstBytes), kItemObject, kEmptyAsText};
}

/// Measures a volume and appends it. One that can't be appended is left out of the list, and the
/// others stay.
void AppendVolume(json_object *pstList, const DiscVolume &stVolume, uint32_t uiIndex) {
    const FieldText stPath(stVolume.acMountPath);
    uint64_t ullTotal = 0;
    uint64_t ullUsed = 0;
    uint64_t ullFree = 0;
    VT_KAVO_JNI_GetStorage(stPath.Lend(), &ullTotal, &ullUsed, &ullFree);
    WAP_TRACE(kTraceEntries, "ulTotal:%llu ulUsed:%llu ulFree:%llu\r\n",
              static_cast<unsigned long long>(ullTotal), static_cast<unsigned long long>(ullUsed),
              static_cast<unsigned long long>(ullFree));
    json_object *pstItem = nullptr;
    uint32_t uiResult = VT_KAVO_JNI_BuildJsonItem(stPath.Lend(), ullTotal, ullFree, &pstItem);
    if (Recorded(WAP_SPOT, uiResult, uiIndex) != 0) {
        return;
    }
    JsonValue stItem(pstItem);
    uiResult = JNI_JSON_ObjArrayAdd(pstList, stItem.Lend());
    if (Recorded(WAP_SPOT, uiResult, uiIndex) == 0) {
        (void)stItem.Release();
    }
}

}  // namespace

uint32_t VT_KAVO_JNI_GetStorageInfo(char *pcBuf, uint32_t uiSize) {
    if (pcBuf == nullptr) {
        return Recorded(WAP_SPOT, kJsonErrNull);
    }
    // Too long for the stack of a small thread.
    PlatformBlock stBlock;
    if (!stBlock.Make(sizeof(DiscInfoReply), WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrNoMemory);
    }
    auto *pstReply = static_cast<DiscInfoReply *>(stBlock.Lend());
    const uint32_t uiResult = VT_KAVO_JNI_GetDiscInfo(pstReply);
    if (uiResult != 0) {
        return Recorded(WAP_SPOT, uiResult);
    }
    const JsonValue stRoot(JNI_JSON_ObjNewObj());
    JsonValue stList(JNI_JSON_ObjNewArray());
    if (!stRoot || !stList) {
        return Recorded(WAP_SPOT, kJsonErrNull);
    }
    for (uint32_t i = 0; i < pstReply->uiCount && i < kDiscVolumesMax; ++i) {
        AppendVolume(stList.Lend(), pstReply->astVolumes[i], i);
    }
    if (JNI_JSON_ObjAddKeyValueInt(stRoot.Lend(), "Result", 0) != 0 ||
        JNI_JSON_ObjAddKeyValue(stRoot.Lend(), "List", stList.Lend()) != 0) {
        return Recorded(WAP_SPOT, kErrFailed);
    }
    (void)stList.Release();
    const PrintedText stText = PrintInto(stRoot.Lend(), pcBuf, uiSize);
    if (stText.pcText == nullptr) {
        return Recorded(WAP_SPOT, kErrFailed);
    }
    WAP_TRACE(kTraceEntries, "pcJsonStr:%s\r\n", stText.pcText);
    return stText.bCopied ? 0 : Recorded(WAP_SPOT, kErrTooLong, stText.uiLength, uiSize);
}

uint32_t VT_KAVO_JNI_GetDiscInfo(DiscInfoReply *pstReply) {
    if (pstReply == nullptr) {
        RecordFault(WAP_SPOT, kErrNullArgument);
        return 1;
    }
    return Recorded(WAP_SPOT,
                    VT_KAVO_USB_JNI_RpcCall(kRpcGetDiscInfo, &kDiscInfoReq, sizeof(kDiscInfoReq),
                                            pstReply, sizeof(*pstReply)));
}

void VT_KAVO_JNI_GetStorage(const char *pcPath, uint64_t *pullTotal, uint64_t *pullUsed,
                            uint64_t *pullFree) {
    struct statfs stVolume = {};
    if (pcPath != nullptr) {
        // The result says no more than zeros do: a volume that is gone by now has no bytes.
        (void)statfs(pcPath, &stVolume);
    }
    const uint64_t ullBlockSize = static_cast<uint64_t>(stVolume.f_bsize);
    const uint64_t ullBlocks = stVolume.f_blocks;
    const uint64_t ullFreeBlocks = stVolume.f_bfree;
    Give(pullTotal, BytesOf(ullBlocks, ullBlockSize));
    Give(pullUsed,
         BytesOf(ullBlocks > ullFreeBlocks ? ullBlocks - ullFreeBlocks : 0, ullBlockSize));
    Give(pullFree, BytesOf(ullFreeBlocks, ullBlockSize));
}

uint32_t VT_KAVO_JNI_BuildJsonItem(const char *pcPath, uint64_t ullTotal, uint64_t ullFree,
                                   json_object **ppstItem) {
    if (ppstItem == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    JsonValue stItem(JNI_JSON_ObjNewObj());
    if (!stItem) {
        return Recorded(WAP_SPOT, kJsonErrObject);
    }
    const JsonItem astItems[] = {
        {"storagePath", reinterpret_cast<uintptr_t>(pcPath), kItemText, kEmptyAsText},
        BytesItem("totalStorage", ullTotal),
        BytesItem("validStorage", ullFree),
    };
    const uint32_t uiFailed = AddItems(stItem.Lend(), astItems, 3);
    if (uiFailed != 0) {
        return Recorded(WAP_SPOT, kErrFailed, uiFailed);
    }
    *ppstItem = stItem.Release();
    return 0;
}

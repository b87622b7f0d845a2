#include "plain_list.h"

#include "com_veltra_domoline_bench_RuleList.h"

#include "plain_jni.h"

enum { kAskRules = 0x48304197, kRecord = 342 };
enum { kNew = JSON_C_OBJECT_ADD_KEY_IS_NEW | JSON_C_OBJECT_KEY_IS_CONSTANT };

static void AddText(json_object *pstRule, const char *pcKey, const char *pcField, size_t uiSize) {
    json_object *pstText = json_object_new_string_len(pcField, (int)strnlen(pcField, uiSize));
    json_object_object_add_ex(pstRule, pcKey, pstText, kNew);
}

json_object *BENCH_MakeRuleList(const char *pcTable, uint32_t uiRules) {
    json_object *pstList = json_object_new_array();
    for (uint32_t i = 0; i < uiRules; ++i) {
        const char *pcRule = pcTable + (size_t)i * kRecord;
        json_object *pstRule = json_object_new_object();
        AddText(pstRule, "RemoteAddress", pcRule, 256);
        AddText(pstRule, "RemotePort", pcRule + 256, 12);
        AddText(pstRule, "Protocol", pcRule + 268, 4);
        AddText(pstRule, "HostMAC", pcRule + 272, 18);
        AddText(pstRule, "ForwardToIP", pcRule + 290, 40);
        json_object_object_add_ex(pstRule, "ForwardToPort",
                                  json_object_new_int((int)strtoul(pcRule + 330, NULL, 10)), kNew);
        json_object_array_add(pstList, pstRule);
    }
    json_object *pstAnswer = json_object_new_object();
    json_object_object_add_ex(pstAnswer, "Result", json_object_new_int(0), kNew);
    json_object_object_add_ex(pstAnswer, "List", pstList, kNew);
    return pstAnswer;
}

JNIEXPORT jstring JNICALL Java_com_veltra_domoline_bench_RuleList_plain(JNIEnv *pstEnv,
                                                                        jclass jClass) {
    struct {
        uint32_t uiCount;
        VDataDesc stDesc;
    } stReply = {0, {0, 0, 0}};
    (void)jClass;
    if (PlainAsk("gulm", 351, kAskRules, 0, &stReply, sizeof(stReply)) != 0) {
        return NULL;
    }
    char *pcTable = PlainFetch(&stReply.stDesc);
    if (pcTable == NULL) {
        return NULL;
    }
    json_object *pstAnswer = BENCH_MakeRuleList(pcTable, stReply.uiCount);
    size_t uiLength = 0;
    const char *pcText =
        json_object_to_json_string_length(pstAnswer, JSON_C_TO_STRING_SPACED, &uiLength);
    jstring jText = PlainToJava(pstEnv, pcText, uiLength);
    json_object_put(pstAnswer);
    free(pcTable);
    return jText;
}

/* One request through the platform, for C and C++. */
#ifndef WAP_BENCH_PEERS_PLAIN_ASK_H
#define WAP_BENCH_PEERS_PLAIN_ASK_H

#include <stdint.h>
#include <string.h>
#include <vt_ssp_basic.h>

enum { kAskUpTime = 0x47209036, kAskMac = 0x47209032 };
enum { kAskWanStatus = 0x4710308D, kAskHosts = 0x471030B1 };
enum { kMacSize = 18, kWanStatusSize = 512 };

/* One request with a word, or none. */
static inline uint32_t PlainAsk(const char *pcReceiver, uint32_t uiSender, uint32_t uiRpcId,
                                uint32_t uiWord, void *pvReply, uint32_t uiReplyCap) {
    RpcMsgHead stHead;
    memset(&stHead, 0, sizeof(stHead));
    strcpy(stHead.acSndApp, "jamvm");
    strncpy(stHead.acRcvApp, pcReceiver, sizeof(stHead.acRcvApp) - 1);
    stHead.uiSndMid = uiSender;
    return VT_MSG_RpcCall(&stHead, uiRpcId, 0, &uiWord, sizeof(uiWord), pvReply, uiReplyCap, 5000);
}

#endif

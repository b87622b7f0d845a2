// One process of the gateway: serves its RPCs until it is told to end.
#ifndef WAP_GATEWAY_FRAMEWORK_PROCESS_H
#define WAP_GATEWAY_FRAMEWORK_PROCESS_H

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "framework/fault_table.h"
#include "framework/home.h"
#include "framework/rpc_table.h"
#include "framework/tap.h"

namespace wap::gateway {

/// Ties a process's home, RPCs and faults together.
class Process {
  public:
    /// Takes the process's place in the runtime directory and loads its part of the home.
    /// Throws GatewayError.
    Process(const RuntimeDir &stDir, const ProcessInfo &stInfo, RpcTable stTable);

    /// Serves until SIGTERM or SIGINT, which must be blocked in every thread. Throws GatewayError
    /// when the message service can't be used.
    void Run();

  private:
    /// For the message service, which hands no context on: there is one process in a program.
    static inline Process *s_pstReceiver = nullptr;
    static int32_t OnMessage(void *pvMessage);
    static uint32_t OnCall(void *pvContext, const VtHostCall *pstCall, uint32_t *puiRspLen);
    static void OnLostReply(void *pvContext);
    /// Serves a call; a failure of the handler's, of whatever kind, is a status.
    uint32_t Answer(const VtHostCall &stCall, TappedCall &stTapped, uint32_t &uiReplyLength);
    uint32_t Serve(const VtHostCall &stCall, TappedCall &stTapped, uint32_t &uiReplyLength);
    uint32_t ServeRpc(const VtHostCall &stCall, uint32_t &uiReplyLength);
    uint32_t ServeWithFault(const Fault &stFault, const VtHostCall &stCall,
                            uint32_t &uiReplyLength);
    uint32_t ServeControl(const VtHostCall &stCall, uint32_t &uiReplyLength);
    JsonValue AnswerControl(uint32_t uiRpcId, json_object *pstRequest);
    JsonValue ListFaults() const;
    /// Waits, but not beyond the end of serving.
    void Delay(uint32_t uiMilliseconds);
    void EndDelays();

    const ProcessInfo &m_stInfo;
    /// Never closed: whoever waits for the lock waits for the end of the process, which is not yet
    /// here when this object goes.
    const int m_iLock;
    Home m_stHome;
    RpcTable m_stTable;
    FaultTable m_stFaults;
    Tap m_stTap;
    std::unique_ptr<ProcessState> m_pstState;
    HandlerContext m_stContext;
    uint64_t m_uiStart;
    std::atomic<uint64_t> m_uiServed{0};
    std::atomic<int64_t> m_iBusy{0};  ///< of these, under way

    std::mutex m_stEndMutex;
    std::condition_variable m_stEndSignal;
    bool m_bEnding = false;
};

}  // namespace wap::gateway

#endif

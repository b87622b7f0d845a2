// The queue of asynchronous messages to this process, and the procedures that receive them.
#ifndef WAP_HOST_MSG_QUEUE_H
#define WAP_HOST_MSG_QUEUE_H

#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <mutex>

#include "msg_wire.h"

namespace wap::host {

/** Bounded by number and by bytes. All functions may be called on any thread. */
class MsgQueue {
  public:
    using Procedure = int32_t (*)(void *);

    /** Begins to take messages, uiCapacity of them at most; 0 chooses a default. */
    void Open(uint32_t uiWanted);

    /** Drops what is queued and wakes all who wait. */
    void Close();

    /** Adds a message. @return 0, or a code when the queue is full or closed */
    uint32_t Push(const RpcMsgHead &stHead, uint32_t uiMsgType, const void *pvData, uint32_t uiLen);

    /** Installs a module's procedure. @return 0, or a code when there are too many */
    uint32_t SetProcedure(uint32_t uiMid, Procedure pfnProc);

    /** Waits for a message and hands it over. @return a status */
    uint32_t Dispatch();

    /** For fork: keeps others out of the queue until Unlock. */
    void Lock() { stMutex.lock(); }
    void Unlock() { stMutex.unlock(); }

    /** Takes over the procedures of another queue, which nobody uses any more. */
    void AdoptProcedures(MsgQueue &stOther) { mapProcedures = std::move(stOther.mapProcedures); }

  private:
    struct FreeBlock {
        void operator()(VtHostMsg *pstMsg) const { free(pstMsg); }
    };
    using Message = std::unique_ptr<VtHostMsg, FreeBlock>;

    std::mutex stMutex;
    std::condition_variable stChanged;
    bool bOpen = false;
    uint32_t uiCapacity = 0;
    size_t uiBytes = 0;
    std::deque<Message> stMessages;
    std::map<uint32_t, Procedure> mapProcedures;
};

}  // namespace wap::host
#endif

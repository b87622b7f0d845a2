// The processes at the other end, which live as long as the program that measures.
#ifndef WAP_BENCH_COMMON_CHILDREN_H
#define WAP_BENCH_COMMON_CHILDREN_H

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace wap::bench {

class Children {
  public:
    Children() = default;
    ~Children();
    Children(const Children &) = delete;
    Children &operator=(const Children &) = delete;

    /**
     * Starts a process and waits until it is ready. It goes when this one does. To be called before
     * there are threads.
     * @param pcName   for messages
     * @param fnServe  runs in the process and does not return; writes to the descriptor that it is
     *                 given as soon as it can be asked
     * @return the process's id; throws std::runtime_error when it ends before it is ready
     */
    pid_t Start(const char *pcName, const std::function<void(int iReady)> &fnServe);

    /// Ends all of them.
    void End();

  private:
    std::vector<pid_t> m_aiProcesses;
};

/// Says that a process is ready.
void TellReady(int iReady);
/// What a process does when all is done by threads of it.
[[noreturn]] void WaitForTheEnd();

/// A folder that goes at the end; the host platform finds it in VT_RUNTIME_DIR.
class RuntimeFolder {
  public:
    RuntimeFolder();
    ~RuntimeFolder();
    RuntimeFolder(const RuntimeFolder &) = delete;
    RuntimeFolder &operator=(const RuntimeFolder &) = delete;

    std::string PathOf(const char *pcName) const { return m_acPath + "/" + pcName; }

  private:
    std::string m_acPath;
};

}  // namespace wap::bench

#endif

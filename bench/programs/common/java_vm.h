// The Java virtual machine in a program that measures, and its class Caller.
#ifndef WAP_BENCH_COMMON_JAVA_VM_H
#define WAP_BENCH_COMMON_JAVA_VM_H

#include <jni.h>

#include <cstdint>
#include <span>
#include <string>

namespace wap::bench {

/// One for each program, made and used by one thread. What Java throws becomes std::runtime_error,
/// with its stack on standard error.
class JavaVm {
  public:
    JavaVm();
    JavaVm(const JavaVm &) = delete;
    JavaVm &operator=(const JavaVm &) = delete;

    /// As Caller.prepare. The call stays for good.
    jobject Prepare(const std::string &acPeer, const std::string &acWork,
                    const std::string &acAddress);
    /// Makes one call.
    std::string Answer(jobject jCall);
    /// Makes as many calls as there are places, and puts down their nanoseconds.
    void Time(jobject jCall, std::span<int64_t> allNanoseconds);
    /// As Caller.timeThreads.
    int64_t TimeThreads(jobject jCall, int iThreads, int iCalls);

  private:
    jmethodID Method(const char *pcName, const char *pcSignature);
    /// Throws when Java has.
    void Check(const char *pcWhat);

    JNIEnv *m_pstEnv = nullptr;
    jclass m_jCaller = nullptr;
};

}  // namespace wap::bench

#endif

#include "common/java_vm.h"

#include <array>
#include <stdexcept>

// Where the build has put things; see the CMake file.
#ifndef WAP_BENCH_CLASSPATH
#error "WAP_BENCH_CLASSPATH is not defined"
#endif

namespace wap::bench {

namespace {

#define WAP_BENCH_PACKAGE "com/veltra/domoline/bench/"
constexpr char kCall[] = "L" WAP_BENCH_PACKAGE "Call;";
constexpr char kText[] = "Ljava/lang/String;";

std::string Signature(std::initializer_list<const char *> apcArguments, const char *pcResult) {
    std::string acSignature = "(";
    for (const char *pcArgument : apcArguments) {
        acSignature += pcArgument;
    }
    return acSignature + ")" + pcResult;
}

}  // namespace

JavaVm::JavaVm() {
    std::array<std::string, 5> acOptions = {
        "-Djava.class.path=" WAP_BENCH_CLASSPATH,
        "-Djava.library.path=" WAP_BENCH_LIBRARIES,
        // What a machine of one processor gets anyway; for those with more as well.
        "-XX:+UseSerialGC",
        "-Xms64m",
        "-Xmx256m",
    };
    std::array<JavaVMOption, 5> astOptions{};
    for (size_t i = 0; i < acOptions.size(); ++i) {
        astOptions[i].optionString = acOptions[i].data();
    }
    JavaVMInitArgs stArguments{};
    stArguments.version = JNI_VERSION_10;
    stArguments.nOptions = static_cast<jint>(astOptions.size());
    stArguments.options = astOptions.data();
    JavaVM *pstVm = nullptr;
    if (JNI_CreateJavaVM(&pstVm, reinterpret_cast<void **>(&m_pstEnv), &stArguments) != JNI_OK) {
        throw std::runtime_error("the Java virtual machine does not start; it says why above");
    }
    m_jCaller = m_pstEnv->FindClass(WAP_BENCH_PACKAGE "Caller");
    Check("finding the class Caller");
}

jmethodID JavaVm::Method(const char *pcName, const char *pcSignature) {
    const jmethodID jMethod = m_pstEnv->GetStaticMethodID(m_jCaller, pcName, pcSignature);
    Check(pcName);
    return jMethod;
}

void JavaVm::Check(const char *pcWhat) {
    if (m_pstEnv->ExceptionCheck() != JNI_FALSE) {
        m_pstEnv->ExceptionDescribe();
        m_pstEnv->ExceptionClear();
        throw std::runtime_error(std::string("Java failed: ") + pcWhat);
    }
}

jobject JavaVm::Prepare(const std::string &acPeer, const std::string &acWork,
                        const std::string &acAddress) {
    const jmethodID jMethod = Method("prepare", Signature({kText, kText, kText}, kCall).c_str());
    const jobject jCall = m_pstEnv->CallStaticObjectMethod(
        m_jCaller, jMethod, m_pstEnv->NewStringUTF(acPeer.c_str()),
        m_pstEnv->NewStringUTF(acWork.c_str()), m_pstEnv->NewStringUTF(acAddress.c_str()));
    Check(("preparing " + acPeer).c_str());
    return m_pstEnv->NewGlobalRef(jCall);
}

std::string JavaVm::Answer(jobject jCall) {
    const jmethodID jMethod = Method("answer", Signature({kCall}, kText).c_str());
    const auto jText =
        static_cast<jstring>(m_pstEnv->CallStaticObjectMethod(m_jCaller, jMethod, jCall));
    Check("a call");
    const char *pcText = m_pstEnv->GetStringUTFChars(jText, nullptr);
    std::string acText = pcText == nullptr ? "" : pcText;
    m_pstEnv->ReleaseStringUTFChars(jText, pcText);
    m_pstEnv->DeleteLocalRef(jText);
    return acText;
}

void JavaVm::Time(jobject jCall, std::span<int64_t> allNanoseconds) {
    static_assert(sizeof(jlong) == sizeof(int64_t));
    const jmethodID jMethod = Method("time", Signature({kCall, "[J"}, "V").c_str());
    const auto iCount = static_cast<jsize>(allNanoseconds.size());
    const jlongArray jTimes = m_pstEnv->NewLongArray(iCount);
    Check("making an array");
    m_pstEnv->CallStaticVoidMethod(m_jCaller, jMethod, jCall, jTimes);
    Check("a call");
    m_pstEnv->GetLongArrayRegion(jTimes, 0, iCount,
                                 reinterpret_cast<jlong *>(allNanoseconds.data()));
    m_pstEnv->DeleteLocalRef(jTimes);
}

int64_t JavaVm::TimeThreads(jobject jCall, int iThreads, int iCalls) {
    const jmethodID jMethod = Method("timeThreads", Signature({kCall, "I", "I"}, "J").c_str());
    const int64_t llTime =
        m_pstEnv->CallStaticLongMethod(m_jCaller, jMethod, jCall, iThreads, iCalls);
    Check("a call");
    return llTime;
}

}  // namespace wap::bench

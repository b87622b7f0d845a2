#include "peers/dbus.h"

#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include <stdexcept>

#ifndef WAP_BENCH_DBUS_CONFIG
#error "WAP_BENCH_DBUS_CONFIG is not defined"
#endif

namespace wap::bench {

namespace {

constexpr char kService[] = "com.veltra.domoline.bench";
constexpr char kObject[] = "/gateway";
// As the Java library makes it of the interface's name.
constexpr char kInterface[] = "com.veltra.domoline.bench.Gateway";

struct Method {
    const char *pcName;
    const char *pcArguments;
    const char *pcResult;
};
/// By Work.
constexpr Method kMethods[] = {
    {"UpTime", "", "u"}, {"Mac", "", "s"}, {"WanStatus", "u", "s"}, {"Hosts", "", "s"}};

void Check(int iResult, const char *pcWhat) {
    if (iResult < 0) {
        throw std::runtime_error(std::string("cannot ") + pcWhat + ": " + strerror(-iResult));
    }
}

sd_bus *Connect(const std::string &acAddress) {
    sd_bus *pstBus = nullptr;
    Check(sd_bus_new(&pstBus), "make a connection to the bus");
    Check(sd_bus_set_address(pstBus, acAddress.c_str()), "use the bus's address");
    Check(sd_bus_set_bus_client(pstBus, 1), "be a client of the bus");
    Check(sd_bus_start(pstBus), "connect to the bus");
    return pstBus;
}

int ReplyText(sd_bus_message *pstCall, const char *pcText) {
    return sd_bus_reply_method_return(pstCall, "s", pcText);
}
int OnUpTime(sd_bus_message *pstCall, void *, sd_bus_error *) {
    return sd_bus_reply_method_return(pstCall, "u", kUpTime);
}
int OnMac(sd_bus_message *pstCall, void *, sd_bus_error *) {
    return ReplyText(pstCall, kMac);
}
int OnWanStatus(sd_bus_message *pstCall, void *, sd_bus_error *) {
    uint32_t uiWan = 0;
    const int iResult = sd_bus_message_read(pstCall, "u", &uiWan);
    return iResult < 0 ? iResult : ReplyText(pstCall, kWanStatus);
}
int OnHosts(sd_bus_message *pstCall, void *, sd_bus_error *) {
    return ReplyText(pstCall, HostsText().c_str());
}

const sd_bus_vtable kTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("UpTime", "", "u", OnUpTime, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Mac", "", "s", OnMac, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("WanStatus", "u", "s", OnWanStatus, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Hosts", "", "s", OnHosts, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

[[noreturn]] void ServeBus(const std::string &acAddress, int iReady) {
    sd_bus *pstBus = Connect(acAddress);
    Check(sd_bus_add_object_vtable(pstBus, nullptr, kObject, kInterface, kTable, nullptr),
          "serve an object");
    Check(sd_bus_request_name(pstBus, kService, 0), "take a name on the bus");
    TellReady(iReady);
    for (;;) {
        const int iDone = sd_bus_process(pstBus, nullptr);
        Check(iDone, "serve the bus");
        if (iDone == 0) {
            Check(sd_bus_wait(pstBus, UINT64_MAX), "wait for the bus");
        }
    }
}

}  // namespace

std::string StartBus(Children &stChildren, const std::string &acPath) {
    std::string acAddress = "unix:path=" + acPath;
    stChildren.Start("dbus-daemon", [&acAddress](int iReady) {
        fcntl(iReady, F_SETFD, 0);
        const std::string acTo = "--print-address=" + std::to_string(iReady);
        const std::string acAt = "--address=" + acAddress;
        execlp("dbus-daemon", "dbus-daemon", "--config-file=" WAP_BENCH_DBUS_CONFIG, "--nofork",
               "--nopidfile", acAt.c_str(), acTo.c_str(), static_cast<char *>(nullptr));
        throw std::runtime_error("there is no program dbus-daemon: apt-get install dbus-daemon");
    });
    stChildren.Start("service on the bus",
                     [&acAddress](int iReady) { ServeBus(acAddress, iReady); });
    return acAddress;
}

BusClient::BusClient(const std::string &acAddress) : m_pstBus(Connect(acAddress)) {}

BusClient::~BusClient() {
    sd_bus_message_unref(m_pstReply);
    sd_bus_flush_close_unref(m_pstBus);
}

void BusClient::Once(Work eWork) {
    const Method &stMethod = kMethods[static_cast<size_t>(eWork)];
    m_pstReply = sd_bus_message_unref(m_pstReply);
    // The argument is read by those methods alone that have one.
    Check(sd_bus_call_method(m_pstBus, kService, kObject, kInterface, stMethod.pcName, nullptr,
                             &m_pstReply, stMethod.pcArguments, kWan),
          "call over the bus");
    m_pcAnswer = nullptr;
    void *pvAnswer = eWork == Work::kUpTime ? static_cast<void *>(&m_uiAnswer)
                                            : static_cast<void *>(&m_pcAnswer);
    Check(sd_bus_message_read_basic(m_pstReply, stMethod.pcResult[0], pvAnswer),
          "read what came over the bus");
}

std::string BusClient::Answer() const {
    return m_pcAnswer == nullptr ? std::to_string(m_uiAnswer) : m_pcAnswer;
}

}  // namespace wap::bench

#include "processes/usb_adapter.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/eventfd.h>
#include <termios.h>
#include <unistd.h>

#include "framework/error.h"

namespace wap::gateway {

namespace {

/// A device that can't get rid of its answers takes no more questions.
constexpr size_t kPendingMax = 4096;

[[noreturn]] void Fail(const char *pcWhat) {
    const int iErrno = errno;
    throw GatewayError(std::string("cannot ") + pcWhat + ": " + ErrnoText(iErrno));
}

FileDescriptor OpenMaster(std::string &acNode) {
    FileDescriptor stMaster(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    char acName[64];
    if (stMaster.Get() < 0 || grantpt(stMaster.Get()) != 0 || unlockpt(stMaster.Get()) != 0 ||
        ptsname_r(stMaster.Get(), acName, sizeof(acName)) != 0 ||
        fcntl(stMaster.Get(), F_SETFL, O_RDWR | O_NONBLOCK) != 0) {
        Fail("make a pseudo-terminal");
    }
    acNode = acName;
    return stMaster;
}

}  // namespace

UsbAdapter::UsbAdapter(const std::string &acKind)
    : m_acKind(acKind),
      m_stMaster(OpenMaster(m_acNode)),
      m_stSlave(open(m_acNode.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)),
      m_stWake(eventfd(0, EFD_CLOEXEC)) {
    if (m_stSlave.Get() < 0 || m_stWake.Get() < 0) {
        Fail(("open " + m_acNode).c_str());
    }
    Reset();
    if (!m_pstDevice) {
        throw GatewayError("there is no kind of device \"" + acKind + "\"; there are " +
                           UsbDeviceKinds());
    }
    m_stThread = std::thread(&UsbAdapter::Run, this);
}

UsbAdapter::~UsbAdapter() {
    (void)eventfd_write(m_stWake.Get(), 1);
    if (m_stThread.joinable()) {
        m_stThread.join();
    }
}

void UsbAdapter::Reset() {
    const std::scoped_lock stLock(m_stMutex);
    m_pstDevice = MakeUsbDevice(m_acKind);
    m_acPending.clear();
    struct termios stSettings = {};
    stSettings.c_cflag = CS8 | CREAD | CLOCAL;
    stSettings.c_cc[VMIN] = 1;
    (void)cfsetspeed(&stSettings, B9600);
    // In each direction, first what is on its way between the two ends and then what has arrived.
    if (tcsetattr(m_stSlave.Get(), TCSANOW, &stSettings) != 0 ||
        tcflush(m_stSlave.Get(), TCOFLUSH) != 0 || tcflush(m_stMaster.Get(), TCIOFLUSH) != 0 ||
        tcflush(m_stSlave.Get(), TCIFLUSH) != 0) {
        Fail("reset the line");
    }
}

void UsbAdapter::Run() {
    for (;;) {
        struct pollfd astWaits[2] = {{m_stMaster.Get(), 0, 0}, {m_stWake.Get(), POLLIN, 0}};
        {
            const std::scoped_lock stLock(m_stMutex);
            astWaits[0].events =
                static_cast<short>((m_acPending.empty() ? 0 : POLLOUT) |
                                   (m_acPending.size() < kPendingMax ? POLLIN : 0));
        }
        if (poll(astWaits, 2, -1) < 0) {
            continue;  // interrupted
        }
        if (astWaits[1].revents != 0) {
            return;
        }
        Exchange();
    }
}

void UsbAdapter::Exchange() {
    const std::scoped_lock stLock(m_stMutex);
    if (m_acPending.size() < kPendingMax) {
        char acPiece[1024];
        const ssize_t iCount = read(m_stMaster.Get(), acPiece, sizeof(acPiece));
        if (iCount > 0) {
            m_acPending += m_pstDevice->Take({acPiece, static_cast<size_t>(iCount)});
        }
    }
    if (!m_acPending.empty()) {
        const ssize_t iCount = write(m_stMaster.Get(), m_acPending.data(), m_acPending.size());
        m_acPending.erase(0, iCount > 0 ? static_cast<size_t>(iCount) : 0);
    }
}

}  // namespace wap::gateway

#include "support/entry_table_usb.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI.h>

#include "support/entry_calls.h"

#define WAP_USB_ENTRY(method, ...) WAP_ENTRY_OF(tarn, Usb, method __VA_OPT__(, ) __VA_ARGS__)

namespace wap::test {

std::vector<Entry> UsbEntries() {
    const Answer stDone = NumberAnswerOf(0);
    const Answer stFailed = NumberAnswerOf(-1);
    return {
        {WAP_USB_ENTRY(usbRegister, Text(u"com.example.meter"), Number(1)), stDone, stFailed,
         0x47103041, false},
        {WAP_USB_ENTRY(usbUnregister, Text(u"com.example.meter")), stDone, stFailed, 0x47103042,
         false},
        {WAP_USB_ENTRY(usbLock, Number(3)), stDone, stFailed, 0x47103043, false},
        {WAP_USB_ENTRY(usbUnlock, Number(3)), stDone, stFailed, 0x47103044, false},
        {WAP_USB_ENTRY(usbOpen, Number(3)), NumberAnswerOf(77), stFailed, 0x4710303F, false},
        {WAP_USB_ENTRY(usbDataAvailable, Number(77)), NumberAnswerOf(1), stFailed, 0, false},
        {WAP_USB_ENTRY(usbRead, Number(77), Bytes("0123456789"), Number(2), Number(8), Number(1)),
         NumberAnswerOf(4), stFailed, 0, false},
        {WAP_USB_ENTRY(usbWrite, Number(77), Bytes("ATZ\r"), Number(0), Number(4)),
         NumberAnswerOf(4), stFailed, 0, false},
        {WAP_USB_ENTRY(usbSetSerial, Number(77), Number(115200), Number(0), Number(8), Number(1),
                       Flag(false), Flag(false)),
         stDone, stFailed, 0, false},
        {WAP_USB_ENTRY(usbClose, Number(77)), stDone, stFailed, 0, false},
        {WAP_USB_ENTRY(getStorageInfo),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"storagePath\": \"\\/mnt\\/usb1\", "
                      "\"totalStorage\": 4294967296, \"validStorage\": 2147483648 }, "
                      "{ \"storagePath\": \"\\/mnt\\/gone\", \"totalStorage\": 0, "
                      "\"validStorage\": 0 } ] }"),
         TextAnswerOf("{ \"Result\": 1 }"), 0x47103067, false},
    };
}

}  // namespace wap::test

// gatewayctl's verbs about the USB port.
#ifndef WAP_GATEWAY_CTL_USB_COMMANDS_H
#define WAP_GATEWAY_CTL_USB_COMMANDS_H

#include "ctl/commands.h"

namespace wap::gateway {

int ListUsb(const Options &stOptions);
int PlugUsb(const Options &stOptions);
int UnplugUsb(const Options &stOptions);
int ListStorage(const Options &stOptions);
int AddStorage(const Options &stOptions);
int RemoveStorage(const Options &stOptions);

}  // namespace wap::gateway

#endif

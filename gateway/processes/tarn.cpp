// tarn: owns the FTP service and the web service.
#include "processes/accounts.h"
#include "processes/processes.h"

namespace wap::gateway {

void AddTarnRpcs(RpcTable &stTable) {
    AddFtpAccountRpcs(stTable);
    AddWebRightRpcs(stTable);
}

}  // namespace wap::gateway

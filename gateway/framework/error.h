// The one exception of the gateway's programs.
#ifndef WAP_GATEWAY_FRAMEWORK_ERROR_H
#define WAP_GATEWAY_FRAMEWORK_ERROR_H

#include <stdexcept>

namespace wap::gateway {

/// Something could not be done. Its text is for the user: what went wrong and what to do about it.
class GatewayError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace wap::gateway

#endif

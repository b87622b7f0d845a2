// The volumes on USB sticks: folders of this machine that play mounted ones.
#ifndef WAP_GATEWAY_PROCESSES_USB_VOLUMES_H
#define WAP_GATEWAY_PROCESSES_USB_VOLUMES_H

#include <string>
#include <vector>

#include "framework/home.h"

namespace wap::gateway {

struct UsbVolume {
    std::string acName;
    std::string acDirectory;  ///< absolute
};

/// The home's "storage". A relative folder there is one below the runtime directory, so that the
/// home as shipped has one everywhere. Any number of threads may use it.
class UsbVolumes {
  public:
    /// Makes the relative folders that are missing. Throws GatewayError.
    UsbVolumes(Home &stHome, const RuntimeDir &stDir);

    std::vector<UsbVolume> List() const;

    /// Mounts a folder, which must be there, under a name. Throws GatewayError, also when the name
    /// or the folder is taken, and when no more volumes fit into an answer.
    void Add(const std::string &acName, const std::string &acDirectory);

    /// Unmounts the volume of that name or in that folder. Throws GatewayError.
    void Remove(const std::string &acVolume);

  private:
    std::string Absolute(const std::string &acDirectory) const;

    Home &m_stHome;
    const std::string m_acBase;
};

}  // namespace wap::gateway

#endif

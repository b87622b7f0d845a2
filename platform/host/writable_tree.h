// The gateway's writable folder, /var/osgi, which a PC does not have: it lies in the runtime
// directory.
#ifndef WAP_HOST_WRITABLE_TREE_H
#define WAP_HOST_WRITABLE_TREE_H

#include <string>

namespace wap::host {

/** @return where a path of the gateway is on this machine: mostly the path itself. Makes the
 *          writable folder when the path leads into it. */
std::string LocalPath(const char *pcPath);

/** @return a command line of the gateway with the paths into its writable folder as they are on
 *          this machine, quoted as it takes. Makes the folder when there is one. */
std::string LocalCommand(const char *pcCmd);

}  // namespace wap::host
#endif

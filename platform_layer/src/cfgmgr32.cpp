// The configuration manager of the platform layer. The device tree has its
// root and nothing the module could name below it; a re-enumeration finds
// what the machine already shows.

#include <cfgmgr32.h>

#include <cstring>

#include "platform_layer/machine.h"

namespace {
constexpr DEVINST kRootNode = 1;
}

extern "C" {

CONFIGRET CM_Locate_DevNodeA(PDEVINST devInst, DEVINSTID_A deviceId, ULONG flags) {
    if (devInst == nullptr) return CR_INVALID_POINTER;
    *devInst = 0;
    if ((flags & ~CM_LOCATE_DEVNODE_PHANTOM) != 0) return CR_INVALID_FLAG;
    // A null or empty identifier names the root of the tree.
    if (deviceId != nullptr && deviceId[0] != '\0' &&
        std::strcmp(deviceId, "HTREE\\ROOT\\0") != 0) {
        return CR_NO_SUCH_DEVNODE;
    }
    *devInst = kRootNode;
    return CR_SUCCESS;
}

CONFIGRET CM_Reenumerate_DevNode(DEVINST devInst, ULONG flags) {
    if ((flags & ~CM_REENUMERATE_SYNCHRONOUS) != 0) return CR_INVALID_FLAG;
    if (devInst != kRootNode) return CR_INVALID_DEVNODE;
    platform_layer::currentMachine().note(platform_layer::LayerEvent::DeviceTreeReenumerated);
    return CR_SUCCESS;
}
}

#include "platform/qt/DesktopLook.h"

namespace tessel {

/// Does nothing: Qt follows the system's settings itself.
std::unique_ptr<TemporaryActivity> watchDesktopLook(std::function<void(const DesktopLook&)>) {
    return nullptr;
}

}  // namespace tessel

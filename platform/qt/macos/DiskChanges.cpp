#include "platform/qt/DiskChanges.h"

namespace tessel {

/// Does nothing: only frameworks of the system report such changes there.
std::unique_ptr<TemporaryActivity> watchDisks(std::function<void(const DiskChange&)>) {
    return nullptr;
}

}  // namespace tessel

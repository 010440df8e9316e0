#pragma once

#include "views/controls/Style.h"

namespace tessel {

/// Gives the widths of the disk table's columns in pixels. The media column gets what is left.
struct DiskColumnWidths {
    int target = scaledWithFont(44);
    int disk = scaledWithFont(138);
    int size = scaledWithFont(88);
};

}  // namespace tessel

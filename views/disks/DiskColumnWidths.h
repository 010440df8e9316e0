#pragma once

#include <QFontMetrics>
#include <algorithm>

#include "views/controls/Style.h"

namespace tessel {

/// Gives the widths of the disk table's columns in pixels. The media column gets what is left.
struct DiskColumnWidths {
    /// Leaves room for the column's heading, which is wider than its controls in most fonts.
    int target =
        std::max(scaledWithFont(44),
                 QFontMetrics(styledFont(FontRole::caption, QFont::DemiBold)).horizontalAdvance("Target") +
                     spacing::small);
    int disk = scaledWithFont(138);
    int size = scaledWithFont(88);
};

}  // namespace tessel

#include "app/WindowSizes.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr QSize designed(1180, 820);
constexpr QSize designedMinimum(1080, 720);
constexpr QSize smallest(800, 560);  // is what the panes can scroll in with nothing cut off
constexpr QSize frame(12, 48);       // is more than desktops put around a window

int minimumFitting(int room, int wanted, int least) {
    return room >= wanted ? wanted : std::min(room, least);
}

}  // namespace

QSize WindowSizes::largest(const QSize& room) {
    return room - frame;
}

WindowSizes WindowSizes::fitting(const QSize& room) {
    const QSize inside = largest(room);
    return {.usual = designed.boundedTo(inside),
            .minimum = {minimumFitting(inside.width(), designedMinimum.width(), smallest.width()),
                        minimumFitting(inside.height(), designedMinimum.height(), smallest.height())}};
}

}  // namespace tessel

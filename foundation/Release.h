#pragma once

namespace tessel {

/// Lets a std::unique_ptr release what a C library handed out, with the library's own function.
template <auto function>
struct Release {
    void operator()(auto* object) const { function(object); }
};

}  // namespace tessel

#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace tessel {

/// Computes SHA-256 incrementally, with the processor's own instructions where it has them.
class Sha256 {
  public:
    using Digest = std::array<std::byte, 32>;

    Sha256();
    ~Sha256();

    void update(std::span<const std::byte> bytes);

    /// Returns the digest of all bytes since the beginning or the previous call.
    [[nodiscard]] Digest finish();

  private:
    struct State;
    std::unique_ptr<State> state;
};

/// Returns the digest as 64 hexadecimal digits.
[[nodiscard]] std::string hexadecimal(const Sha256::Digest& digest);

}  // namespace tessel

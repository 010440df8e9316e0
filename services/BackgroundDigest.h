#pragma once

#include <span>

#include "foundation/Sha256.h"
#include "services/HelperThread.h"

namespace tessel {

/// Computes a SHA-256 digest while its owner reads or writes the next chunk.
class BackgroundDigest {
  public:
    BackgroundDigest() = default;
    BackgroundDigest(const BackgroundDigest&) = delete;
    BackgroundDigest& operator=(const BackgroundDigest&) = delete;
    ~BackgroundDigest() { helper.wait(); }

    /// Begins to digest the bytes, which must not change until the next call. Returns once the bytes of the
    /// previous call are digested.
    void update(std::span<const std::byte> bytes) {
        helper.finish();
        current = bytes;
        helper.begin();
    }

    /// Returns the digest of all bytes since the beginning or the previous call.
    [[nodiscard]] Sha256::Digest finish() {
        helper.finish();
        return digest.finish();
    }

  private:
    Sha256 digest;
    std::span<const std::byte> current;
    HelperThread helper{[this] { digest.update(current); }};
};

}  // namespace tessel

#pragma once

#include <future>
#include <span>

#include "foundation/Sha256.h"

namespace tessel {

/// A SHA-256 computation that goes on while its caller reads or writes the next chunk.
class BackgroundDigest {
  public:
    /// Begins to digest the bytes, which must stay as they are until the next call. Waits until those of the
    /// last call are digested.
    void update(std::span<const std::byte> bytes) {
        wait();
        digesting = std::async(std::launch::async, [this, bytes] { digest.update(bytes); });
    }

    /// The digest of everything. Nothing may follow.
    Sha256::Digest finish() {
        wait();
        return digest.finish();
    }

  private:
    void wait() {
        if (digesting.valid()) digesting.get();
    }

    Sha256 digest;
    std::future<void> digesting;  ///< last, so that it ends before what it uses
};

}  // namespace tessel

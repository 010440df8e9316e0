#include "foundation/Sha256.h"

#include <openssl/evp.h>

#include "foundation/Errors.h"
#include "foundation/Release.h"

namespace tessel {

namespace {

/// Throws PlatformError unless OpenSSL answered 1, which means success. These calls fail only when memory or
/// the algorithm itself is missing.
void require(int answer) {
    if (answer != 1) throw PlatformError(answer, "The SHA-256 digest could not be computed.");
}

}  // namespace

struct Sha256::State {
    std::unique_ptr<EVP_MD_CTX, Release<EVP_MD_CTX_free>> context{EVP_MD_CTX_new()};
};

Sha256::Sha256() : state(std::make_unique<State>()) {
    require(EVP_DigestInit_ex(state->context.get(), EVP_sha256(), nullptr));
}

Sha256::~Sha256() = default;

void Sha256::update(std::span<const std::byte> bytes) {
    require(EVP_DigestUpdate(state->context.get(), bytes.data(), bytes.size()));
}

Sha256::Digest Sha256::finish() {
    Digest digest{};
    require(
        EVP_DigestFinal_ex(state->context.get(), reinterpret_cast<unsigned char*>(digest.data()), nullptr));
    // This restarts the same algorithm in the same memory.
    require(EVP_DigestInit_ex(state->context.get(), nullptr, nullptr));
    return digest;
}

std::string hexadecimal(const Sha256::Digest& digest) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const auto byte : digest) {
        text += digits[std::to_integer<size_t>(byte >> 4)];
        text += digits[std::to_integer<size_t>(byte & std::byte{0x0f})];
    }
    return text;
}

}  // namespace tessel

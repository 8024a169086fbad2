#include "engine/digest.h"

#include <qt_windows.h>

#include <bcrypt.h>

#include <array>

namespace engine {

// Every call may fail, and a digest of which a part is missing would be a wrong one.
// BCryptHashData counts in ULONG and wants writable memory, though it only reads it.
struct Digest::State
{
    BCRYPT_ALG_HANDLE provider = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
    ULONG size = 0;    ///< bytes of the digest
    bool good = false; ///< nothing has failed since the last reset

    ~State()
    {
        if (hash) {
            BCryptDestroyHash(hash);
        }
        if (provider) {
            BCryptCloseAlgorithmProvider(provider, 0);
        }
    }
};

Digest::Digest(QCryptographicHash::Algorithm algorithm) : state_(new State)
{
    const bool md5 = algorithm == QCryptographicHash::Md5;
    state_->size = md5 ? 16 : 20;
    BCryptOpenAlgorithmProvider(&state_->provider,
                                md5 ? BCRYPT_MD5_ALGORITHM : BCRYPT_SHA1_ALGORITHM, nullptr, 0);
    reset();
}

Digest::~Digest() = default;

void Digest::reset()
{
    if (state_->hash) {
        BCryptDestroyHash(state_->hash);
        state_->hash = nullptr;
    }
    state_->good =
        state_->provider && BCRYPT_SUCCESS(BCryptCreateHash(state_->provider, &state_->hash,
                                                            nullptr, 0, nullptr, 0, 0));
}

void Digest::add(QByteArrayView bytes)
{
    auto* data = reinterpret_cast<PUCHAR>(const_cast<char*>(bytes.data()));
    state_->good =
        state_->good &&
        BCRYPT_SUCCESS(BCryptHashData(state_->hash, data, static_cast<ULONG>(bytes.size()), 0));
}

QByteArray Digest::result_hex()
{
    std::array<unsigned char, 20> bytes{};
    if (!state_->good ||
        !BCRYPT_SUCCESS(BCryptFinishHash(state_->hash, bytes.data(), state_->size, 0))) {
        return {};
    }
    return QByteArray(reinterpret_cast<const char*>(bytes.data()),
                      static_cast<qsizetype>(state_->size))
        .toHex();
}

} // namespace engine

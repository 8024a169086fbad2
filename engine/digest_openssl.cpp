#include "engine/digest.h"

#include <openssl/evp.h>

#include <array>

namespace engine {

namespace {

struct FreeContext
{
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

} // namespace

// libcrypto uses the processor's SHA instructions, which doubles and more the speed of SHA1. A
// libcrypto that refuses the algorithm (a system locked to FIPS modules has no MD5) leaves the
// context empty, and Qt's own implementation steps in.
struct Digest::State
{
    explicit State(QCryptographicHash::Algorithm algorithm) : fallback(algorithm) {}

    std::unique_ptr<EVP_MD_CTX, FreeContext> context;
    QCryptographicHash fallback;
    bool good = true; ///< nothing has failed since the last reset
};

Digest::Digest(QCryptographicHash::Algorithm algorithm) : state_(new State(algorithm))
{
    const EVP_MD* md = algorithm == QCryptographicHash::Md5 ? EVP_md5() : EVP_sha1();
    std::unique_ptr<EVP_MD_CTX, FreeContext> context(EVP_MD_CTX_new());
    if (context && EVP_DigestInit_ex(context.get(), md, nullptr) == 1) {
        state_->context = std::move(context);
    }
}

Digest::~Digest() = default;

void Digest::reset()
{
    if (!state_->context) {
        state_->fallback.reset();
        return;
    }
    // A null type keeps the algorithm: looking it up anew takes locks that two jobs would share.
    state_->good = EVP_DigestInit_ex(state_->context.get(), nullptr, nullptr) == 1;
}

void Digest::add(QByteArrayView bytes)
{
    if (!state_->context) {
        state_->fallback.addData(bytes);
        return;
    }
    state_->good &= EVP_DigestUpdate(state_->context.get(), bytes.data(),
                                     static_cast<size_t>(bytes.size())) == 1;
}

QByteArray Digest::result_hex()
{
    if (!state_->context) {
        return state_->fallback.result().toHex();
    }
    std::array<unsigned char, EVP_MAX_MD_SIZE> bytes;
    unsigned int size = 0;
    if (!state_->good || EVP_DigestFinal_ex(state_->context.get(), bytes.data(), &size) != 1) {
        return {};
    }
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(size))
        .toHex();
}

} // namespace engine

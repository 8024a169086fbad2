#include "engine/digest.h"

namespace engine {

struct Digest::State
{
    QCryptographicHash hash;
};

Digest::Digest(QCryptographicHash::Algorithm algorithm)
    : state_(new State{QCryptographicHash(algorithm)})
{}

Digest::~Digest() = default;

void Digest::reset()
{
    state_->hash.reset();
}

void Digest::add(QByteArrayView bytes)
{
    state_->hash.addData(bytes);
}

QByteArray Digest::result_hex()
{
    return state_->hash.result().toHex();
}

} // namespace engine

#pragma once

#include <QByteArrayView>
#include <QCryptographicHash>

#include <memory>

namespace engine {

/// One incremental MD5 or SHA1 computation.
///
/// The fastest implementation of the platform does the work: OpenSSL's libcrypto where the build
/// found it, the system's own CNG on Windows, Qt's otherwise. The build picks one source file.
/// An object belongs to one thread at a time.
class Digest final
{
  public:
    explicit Digest(QCryptographicHash::Algorithm algorithm);
    ~Digest();
    Q_DISABLE_COPY_MOVE(Digest)

    /// Starts over, as if nothing had been added.
    void reset();

    /// Appends bytes to the message.
    void add(QByteArrayView bytes);

    /// Ends the message and returns its digest in lowercase hexadecimal (32 digits for MD5, 40 for
    /// SHA1); empty when the system could not compute it. Only reset() may follow.
    QByteArray result_hex();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace engine

#pragma once

#include <QByteArray>
#include <QList>

namespace platform {

/// The text of a mimeapps.list, which says which application opens which type. Other programs and
/// the user write to it too: every line that is not concerned stays as it is.
class MimeAppsList final
{
  public:
    explicit MimeAppsList(const QByteArray& content);

    QByteArray content() const;

    /// Whether any application is named as default of the type.
    bool has_default(const QByteArray& type) const;

    /// Puts the application before the others that are named as default of the type.
    void set_default(const QByteArray& type, const QByteArray& app);

    /// Takes back a set_default(), unless it was changed since.
    void remove_default(const QByteArray& type, const QByteArray& app);

    /// Removes the header of the defaults if nothing is left below it.
    void drop_empty_defaults();

    /// Takes back that the application was once removed from types.
    void allow(const QByteArray& app);

    /// Removes the application wherever it is named.
    void forget(const QByteArray& app);

  private:
    struct Range
    {
        qsizetype begin;
        qsizetype end; ///< behind the last line
    };

    /// The lines below a header, an impossible range (-1) when the header is missing.
    Range section(const QByteArray& header) const;
    qsizetype find(const Range& range, const QByteArray& type) const;
    void remove(Range range, const QByteArray& app);

    QList<QByteArray> lines_;
};

} // namespace platform
